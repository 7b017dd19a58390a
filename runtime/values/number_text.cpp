#include "runtime/values/number_text.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "runtime/values/real_chars.h"

namespace arena {
namespace {

std::string_view trimmed(std::string_view text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

// Splits off the sign and tells whether digits in base 16 follow.
struct Digits {
  std::string_view text;
  bool negative = false;
  bool hexadecimal = false;
};
Digits split(std::string_view text) {
  Digits digits{trimmed(text)};
  if (!digits.text.empty() && (digits.text.front() == '-' || digits.text.front() == '+')) {
    digits.negative = digits.text.front() == '-';
    digits.text.remove_prefix(1);
  }
  if (digits.text.size() > 2 && digits.text[0] == '0' && (digits.text[1] == 'x' || digits.text[1] == 'X')) {
    digits.hexadecimal = true;
    digits.text.remove_prefix(2);
  }
  return digits;
}

// What no 64 bits hold is the largest that they do.
std::optional<std::uint64_t> parse_digits(std::string_view text, int base) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error == std::errc::result_out_of_range) number = UINT64_MAX;
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool equals_ignoring_case(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((text[i] | 0x20) != lower[i]) return false;
  }
  return true;
}

// Two decimals by way of whole hundredths: right wherever the number is clearly nearer to one hundredth than to the next. Null where
// it is not, and for large numbers.
const char* quick_hundredths(double number, char* buffer) {
  if (!(std::fabs(number) < 1e12)) return nullptr;
  const double scaled = std::fabs(number) * 100, below = std::floor(scaled), rest = scaled - below;
  if (std::fabs(rest - 0.5) < 1e-3) return nullptr;
  const std::int64_t hundredths = static_cast<std::int64_t>(below) + (rest > 0.5 ? 1 : 0);
  char* at = buffer;
  if (number < 0 && hundredths != 0) *at++ = '-';
  at = std::to_chars(at, at + 32, hundredths / 100).ptr;
  *at++ = '.';
  *at++ = static_cast<char>('0' + hundredths / 10 % 10);
  *at++ = static_cast<char>('0' + hundredths % 10);
  return at;
}

}  // namespace

std::string real_to_text(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  char buffer[512];  // the largest double has 309 digits before the point
  if (number == std::floor(number) && std::fabs(number) < 1e15) {
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, static_cast<std::int64_t>(number)).ptr);
  }
  if (const char* end = quick_hundredths(number, buffer)) return std::string(static_cast<const char*>(buffer), end);
  const bool whole = number == std::floor(number);
  const auto [end, error] = fixed_to_chars(buffer, buffer + sizeof buffer, number, whole ? 0 : 2);
  (void)error;
  std::string text(buffer, end);
  if (text == "-0") return "0";
  return text == "-0.00" ? "0.00" : text;
}

std::string real_to_exact_text(double number) {
  char buffer[64];
  return {buffer, exact_to_chars(buffer, buffer + sizeof buffer, number).ptr};
}

std::optional<double> parse_real(std::string_view text) {
  const Digits digits = split(text);
  double number = 0;
  if (digits.hexadecimal) {
    const auto whole = parse_digits(digits.text, 16);
    if (!whole) return std::nullopt;
    number = static_cast<double>(*whole);
  } else {
    if (digits.text.empty() || (digits.text[0] != '.' && (digits.text[0] < '0' || digits.text[0] > '9'))) return std::nullopt;
    const auto [end, error] = real_from_chars(digits.text.data(), digits.text.data() + digits.text.size(), number);
    if (end != digits.text.data() + digits.text.size()) return std::nullopt;
    if (error == std::errc::result_out_of_range) {
      // Too large or too small for a double: from_chars leaves the number alone, the exponent's sign tells which.
      const std::size_t exponent = digits.text.find_first_of("eE");
      const bool tiny = exponent != std::string_view::npos && exponent + 1 < digits.text.size() && digits.text[exponent + 1] == '-';
      number = tiny ? 0.0 : HUGE_VAL;
    } else if (error != std::errc()) {
      return std::nullopt;
    }
  }
  return digits.negative ? -number : number;
}

std::optional<std::int64_t> parse_integer(std::string_view text) {
  const Digits digits = split(text);
  if (const auto whole = parse_digits(digits.text, digits.hexadecimal ? 16 : 10)) {
    if (*whole > static_cast<std::uint64_t>(INT64_MAX)) return digits.negative ? INT64_MIN : INT64_MAX;
    return digits.negative ? -static_cast<std::int64_t>(*whole) : static_cast<std::int64_t>(*whole);
  }
  const auto real = parse_real(text);
  if (!real) return std::nullopt;
  return saturate_int64(*real);
}

std::optional<bool> parse_bool(std::string_view text) {
  const std::string_view word = trimmed(text);
  if (equals_ignoring_case(word, "true")) return true;
  if (equals_ignoring_case(word, "false")) return false;
  const auto real = parse_real(text);
  if (!real) return std::nullopt;
  return *real > 0.5;
}

std::int32_t saturate_int32_slow(double number) {
  if (std::isnan(number)) return 0;
  if (number >= 2147483647.0) return INT32_MAX;
  if (number <= -2147483648.0) return INT32_MIN;
  return static_cast<std::int32_t>(number);
}

std::int64_t saturate_int64(double number) {
  if (std::isnan(number)) return 0;
  if (number >= 9223372036854775807.0) return INT64_MAX;
  if (number <= -9223372036854775808.0) return INT64_MIN;
  return static_cast<std::int64_t>(number);
}

}  // namespace arena
