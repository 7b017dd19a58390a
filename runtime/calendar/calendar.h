#pragma once
// The Gregorian calendar, reckoned back and forth without end: days, months and what a clock shows, as pure arithmetic. A moment is a
// number of seconds since 1970-01-01 00:00 UTC. No time zone, no leap second.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace arena::calendar {

inline constexpr std::int64_t kSecondsADay = 86400;
// Years from -9999 to 9999 are reckoned with; what lies outside is cut to them.
inline constexpr std::int32_t kFirstYear = -9999, kLastYear = 9999;

// What calendar and clock show. Months and days from 1; weekdays from 1, Monday, to 7, Sunday.
struct Fields {
  std::int32_t year = 1970, month = 1, day = 1;
  std::int32_t hour = 0, minute = 0;
  double second = 0;  // with its fraction, below 60
};

bool is_leap_year(std::int32_t year);
std::int32_t days_in_month(std::int32_t year, std::int32_t month);  // 0: there is no such month
bool is_valid(const Fields& fields);

// Days since 1970-01-01, and back. Months beyond 12 or below 1 are months of other years, days likewise.
std::int64_t day_number(std::int32_t year, std::int32_t month, std::int32_t day);
Fields date_of(std::int64_t day);

// The moment at which a clock without any time zone shows so much, and back. Hours, minutes and seconds beyond their range go over into
// the next ones. What is no number counts as 0.
double moment_of(const Fields& fields);
Fields fields_of(double moment);

std::int32_t weekday_of(const Fields& date);
std::int32_t day_of_year(const Fields& date);  // from 1
// The week in which most of a year's first days lie is its first: weeks begin on Monday, and the first one has the year's first Thursday.
std::int32_t week_of_year(const Fields& date);

// So many months later; a day that the month does not have becomes its last.
Fields add_months(Fields date, std::int64_t months);
// Whole months from one to the other, negative when `to` is before.
std::int64_t months_between(const Fields& from, const Fields& to);

// Fills in a pattern: YYYY YY MM M DD D hh h mm m ss s fff (thousandths), MMM and WWW (three letters of month and weekday, in English).
// What stands in '...' is taken as it is, and so is all else.
std::string format(const Fields& fields, std::string_view pattern);
// Seconds as a length of time: D days, hh h mm m ss s fff. The largest unit that the pattern has takes all that is more; a length below 0
// begins with a minus.
std::string format_span(double seconds, std::string_view pattern);

// "2024-02-29", "2024-02-29 18:30", "2024-02-29T18:30:05.25"; `offset` gets the seconds east of UTC when a zone ("Z", "+02:00") stands
// behind it. Nothing when the text is no such date.
std::optional<Fields> parse(std::string_view text, std::optional<std::int32_t>& offset);

}  // namespace arena::calendar
