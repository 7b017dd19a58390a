#pragma once
// Numbers as texts that give the same number again, to the bit; NaN and the infinities as "NaN", "inf" and "-inf".
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "runtime/values/number_text.h"

namespace arena::formats {

inline std::string exact_text(double number) { return std::isnan(number) ? "NaN" : real_to_exact_text(number); }
inline std::optional<double> read_exact(std::string_view text) {
  if (text == "NaN") return NAN;
  if (text == "inf" || text == "-inf") return text == "inf" ? INFINITY : -INFINITY;
  return parse_real(text);
}

}  // namespace arena::formats
