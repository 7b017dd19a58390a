#pragma once
// The one door to elementary functions. Nothing else in the product calls sin, cos, atan2, exp, log or pow of the C library: these give
// the same bits on every platform, for they use nothing but the operations that IEEE 754 defines exactly, in a fixed order.
//
// Off by less than one unit in the last place; zeros, infinities and NaN as in Annex F of the C standard. Angles are radians.
#include <cmath>

namespace arena::elementary {

inline constexpr double kPi = 3.141592653589793;

double sin(double radians);
double cos(double radians);
double tan(double radians);
double asin(double ratio);
double acos(double ratio);
double atan(double ratio);
double atan2(double y, double x);
double exp(double power);
double log(double number);
double pow(double base, double exponent);
// Exact by IEEE 754.
inline double sqrt(double number) { return std::sqrt(number); }

}  // namespace arena::elementary
