// Dates as scripts see them: the calendar's arithmetic, with the machine's clock and time zone.
#define ARENA_DEFINES_BUILTINS

#include "engine/machine/machine.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/builtins/dates.h"
#include "runtime/builtins/implement.h"
#include "runtime/calendar/calendar.h"
#include "runtime/program/names.h"
#include "runtime/values/number_text.h"
#include "runtime/variables_calls/access.h"

namespace arena::machine {
namespace {

using calendar::Fields;

double offset_at(double date, bool utc) { return utc ? 0 : ask_zone_offset(date); }
Fields fields_at(double date, bool utc) { return calendar::fields_of(date + offset_at(date, utc)); }

// A local time that the clocks skip counts as so much later; of one that comes twice the first is meant.
double date_at(const Fields& fields, bool utc) {
  const double shown = calendar::moment_of(fields);
  if (utc) return shown;
  constexpr double kDay = static_cast<double>(calendar::kSecondsADay);
  const double before = ask_zone_offset(shown - kDay), after = ask_zone_offset(shown + kDay);
  if (before == after || ask_zone_offset(shown - before) == before) return shown - before;
  return ask_zone_offset(shown - after) == after ? shown - after : shown - before;
}

double create(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour, std::int32_t minute, double second, bool utc) {
  return date_at({year, month, day, hour, minute, second}, utc);
}

struct Unit {
  std::string_view name;
  std::int32_t months;  // 0: a unit of fixed length
  double seconds;
};
constexpr Unit kUnits[] = {{"years", 12, 0},   {"months", 1, 0},   {"weeks", 0, 604800}, {"days", 0, 86400},
                           {"hours", 0, 3600}, {"minutes", 0, 60}, {"seconds", 0, 1}};

const Unit* require_unit(const CallContext& call, int at, std::string_view name) {
  for (const Unit& unit : kUnits) {
    if (unit.name == name) return &unit;
  }
  report_argument_type(call, at, "unit of time: years, months, weeks, days, hours, minutes or seconds");
  return nullptr;
}

// Days and weeks are those of the calendar: the clock shows the same afterwards.
double add(const CallContext& call, double date, double amount, std::string_view name, bool utc) {
  const Unit* const unit = require_unit(call, 2, name);
  if (unit == nullptr) return date;
  if (unit->months > 0) {
    return date_at(calendar::add_months(fields_at(date, utc), std::int64_t{saturate_int32(amount)} * unit->months), utc);
  }
  if (unit->seconds < 86400) return date + amount * unit->seconds;
  return date_at(calendar::fields_of(calendar::moment_of(fields_at(date, utc)) + amount * unit->seconds), utc);
}

double span(const CallContext& call, double from, double to, std::string_view name, bool utc) {
  const Unit* const unit = require_unit(call, 2, name);
  if (unit == nullptr) return 0;
  if (unit->months > 0) {
    const std::int64_t whole_units = calendar::months_between(fields_at(from, utc), fields_at(to, utc)) / unit->months;
    return static_cast<double>(whole_units);
  }
  if (unit->seconds < 86400) return (to - from) / unit->seconds;
  return (to + offset_at(to, utc) - from - offset_at(from, utc)) / unit->seconds;
}

RValue get(double date, bool utc) {
  const Fields fields = fields_at(date, utc);
  RValue made = make_struct();
  const auto store = [&](const char* name, double value) { store_variable(property_object(made), variable_id(name), RValue(value)); };
  store("year", fields.year);
  store("month", fields.month);
  store("day", fields.day);
  store("hour", fields.hour);
  store("minute", fields.minute);
  store("second", fields.second);
  store("weekday", calendar::weekday_of(fields));
  store("day_of_year", calendar::day_of_year(fields));
  store("week", calendar::week_of_year(fields));
  return made;
}

std::string format(double date, std::optional<std::string_view> pattern, bool utc) {
  return calendar::format(fields_at(date, utc), pattern.value_or("YYYY-MM-DD hh:mm:ss"));
}
std::string format_span(double seconds, std::optional<std::string_view> pattern) {
  return calendar::format_span(seconds, pattern.value_or("h:mm:ss"));
}
RValue parse(std::string_view text, bool utc) {
  std::optional<std::int32_t> offset;
  const std::optional<Fields> fields = calendar::parse(text, offset);
  if (!fields) return {};
  return RValue(offset ? calendar::moment_of(*fields) - *offset : date_at(*fields, utc));
}
bool is_valid(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour, std::int32_t minute, double second) {
  return calendar::is_valid({year, month, day, hour, minute, second});
}
double zone_offset(double date) { return ask_zone_offset(date); }

constexpr Implementation kRows[] = {
    implement<script::date_now, ask_now>,
    implement<script::date_create, create>,
    implement<script::date_get, get>,
    implement<script::date_add, add>,
    implement<script::date_span, span>,
    implement<script::date_format, format>,
    implement<script::date_parse, parse>,
    implement<script::date_is_valid, is_valid>,
    implement<script::date_is_leap_year, calendar::is_leap_year>,
    implement<script::date_days_in_month, calendar::days_in_month>,
    implement<script::date_zone_offset, zone_offset>,
    implement<script::span_format, format_span>,
};
const BuiltinTable table("Dates",
                         "A date is a number, the seconds since 1970-01-01 00:00 UTC: dates are compared and subtracted like numbers. "
                         "Calendar and clock are the "
                         "player's, or those of UTC where the last argument says so. Patterns fill in YYYY YY MMM MM M DD D WWW hh h mm m "
                         "ss s fff; of what stands "
                         "in '...', and of all else, they are as they are. A headless run begins at 2000-01-01 00:00 UTC.",
                         kRows);

}  // namespace
}  // namespace arena::machine
