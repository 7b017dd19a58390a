#pragma once
// Lengths of a style made into pixels.
#include <algorithm>
#include <cmath>

#include "toolkit/ui/layout/box.h"

namespace layout {

inline constexpr double kEndless = std::numeric_limits<double>::infinity();

// Unknown for automatic lengths and for percentages of something unknown.
inline double resolve(Length length, double base) {
  if (length.unit == Length::Unit::kPixels) return length.value;
  return length.unit == Length::Unit::kPercent ? length.value / 100 * base : kUnknown;
}
inline double resolve_or(Length length, double base, double otherwise) {
  const double pixels = resolve(length, base);
  return is_known(pixels) ? pixels : otherwise;
}

// Padding and border together; percentages are of the width around the box, also vertically, and nothing where that is unknown.
inline double frame(const Style& style, int axis, double percent_width) {
  const auto low = static_cast<std::size_t>(axis), high = low + 2;
  return resolve_or(style.padding[low], percent_width, 0) + resolve_or(style.padding[high], percent_width, 0) + style.border[low] +
         style.border[high];
}
inline double frame_before(const Style& style, int axis, double percent_width) {
  const auto low = static_cast<std::size_t>(axis);
  return resolve_or(style.padding[low], percent_width, 0) + style.border[low];
}

inline bool is_percent(Length length) { return length.unit == Length::Unit::kPercent; }
inline bool has_percent_padding(const Style& style) { return std::any_of(style.padding.begin(), style.padding.end(), is_percent); }

struct Limits {
  double least, most;
  double clamp(double value) const { return std::max(least, std::min(value, most)); }
};
// `base` is what percentages of this axis refer to; `frame` the padding and border of it. A minimum wins over a maximum.
inline Limits limits(const Style& style, int axis, double base, double frame) {
  const auto which = static_cast<std::size_t>(axis);
  return {std::max(resolve_or(style.min_size[which], base, 0), frame), resolve_or(style.max_size[which], base, kEndless)};
}
// The size that the style asks for, never below its frame; unknown when automatic.
inline double wanted(const Style& style, int axis, double base, double frame) {
  const double size = resolve(style.size[static_cast<std::size_t>(axis)], base);
  return is_known(size) ? std::max(size, frame) : kUnknown;
}

// The room for a column's items that the style gives by itself; without end where only the content decides.
inline double tallest(const Style& style, double percent_height, double own_frame) {
  const Limits heights = limits(style, 1, percent_height, own_frame);
  const double asked = wanted(style, 1, percent_height, own_frame);
  return heights.clamp(is_known(asked) ? asked : kEndless) - own_frame;
}

}  // namespace layout
