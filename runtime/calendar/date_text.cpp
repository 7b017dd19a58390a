// Dates and lengths of time as text, and back.
#include <algorithm>
#include <charconv>
#include <cmath>

#include "runtime/calendar/calendar.h"

namespace arena::calendar {
namespace {

constexpr std::string_view kWeekdays[] = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
constexpr std::string_view kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::string padded(std::int64_t number, std::size_t digits) {
  std::string text = std::to_string(number < 0 ? -number : number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return number < 0 ? "-" + text : text;
}

// Calls `word` with each run of one letter, which says what stands for it, "" for the letters themselves.
template <class Word>
std::string fill_in(std::string_view pattern, Word word) {
  std::string text;
  while (!pattern.empty()) {
    if (pattern[0] == '\'') {
      const std::size_t end = std::min(pattern.find('\'', 1), pattern.size());
      text += end == 1 ? "'" : pattern.substr(1, end - 1);  // two of them are one
      pattern.remove_prefix(std::min(end + 1, pattern.size()));
      continue;
    }
    const std::size_t length = std::min(pattern.find_first_not_of(pattern[0]), pattern.size());
    const std::string filled = word(pattern.substr(0, length));
    text += filled.empty() ? std::string(pattern.substr(0, length)) : filled;
    pattern.remove_prefix(length);
  }
  return text;
}

// Thousandths, cut and not rounded: no clock shows a minute that has not come.
std::int64_t thousandths(double second) { return static_cast<std::int64_t>(std::floor((second - std::floor(second)) * 1000)); }

// Takes exactly so many digits off the front; -1 when they are not there.
std::int32_t take_digits(std::string_view& text, std::size_t digits) {
  std::int32_t number = 0;
  if (text.size() < digits) return -1;
  for (std::size_t i = 0; i < digits; ++i) {
    if (text[i] < '0' || text[i] > '9') return -1;
    number = number * 10 + (text[i] - '0');
  }
  text.remove_prefix(digits);
  return number;
}

bool take(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text[0]) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

bool take_clock(std::string_view& text, Fields& into) {
  into.hour = take_digits(text, 2);
  if (!take(text, ":")) return false;
  into.minute = take_digits(text, 2);
  if (!take(text, ":")) return true;
  into.second = take_digits(text, 2);
  if (!take(text, ".")) return true;
  double place = 0.1;
  bool has_digit = false;
  for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1), place /= 10, has_digit = true) {
    into.second += (text[0] - '0') * place;
  }
  return has_digit;
}

bool take_zone(std::string_view& text, std::optional<std::int32_t>& offset) {
  if (take(text, "Zz")) {
    offset = 0;
    return true;
  }
  const bool is_west = !text.empty() && text[0] == '-';
  if (!take(text, "+-")) return true;  // none
  const std::int32_t hours = take_digits(text, 2);
  take(text, ":");
  const std::int32_t minutes = take_digits(text, 2);
  if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) return false;
  offset = (hours * 3600 + minutes * 60) * (is_west ? -1 : 1);
  return true;
}

}  // namespace

std::string format(const Fields& fields, std::string_view pattern) {
  const std::int32_t weekday = weekday_of(fields);
  const std::int64_t second = static_cast<std::int64_t>(fields.second);
  return fill_in(pattern, [&](std::string_view run) -> std::string {
    const std::size_t digits = run.size();
    if (run == "YYYY") return padded(fields.year, 4);
    if (run == "YY") return padded((fields.year % 100 + 100) % 100, 2);
    if (run == "MMM") return std::string(kMonths[std::clamp(fields.month, 1, 12) - 1]);
    if (run == "MM" || run == "M") return padded(fields.month, digits);
    if (run == "WWW") return std::string(kWeekdays[weekday - 1]);
    if (run == "DD" || run == "D") return padded(fields.day, digits);
    if (run == "hh" || run == "h") return padded(fields.hour, digits);
    if (run == "mm" || run == "m") return padded(fields.minute, digits);
    if (run == "ss" || run == "s") return padded(second, digits);
    if (run == "fff") return padded(thousandths(fields.second), 3);
    return "";
  });
}

std::string format_span(double seconds, std::string_view pattern) {
  constexpr double kLongest = 1e15;
  const double length = std::isnan(seconds) ? 0 : std::min(std::fabs(seconds), kLongest);
  const std::int64_t whole = static_cast<std::int64_t>(length);
  const auto has = [&](char letter) { return pattern.find(letter) != std::string_view::npos; };
  std::int64_t rest = whole;
  const auto take_all = [&](char letter, std::int64_t unit) {
    const std::int64_t number = has(letter) ? rest / unit : 0;
    rest -= number * unit;
    return number;
  };
  const std::int64_t days = take_all('D', kSecondsADay), hours = take_all('h', 3600), minutes = take_all('m', 60), left = rest;
  std::string text = fill_in(pattern, [&](std::string_view run) -> std::string {
    const std::size_t digits = run.size();
    if (digits > 3) return "";
    switch (run[0]) {
      case 'D': return padded(days, digits);
      case 'h': return padded(hours, digits);
      case 'm': return padded(minutes, digits);
      case 's': return padded(left, digits);
      case 'f': return digits == 3 ? padded(thousandths(length), 3) : "";
      default: return "";
    }
  });
  return seconds < 0 ? "-" + text : text;
}

std::optional<Fields> parse(std::string_view text, std::optional<std::int32_t>& offset) {
  Fields read;
  offset.reset();
  read.year = take_digits(text, 4);
  if (read.year < 0 || !take(text, "-")) return std::nullopt;
  read.month = take_digits(text, 2);
  if (!take(text, "-")) return std::nullopt;
  read.day = take_digits(text, 2);
  if (take(text, "T ") && (!take_clock(text, read) || !take_zone(text, offset))) return std::nullopt;
  if (!text.empty() || !is_valid(read)) return std::nullopt;
  return read;
}

}  // namespace arena::calendar
