#pragma once
// The one door to elementary functions. Nothing else in the product calls sin, cos, atan2, exp, log or pow of the C library, so that
// bit-equal replacements can be put in here once and hold everywhere.
#include <cmath>

namespace arena::elementary {

inline constexpr double kPi = 3.141592653589793;

inline double sin(double radians) { return std::sin(radians); }
inline double cos(double radians) { return std::cos(radians); }
inline double tan(double radians) { return std::tan(radians); }
inline double asin(double ratio) { return std::asin(ratio); }
inline double acos(double ratio) { return std::acos(ratio); }
inline double atan(double ratio) { return std::atan(ratio); }
inline double atan2(double y, double x) { return std::atan2(y, x); }
inline double exp(double power) { return std::exp(power); }
inline double log(double number) { return std::log(number); }
inline double pow(double base, double exponent) { return std::pow(base, exponent); }
// Exact on every platform by IEEE 754.
inline double sqrt(double number) { return std::sqrt(number); }

}  // namespace arena::elementary
