// Arithmetic, angles and distances.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/numbers.h"

#include <algorithm>
#include <cmath>

#include "runtime/builtins/implement.h"
#include "runtime/values/elementary.h"
#include "runtime/values/operators.h"

namespace arena {
namespace {

constexpr double kDegree = elementary::kPi / 180.0;

double real_abs(double x) { return std::fabs(x); }
double real_round(double x) { return round_half_to_even(x); }
double real_floor(double x) { return std::floor(x); }
double real_ceil(double x) { return std::ceil(x); }
double real_frac(double x) { return x - std::trunc(x); }
double real_sign(double x) { return x > 0 ? 1 : x < 0 ? -1 : 0; }
double real_sqr(double x) { return x * x; }
double real_sqrt(double x) { return elementary::sqrt(x); }
double real_power(double base, double exponent) { return elementary::pow(base, exponent); }
double real_exp(double x) { return elementary::exp(x); }
double real_ln(double x) { return elementary::log(x); }
double real_log2(double x) { return elementary::log(x) / elementary::log(2); }
double real_log10(double x) { return elementary::log(x) / elementary::log(10); }
double real_logn(double base, double x) { return elementary::log(x) / elementary::log(base); }
double real_sin(double x) { return elementary::sin(x); }
double real_cos(double x) { return elementary::cos(x); }
double real_tan(double x) { return elementary::tan(x); }
double real_arcsin(double x) { return elementary::asin(x); }
double real_arccos(double x) { return elementary::acos(x); }
double real_arctan(double x) { return elementary::atan(x); }
double real_arctan2(double y, double x) { return elementary::atan2(y, x); }
double real_dsin(double x) { return elementary::sin(x * kDegree); }
double real_dcos(double x) { return elementary::cos(x * kDegree); }
double real_dtan(double x) { return elementary::tan(x * kDegree); }
double real_darctan2(double y, double x) { return elementary::atan2(y, x) / kDegree; }
double real_degtorad(double x) { return x * kDegree; }
double real_radtodeg(double x) { return x / kDegree; }
double real_clamp(double x, double low, double high) { return std::min(high, std::max(low, x)); }
double real_lerp(double from, double to, double amount) { return from + (to - from) * amount; }
double real_mod(double x, double y) { return remainder_of(x, y); }

double fold(Rest values, double (*pick)(double, double)) {
  if (values.empty()) return 0;
  double result = to_real(values[0]);
  for (const RValue& value : values) result = pick(result, to_real(value));
  return result;
}
double real_min(Rest values) {
  return fold(values, [](double a, double b) { return b < a ? b : a; });
}
double real_max(Rest values) {
  return fold(values, [](double a, double b) { return a < b ? b : a; });
}
double real_mean(Rest values) {
  double sum = 0;
  for (const RValue& value : values) sum += to_real(value);
  return values.empty() ? 0 : sum / static_cast<double>(values.size());
}

// From the second angle to the first, the short way: above -180, at most 180.
double angle_difference(double to, double from) {
  double difference = std::fmod(to - from, 360.0);
  if (difference > 180) difference -= 360;
  if (difference <= -180) difference += 360;
  return difference;
}
double dot_product(double x1, double y1, double x2, double y2) { return x1 * x2 + y1 * y2; }

double real_point_direction(double x1, double y1, double x2, double y2) { return point_direction(x1, y1, x2, y2); }

constexpr Implementation kRows[] = {
    implement<script::checked::abs, real_abs>,
    implement<script::round, real_round>,
    implement<script::checked::floor, real_floor>,
    implement<script::checked::ceil, real_ceil>,
    implement<script::frac, real_frac>,
    implement<script::checked::sign, real_sign>,
    implement<script::sqr, real_sqr>,
    implement<script::checked::sqrt, real_sqrt>,
    implement<script::checked::power, real_power>,
    implement<script::checked::exp, real_exp>,
    implement<script::ln, real_ln>,
    implement<script::log2, real_log2>,
    implement<script::log10, real_log10>,
    implement<script::logn, real_logn>,
    implement<script::checked::sin, real_sin>,
    implement<script::checked::cos, real_cos>,
    implement<script::checked::tan, real_tan>,
    implement<script::arcsin, real_arcsin>,
    implement<script::arccos, real_arccos>,
    implement<script::arctan, real_arctan>,
    implement<script::arctan2, real_arctan2>,
    implement<script::dsin, real_dsin>,
    implement<script::dcos, real_dcos>,
    implement<script::dtan, real_dtan>,
    implement<script::darctan2, real_darctan2>,
    implement<script::checked::degtorad, real_degtorad>,
    implement<script::radtodeg, real_radtodeg>,
    implement<script::checked::clamp, real_clamp>,
    implement<script::checked::lerp, real_lerp>,
    implement<script::mod, real_mod>,
    implement<script::checked::min, real_min>,
    implement<script::checked::max, real_max>,
    implement<script::mean, real_mean>,
    implement<script::angle_difference, angle_difference>,
    implement<script::dot_product, dot_product>,
    implement<script::checked::point_direction, real_point_direction>,
    implement<script::checked::point_distance, point_distance>,
    implement<script::checked::lengthdir_x, lengthdir_x>,
    implement<script::checked::lengthdir_y, lengthdir_y>,
};
const BuiltinTable table("Numbers and angles", "", kRows);

}  // namespace
}  // namespace arena
