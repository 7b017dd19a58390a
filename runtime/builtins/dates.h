#pragma once
// Dates: a date is a number, the seconds since 1970-01-01 00:00 UTC, so that dates are compared and subtracted like numbers. Where a
// calendar or a clock is meant it is the player's, or that of UTC when the last argument says so.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(date_add, Date(Date, Number, Text, Or<Flag, false>), "date, amount, unit, utc",
        "The date so many years, months, weeks, days, hours, minutes or seconds later; a day that a month does not have is its last.");
BUILTIN(date_create, Date(Whole, Whole, Whole, Or<Whole, 0>, Or<Whole, 0>, Or<Number, 0>, Or<Flag, false>),
        "year, month, day, hour, minute, second, utc", "A date; what is beyond its range goes over into the next month, day, hour.");
BUILTIN(date_days_in_month, Whole(Whole, Whole), "year, month", "How many days the month has; 0 when there is no such month.");
BUILTIN(date_format, Text(Date, Optional<Text>, Or<Flag, false>), "date, pattern, utc",
        "The date as text: YYYY-MM-DD hh:mm:ss, or as the pattern says.");
BUILTIN(date_get, Struct(Date, Or<Flag, false>), "date, utc",
        "A struct of year, month, day, hour, minute, second, weekday (1 Monday to 7), day_of_year and week.");
BUILTIN(date_is_leap_year, Flag(Whole), "year", "Whether the year has a 29th of February.");
BUILTIN(date_is_valid, Flag(Whole, Whole, Whole, Or<Whole, 0>, Or<Whole, 0>, Or<Number, 0>), "year, month, day, hour, minute, second",
        "Whether the calendar has such a day and the clock such a time.");
BUILTIN(date_now, Date(), "", "The date and time of the machine, to the microsecond.");
BUILTIN(date_parse, Any(Text, Or<Flag, false>), "text, utc",
        "The date that a text like 2024-02-29 18:30:05 says, with a zone (Z, +02:00) or without; undefined when it says none.");
BUILTIN(date_span, Number(Date, Date, Text, Or<Flag, false>), "from, to, unit, utc",
        "How many years, months (whole ones), weeks, days, hours, minutes or seconds lie between two dates; below 0 backwards.");
BUILTIN(date_zone_offset, Number(Date), "date", "The seconds that the player's clock is ahead of UTC at that date.");
BUILTIN(span_format, Text(Number, Optional<Text>), "seconds, pattern", "A length of time as text: h:mm:ss, or as the pattern says.");

}  // namespace arena::script
