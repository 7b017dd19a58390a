#include "runtime/calendar/calendar.h"

#include <algorithm>
#include <cmath>

namespace arena::calendar {
namespace {

// 400 years are a whole number of weeks, too.
constexpr std::int64_t kDaysIn400 = 146097, kDaysIn100 = 36524, kDaysIn4 = 1461, kDaysIn1 = 365;
constexpr std::int64_t kEpoch = 719468;  // days from 0000-03-01 to 1970-01-01
constexpr double kFurthest = 4e11;       // seconds: beyond the years that are reckoned with

std::int64_t floor_divide(std::int64_t number, std::int64_t by) { return number / by - (number % by < 0 ? 1 : 0); }

std::int32_t within_years(std::int64_t year) { return static_cast<std::int32_t>(std::clamp<std::int64_t>(year, kFirstYear, kLastYear)); }

// Where a moment is no number, or nowhere.
double orderly(double moment) { return std::isnan(moment) ? 0 : std::clamp(moment, -kFurthest, kFurthest); }

}  // namespace

bool is_leap_year(std::int32_t year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

std::int32_t days_in_month(std::int32_t year, std::int32_t month) {
  constexpr std::int32_t kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  return month == 2 && is_leap_year(year) ? 29 : kDays[month - 1];
}

bool is_valid(const Fields& fields) {
  return fields.year >= kFirstYear && fields.year <= kLastYear && fields.day >= 1 &&
         fields.day <= days_in_month(fields.year, fields.month) && fields.hour >= 0 && fields.hour < 24 && fields.minute >= 0 &&
         fields.minute < 60 && fields.second >= 0 && fields.second < 60;
}

// Years begin in March here, so that the day that not every year has is their last.
std::int64_t day_number(std::int32_t year, std::int32_t month, std::int32_t day) {
  const std::int64_t months = std::int64_t{month} - 3;
  const std::int64_t shifted =
      within_years(std::int64_t{year} + floor_divide(std::int64_t{month} - 1, 12)) - ((months % 12 + 12) % 12 > 9 ? 1 : 0);
  const std::int64_t cycle = floor_divide(shifted, 400), year_of_cycle = shifted - cycle * 400;
  const std::int64_t month_of_year = (months % 12 + 12) % 12, days_before = (153 * month_of_year + 2) / 5;
  return cycle * kDaysIn400 + year_of_cycle * kDaysIn1 + year_of_cycle / 4 - year_of_cycle / 100 + days_before + day - 1 - kEpoch;
}

Fields date_of(std::int64_t day) {
  const std::int64_t since = day + kEpoch, cycle = floor_divide(since, kDaysIn400), day_of_cycle = since - cycle * kDaysIn400;
  const std::int64_t year_of_cycle =
      (day_of_cycle - day_of_cycle / (kDaysIn4 - 1) + day_of_cycle / kDaysIn100 - day_of_cycle / (kDaysIn400 - 1)) / kDaysIn1;
  const std::int64_t rest = day_of_cycle - (kDaysIn1 * year_of_cycle + year_of_cycle / 4 - year_of_cycle / 100);
  const std::int64_t month_of_year = (5 * rest + 2) / 153;
  Fields date;
  date.month = static_cast<std::int32_t>(month_of_year < 10 ? month_of_year + 3 : month_of_year - 9);
  date.day = static_cast<std::int32_t>(rest - (153 * month_of_year + 2) / 5 + 1);
  date.year = static_cast<std::int32_t>(year_of_cycle + cycle * 400 + (date.month <= 2 ? 1 : 0));
  return date;
}

double moment_of(const Fields& fields) {
  const double days = static_cast<double>(day_number(fields.year, fields.month, fields.day));
  const double clock = static_cast<double>(fields.hour) * 3600 + static_cast<double>(fields.minute) * 60 + orderly(fields.second);
  return days * static_cast<double>(kSecondsADay) + clock;
}

Fields fields_of(double moment) {
  const double earliest = moment_of({kFirstYear, 1, 1}), latest = moment_of({kLastYear, 12, 31, 23, 59, 59});
  moment = std::clamp(orderly(moment), earliest, latest);
  const double whole = std::floor(moment);
  const std::int64_t seconds = static_cast<std::int64_t>(whole), day = floor_divide(seconds, kSecondsADay);
  const std::int64_t of_day = seconds - day * kSecondsADay;
  Fields fields = date_of(day);
  fields.hour = static_cast<std::int32_t>(of_day / 3600);
  fields.minute = static_cast<std::int32_t>(of_day / 60 % 60);
  fields.second = static_cast<double>(of_day % 60) + (moment - whole);
  return fields;
}

// 1970-01-01 was a Thursday.
std::int32_t weekday_of(const Fields& date) {
  const std::int64_t day = day_number(date.year, date.month, date.day) + 3;
  return static_cast<std::int32_t>(day - floor_divide(day, 7) * 7) + 1;
}

std::int32_t day_of_year(const Fields& date) {
  return static_cast<std::int32_t>(day_number(date.year, date.month, date.day) - day_number(date.year, 1, 1)) + 1;
}

// The year that a week belongs to is that of its Thursday.
std::int32_t week_of_year(const Fields& date) {
  const std::int64_t thursday = day_number(date.year, date.month, date.day) - weekday_of(date) + 4;
  return (day_of_year(date_of(thursday)) - 1) / 7 + 1;
}

Fields add_months(Fields date, std::int64_t months) {
  constexpr std::int64_t kMost = std::int64_t{12} * 20000;
  const std::int64_t total = std::int64_t{date.year} * 12 + date.month - 1 + std::clamp(months, -kMost, kMost);
  date.year = within_years(floor_divide(total, 12));
  date.month = static_cast<std::int32_t>(total - floor_divide(total, 12) * 12) + 1;
  date.day = std::min(date.day, days_in_month(date.year, date.month));
  return date;
}

std::int64_t months_between(const Fields& from, const Fields& to) {
  if (moment_of(to) < moment_of(from)) return -months_between(to, from);
  std::int64_t months = (std::int64_t{to.year} - from.year) * 12 + to.month - from.month;
  if (moment_of(add_months(from, months)) > moment_of(to)) --months;
  return months;
}

}  // namespace arena::calendar
