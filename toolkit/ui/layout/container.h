#pragma once
// A box while its children are laid out.
#include "toolkit/ui/layout/measure.h"
#include "toolkit/ui/layout/solver.h"

namespace layout {

struct Solver::Container {
  std::int32_t box;
  const Style* style;
  int main, cross;              // axes: 0 horizontal, 1 vertical
  std::array<double, 2> inner;  // content box; the height unknown while the content decides
  std::array<double, 2> start;  // where the content box begins in the border box
  bool height_counts;           // percentages of children may refer to the height
  std::size_t first_item, first_line;

  bool is_row() const { return main == 0; }
  bool is_multi_line() const { return style->wrap != Wrap::kNone; }
  double percent_height() const { return height_counts ? inner[1] : kUnknown; }
  double percent(int axis) const { return axis == 0 ? inner[0] : percent_height(); }
  double gap(int axis) const { return resolve_or(style->gap[static_cast<std::size_t>(axis)], percent(axis), 0); }
  double inner_main() const { return inner[static_cast<std::size_t>(main)]; }
  double inner_cross() const { return inner[static_cast<std::size_t>(cross)]; }
};

}  // namespace layout
