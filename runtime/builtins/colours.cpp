// Colours as numbers.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/colours.h"

#include <algorithm>
#include <cmath>

#include "runtime/builtins/implement.h"
#include "runtime/values/operators.h"

namespace arena {
namespace {

double make_colour(double red, double green, double blue) {
  const auto byte = [](double part) { return std::clamp(std::floor(part), 0.0, 255.0); };
  return byte(red) + byte(green) * 256 + byte(blue) * 65536;
}
double colour_part(double colour, int shift) { return static_cast<double>(saturate_int64(colour) >> shift & 255); }
double colour_red(double colour) { return colour_part(colour, 0); }
double colour_green(double colour) { return colour_part(colour, 8); }
double colour_blue(double colour) { return colour_part(colour, 16); }
double merge_colour(double from, double to, double amount) {
  const auto mix = [&](int shift) {
    return round_half_to_even(colour_part(from, shift) + (colour_part(to, shift) - colour_part(from, shift)) * amount);
  };
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

constexpr Implementation kRows[] = {
    implement<script::make_colour_rgb, make_colour>,     implement<script::make_color_rgb, make_colour>,
    implement<script::make_colour_hsv, make_colour_hsv>, implement<script::make_color_hsv, make_colour_hsv>,
    implement<script::merge_colour, merge_colour>,       implement<script::merge_color, merge_colour>,
    implement<script::colour_get_red, colour_red>,       implement<script::colour_get_green, colour_green>,
    implement<script::colour_get_blue, colour_blue>,
};
const BuiltinTable table("Colours", "", kRows);

}  // namespace
}  // namespace arena
