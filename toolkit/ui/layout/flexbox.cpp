#include "toolkit/ui/layout/flexbox.h"

#include "toolkit/ui/layout/measure.h"
#include "toolkit/ui/layout/solver.h"

namespace layout {

void Tree::clear() {
  boxes_.clear();
  last_child_.clear();
}

std::int32_t Tree::add(std::int32_t parent, const Style& style, const Content* content) {
  const std::int32_t index = count();
  Box& box = boxes_.emplace_back();
  box.style = style;
  box.content = content;
  last_child_.push_back(kNoBox);
  if (parent == kNoBox) return index;
  std::int32_t& last = last_child_[static_cast<std::size_t>(parent)];
  (last == kNoBox ? at(parent).first_child : at(last).next_sibling) = index;
  last = index;
  return index;
}

void Tree::lay_out(double width, double height) {
  if (boxes_.empty()) return;
  memos_.assign(boxes_.size(), {});
  items_.clear();
  lines_.clear();
  Solver solver(boxes_, memos_, items_, lines_);
  solver.prepare();
  Box& root = at(0);
  const Style& style = root.style;
  const double frame_width = frame(style, 0, width), frame_height = frame(style, 1, width);
  const double wanted_width = wanted(style, 0, width, frame_width), wanted_height = wanted(style, 1, height, frame_height);
  root.x = resolve_or(style.margin[kLeft], width, 0);
  root.y = resolve_or(style.margin[kTop], width, 0);
  const double filling = width - root.x - resolve_or(style.margin[kRight], width, 0);
  root.width = limits(style, 0, width, frame_width).clamp(is_known(wanted_width) ? wanted_width : std::max(filling, frame_width));
  const bool is_definite = is_known(wanted_height);
  const double tall = is_definite ? wanted_height : solver.natural_height(0, root.width, width, height);
  root.height = limits(style, 1, height, frame_height).clamp(tall);
  solver.place(0, root.width, root.height, is_definite ? Tall::kDefinite : Tall::kFromContent, width, height);
}

}  // namespace layout
