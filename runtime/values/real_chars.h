#pragma once
// std::to_chars and std::from_chars for double, with the same results where the standard library has them for whole numbers only.
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace arena {

// By way of the C library, whose locale is "C".
namespace real_chars {

// The end of the decimal number that the text begins with; `first` when it begins with none.
inline const char* end_of_number(const char* first, const char* last) {
  const auto skip_digits = [&](const char* at) {
    while (at != last && *at >= '0' && *at <= '9') ++at;
    return at;
  };
  const char* const digits = first != last && *first == '-' ? first + 1 : first;
  const char* end = skip_digits(digits);
  bool has_digits = end != digits;
  if (end != last && *end == '.') {
    const char* const behind = skip_digits(end + 1);
    has_digits = has_digits || behind != end + 1;
    end = behind;
  }
  if (!has_digits) return first;
  if (end == last || (*end != 'e' && *end != 'E')) return end;
  const char* exponent = end + 1;
  if (exponent != last && (*exponent == '-' || *exponent == '+')) ++exponent;
  const char* const behind = skip_digits(exponent);
  return behind != exponent ? behind : end;
}

inline std::to_chars_result put(char* first, char* last, std::string_view text) {
  if (static_cast<std::size_t>(last - first) < text.size()) return {last, std::errc::value_too_large};
  return {first + text.copy(first, text.size()), std::errc()};
}

// Fewest digits that read back to the same double, as 1.25e+10.
inline std::string shortest(double number) {
  char text[40];
  for (int digits = 0; digits < 17; ++digits) {
    std::snprintf(text, sizeof text, "%.*e", digits, number);
    if (std::strtod(text, nullptr) == number) break;
  }
  return text;
}

// So many decimals, at most a hundred.
inline std::to_chars_result fixed(char* first, char* last, double number, int decimals) {
  char text[512];
  return put(first, last, {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%.*f", decimals, number))});
}

// The shortest text that reads back to the same double; of two as short ones that without an exponent. `number` is finite.
inline std::to_chars_result exact(char* first, char* last, double number) {
  const std::string scientific = shortest(number);
  const int exponent = std::atoi(scientific.c_str() + scientific.find('e') + 1);
  const int digits = static_cast<int>(scientific.find('e')) - (number < 0 || std::signbit(number) ? 1 : 0);  // and the point between them
  const int decimals = (digits > 1 ? digits - 2 : 0) - exponent;
  char plain[512];
  const std::size_t length = static_cast<std::size_t>(std::snprintf(plain, sizeof plain, "%.*f", decimals > 0 ? decimals : 0, number));
  if (length <= scientific.size()) return put(first, last, {plain, length});
  return put(first, last, scientific);
}

inline std::from_chars_result from(const char* first, const char* last, double& number) {
  const char* const end = end_of_number(first, last);
  if (end == first) return {first, std::errc::invalid_argument};
  const std::string text(first, end);
  const double read = std::strtod(text.c_str(), nullptr);
  const bool is_zero = text.find_first_of("123456789") >= text.find_first_of("eE");
  if (std::isinf(read) || (read == 0 && !is_zero)) return {end, std::errc::result_out_of_range};
  number = read;
  return {end, std::errc()};
}
}  // namespace real_chars

#ifdef _LIBCPP_VERSION
inline std::to_chars_result fixed_to_chars(char* first, char* last, double number, int decimals) {
  return real_chars::fixed(first, last, number, decimals);
}
inline std::to_chars_result exact_to_chars(char* first, char* last, double number) { return real_chars::exact(first, last, number); }
inline std::from_chars_result real_from_chars(const char* first, const char* last, double& number) {
  return real_chars::from(first, last, number);
}
#else
inline std::to_chars_result fixed_to_chars(char* first, char* last, double number, int decimals) {
  return std::to_chars(first, last, number, std::chars_format::fixed, decimals);
}
inline std::to_chars_result exact_to_chars(char* first, char* last, double number) { return std::to_chars(first, last, number); }
inline std::from_chars_result real_from_chars(const char* first, const char* last, double& number) {
  return std::from_chars(first, last, number);
}
#endif

}  // namespace arena
