// The calendar by its laws: every day of more than four hundred years, the rule of leap years, weeks, months, and what texts say.
#include "runtime/calendar/calendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace arena::test {
namespace {

using calendar::Fields;

// Counted day by day, with nothing but the lengths of the months.
TEST(Calendar, EveryDayFollowsTheOneBefore) {
  constexpr int kFrom = 1599, kTo = 2410;
  std::int64_t day = calendar::day_number(kFrom, 1, 1);
  int weekday = calendar::weekday_of({kFrom, 1, 1});
  EXPECT_EQ(weekday, 5) << "1599-01-01 was a Friday";
  for (int year = kFrom; year <= kTo; ++year) {
    EXPECT_EQ(calendar::is_leap_year(year), (year % 4 == 0 && year % 100 != 0) || year % 400 == 0);
    EXPECT_EQ(calendar::days_in_month(year, 2), calendar::is_leap_year(year) ? 29 : 28);
    int of_year = 0;
    for (int month = 1; month <= 12; ++month) {
      for (int of_month = 1; of_month <= calendar::days_in_month(year, month); ++of_month, ++day) {
        const Fields date = calendar::date_of(day);
        ASSERT_EQ(calendar::day_number(year, month, of_month), day) << year << "-" << month << "-" << of_month;
        ASSERT_TRUE(date.year == year && date.month == month && date.day == of_month) << day;
        ASSERT_EQ(calendar::weekday_of(date), weekday);
        ASSERT_EQ(calendar::day_of_year(date), ++of_year);
        weekday = weekday % 7 + 1;
      }
    }
    EXPECT_EQ(of_year, calendar::is_leap_year(year) ? 366 : 365);
  }
  EXPECT_EQ(calendar::day_number(1970, 1, 1), 0);
  EXPECT_EQ(calendar::day_number(2000, 3, 1) - calendar::day_number(1600, 3, 1), 146097);
}

// A week has the number of its Thursday, and weeks count on by one or begin anew.
TEST(Calendar, WeeksBeginOnMondayAndBelongToTheYearOfTheirThursday) {
  const struct {
    Fields date;
    int week;
  } cases[] = {{{2005, 1, 1}, 53}, {{2005, 1, 2}, 53},   {{2005, 1, 3}, 1}, {{2007, 1, 1}, 1},   {{2008, 12, 29}, 1},
               {{2010, 1, 3}, 53}, {{2020, 12, 31}, 53}, {{2021, 1, 4}, 1}, {{2024, 12, 30}, 1}, {{2024, 12, 29}, 52}};
  for (const auto& each : cases) EXPECT_EQ(calendar::week_of_year(each.date), each.week) << calendar::format(each.date, "YYYY-MM-DD");
  for (std::int64_t day = 0; day < 146097; ++day) {
    const int now = calendar::week_of_year(calendar::date_of(day)), next = calendar::week_of_year(calendar::date_of(day + 1));
    const bool is_sunday = calendar::weekday_of(calendar::date_of(day)) == 7;
    ASSERT_TRUE(is_sunday ? next == now + 1 || next == 1 : next == now) << day;
  }
}

TEST(Calendar, MomentsGoThereAndBack) {
  for (const double moment : {0.0, -0.25, 86399.999, -86400.0, 951782400.0, 1709210096.125, -62135596800.0, 253402300799.0, 4102444799.5}) {
    const Fields fields = calendar::fields_of(moment);
    EXPECT_TRUE(calendar::is_valid(fields)) << moment;
    EXPECT_EQ(calendar::moment_of(fields), moment);
  }
  // What is beyond its range goes over; what is no number, or further than all years, is a date all the same.
  EXPECT_EQ(calendar::moment_of({2023, 14, 30, 25, 61, 3601}), calendar::moment_of({2024, 3, 2, 3, 1, 1}));
  EXPECT_EQ(calendar::moment_of({2024, 0, 0}), calendar::moment_of({2023, 11, 30}));
  for (const double odd : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e300, 1e300}) {
    EXPECT_TRUE(calendar::is_valid(calendar::fields_of(odd))) << odd;
  }
  EXPECT_EQ(calendar::fields_of(std::nan("")).year, 1970);
  EXPECT_EQ(calendar::fields_of(1e300).year, calendar::kLastYear);
  const Fields wrong[] = {{2023, 2, 29},    {2024, 13, 1},       {2024, 4, 31},         {2024, 1, 0},
                          {2024, 1, 1, 24}, {2024, 1, 1, 0, 60}, {2024, 1, 1, 0, 0, 60}};
  for (const Fields& each : wrong) EXPECT_FALSE(calendar::is_valid(each)) << each.month << "-" << each.day;
}

TEST(Calendar, MonthsAreAddedAndCounted) {
  const auto after = [](Fields from, int months) { return calendar::format(calendar::add_months(from, months), "YYYY-MM-DD"); };
  EXPECT_EQ(after({2024, 1, 31}, 1), "2024-02-29");
  EXPECT_EQ(after({2023, 1, 31}, 1), "2023-02-28");
  EXPECT_EQ(after({2024, 2, 29}, 12), "2025-02-28");
  EXPECT_EQ(after({2024, 3, 15}, -3), "2023-12-15");
  EXPECT_EQ(after({2024, 12, 1}, 1), "2025-01-01");
  EXPECT_EQ(calendar::months_between({2024, 1, 31}, {2024, 2, 29}), 1) << "the last day of a month that is too short counts";
  EXPECT_EQ(calendar::months_between({2024, 1, 15}, {2024, 2, 14, 23, 59, 59}), 0);
  EXPECT_EQ(calendar::months_between({2024, 2, 15}, {2023, 2, 15}), -12);
  for (int months = 0; months < 500; ++months) {
    const Fields from{2000, 5, 17, 3, 4, 5};
    ASSERT_EQ(calendar::months_between(from, calendar::add_months(from, months)), months);
  }
}

TEST(Calendar, PatternsAreFilledIn) {
  const Fields date{2024, 2, 9, 7, 5, 3.0625};
  EXPECT_EQ(calendar::format(date, "YYYY-MM-DD hh:mm:ss"), "2024-02-09 07:05:03");
  EXPECT_EQ(calendar::format(date, "D.M.YY h:m:s.fff"), "9.2.24 7:5:3.062");
  EXPECT_EQ(calendar::format(date, "WWW, D MMM 'at' h 'o''clock'"), "Fri, 9 Feb at 7 oclock");
  EXPECT_EQ(calendar::format(date, "MMMM hhh '' 'open"), "MMMM hhh ' open") << "what is no unit stays";
  const struct {
    double seconds;
    const char *pattern, *text;
  } spans[] = {{3723.5, "h:mm:ss", "1:02:03"},
               {3723.5, "m:ss.fff", "62:03.500"},
               {90061, "D'd' hh:mm", "1d 01:01"},
               {90061, "h:mm", "25:01"},
               {59.999, "s", "59"},
               {-75, "m:ss", "-1:15"},
               {90061, "D m", "1 61"},
               {0, "h:mm:ss", "0:00:00"},
               {std::nan(""), "s", "0"}};
  for (const auto& each : spans) EXPECT_EQ(calendar::format_span(each.seconds, each.pattern), each.text) << each.pattern;
}

TEST(Calendar, TextsAreReadOrRefused) {
  const struct {
    const char* text;
    const char* shown;  // null: it is no date
    int offset;         // seconds; -1: none is said
  } cases[] = {{"2024-02-29", "2024-02-29 00:00:00.000", -1},
               {"2024-02-29 18:30", "2024-02-29 18:30:00.000", -1},
               {"2024-02-29T18:30:05.25Z", "2024-02-29 18:30:05.250", 0},
               {"2024-02-29T18:30:05+05:30", "2024-02-29 18:30:05.000", 19800},
               {"2024-02-29T18:30-0800", "2024-02-29 18:30:00.000", -28800},
               {"2023-02-29", nullptr, -1},
               {"2024-2-29", nullptr, -1},
               {"2024-02-29 25:00", nullptr, -1},
               {"2024-02-29 18", nullptr, -1},
               {"2024-02-29 18:30:05.", nullptr, -1},
               {"2024-02-29 18:30 or so", nullptr, -1},
               {"2024-02-29T18:30+24:00", nullptr, -1},
               {"29.2.2024", nullptr, -1},
               {"", nullptr, -1}};
  for (const auto& each : cases) {
    std::optional<std::int32_t> offset;
    const std::optional<Fields> read = calendar::parse(each.text, offset);
    ASSERT_EQ(read.has_value(), each.shown != nullptr) << each.text;
    if (!read) continue;
    EXPECT_EQ(calendar::format(*read, "YYYY-MM-DD hh:mm:ss.fff"), each.shown);
    EXPECT_EQ(offset.value_or(-1), each.offset) << each.text;
  }
}

}  // namespace
}  // namespace arena::test
