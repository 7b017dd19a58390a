#pragma once
// Numbers to text and back, the same on every platform and in every locale.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace arena {

// Whole numbers without decimals, others with two; "NaN", "inf", "-inf".
std::string real_to_text(double number);
// Shortest text that reads back to the same double; for data that must lose nothing.
std::string real_to_exact_text(double number);

// Surrounding blanks and a 0x prefix are allowed; anything else around the number is a failure. "inf" and "NaN" are no numbers.
std::optional<double> parse_real(std::string_view text);
std::optional<std::int64_t> parse_integer(std::string_view text);  // a fraction is cut off, what is too large saturates
// "true", "false" in any case, or a number (above 0.5 is true).
std::optional<bool> parse_bool(std::string_view text);

// Toward zero; NaN gives 0 and what is out of range the nearest end of the range.
std::int32_t saturate_int32_slow(double number);
inline std::int32_t saturate_int32(double number) {
  return number > -2147483648.0 && number < 2147483647.0 ? static_cast<std::int32_t>(number) : saturate_int32_slow(number);
}
std::int64_t saturate_int64(double number);

}  // namespace arena
