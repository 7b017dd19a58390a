// Arithmetic, angles and chance.
#include "runtime/script/intrinsics.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {
namespace {

constexpr double kDegree = elementary::kPi / 180.0;

double real_abs(double x) { return std::fabs(x); }
double real_round(double x) {  // halves to the even neighbour
  const double below = std::floor(x), rest = x - below;
  if (rest != 0.5) return rest < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}
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
double real_clamp(double x, double low, double high) { return script::clamp(x, low, high).number(); }
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

double random_below(double x) { return game_random().unit() * x; }
double random_between(double low, double high) { return low + game_random().unit() * (high - low); }
double random_integer(double high) { return static_cast<double>(game_random().integer(0, saturate_int64(high))); }
double random_integer_between(double low, double high) {
  return static_cast<double>(game_random().integer(saturate_int64(low), saturate_int64(high)));
}
RValue choose_one(Rest values) {
  if (values.empty()) return {};
  return values[static_cast<std::size_t>(game_random().integer(0, static_cast<std::int64_t>(values.size()) - 1))];
}
double randomize_seed() { return static_cast<double>(randomize()); }
void random_set_seed(double seed) { game_random().reseed(static_cast<std::uint64_t>(saturate_int64(seed))); }
double random_get_seed() { return static_cast<double>(game_random().seed()); }
double real_point_direction(double x1, double y1, double x2, double y2) { return point_direction(x1, y1, x2, y2); }

double make_colour(double red, double green, double blue) {
  const auto byte = [](double part) { return std::clamp(std::floor(part), 0.0, 255.0); };
  return byte(red) + byte(green) * 256 + byte(blue) * 65536;
}
double colour_part(double colour, int shift) { return static_cast<double>(saturate_int64(colour) >> shift & 255); }
double colour_red(double colour) { return colour_part(colour, 0); }
double colour_green(double colour) { return colour_part(colour, 8); }
double colour_blue(double colour) { return colour_part(colour, 16); }
double merge_colour(double from, double to, double amount) {
  const auto mix = [&](int shift) { return real_round(real_lerp(colour_part(from, shift), colour_part(to, shift), amount)); };
  return make_colour(mix(0), mix(8), mix(16));
}
// Hue, saturation and value from 0 to 255.
double make_colour_hsv(double hue, double saturation, double value) {
  const double sector = std::fmod(hue / 255.0 * 6.0, 6.0), s = saturation / 255.0;
  const auto part = [&](double offset) {
    const double k = std::fmod(offset + sector, 6.0);
    return value * (1 - s * std::clamp(std::min(k, 4 - k), 0.0, 1.0));
  };
  return make_colour(part(5), part(3), part(1));
}

const BuiltinEntry kEntries[] = {
    {"abs", builtin<real_abs>},
    {"round", builtin<real_round>},
    {"floor", builtin<real_floor>},
    {"ceil", builtin<real_ceil>},
    {"frac", builtin<real_frac>},
    {"sign", builtin<real_sign>},
    {"sqr", builtin<real_sqr>},
    {"sqrt", builtin<real_sqrt>},
    {"power", builtin<real_power>},
    {"exp", builtin<real_exp>},
    {"ln", builtin<real_ln>},
    {"log2", builtin<real_log2>},
    {"log10", builtin<real_log10>},
    {"logn", builtin<real_logn>},
    {"sin", builtin<real_sin>},
    {"cos", builtin<real_cos>},
    {"tan", builtin<real_tan>},
    {"arcsin", builtin<real_arcsin>},
    {"arccos", builtin<real_arccos>},
    {"arctan", builtin<real_arctan>},
    {"arctan2", builtin<real_arctan2>},
    {"dsin", builtin<real_dsin>},
    {"dcos", builtin<real_dcos>},
    {"dtan", builtin<real_dtan>},
    {"darctan2", builtin<real_darctan2>},
    {"degtorad", builtin<real_degtorad>},
    {"radtodeg", builtin<real_radtodeg>},
    {"clamp", builtin<real_clamp>},
    {"lerp", builtin<real_lerp>},
    {"mod", builtin<real_mod>},
    {"min", builtin<real_min>},
    {"max", builtin<real_max>},
    {"mean", builtin<real_mean>},
    {"angle_difference", builtin<angle_difference>},
    {"dot_product", builtin<dot_product>},
    {"point_direction", builtin<real_point_direction>},
    {"point_distance", builtin<point_distance>},
    {"lengthdir_x", builtin<lengthdir_x>},
    {"lengthdir_y", builtin<lengthdir_y>},
    {"random", builtin<random_below>},
    {"random_range", builtin<random_between>},
    {"irandom", builtin<random_integer>},
    {"irandom_range", builtin<random_integer_between>},
    {"choose", builtin<choose_one>},
    {"randomize", builtin<randomize_seed>},
    {"random_set_seed", builtin<random_set_seed>},
    {"random_get_seed", builtin<random_get_seed>},
    {"make_colour_rgb", builtin<make_colour>},
    {"make_color_rgb", builtin<make_colour>},
    {"make_colour_hsv", builtin<make_colour_hsv>},
    {"make_color_hsv", builtin<make_colour_hsv>},
    {"merge_colour", builtin<merge_colour>},
    {"merge_color", builtin<merge_colour>},
    {"colour_get_red", builtin<colour_red>},
    {"colour_get_green", builtin<colour_green>},
    {"colour_get_blue", builtin<colour_blue>},
};
const BuiltinTable table(kEntries);

}  // namespace
}  // namespace arena
