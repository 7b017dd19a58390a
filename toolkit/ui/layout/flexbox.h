#pragma once
// Flexbox layout over an array of boxes. A pure function: the same boxes give the same rectangles, whatever was laid out before.
#include <vector>

#include "toolkit/ui/layout/solver.h"

namespace layout {

// A tree of boxes. The first one is the root; a box stands behind its parent.
class Tree {
 public:
  // Forgets all boxes and keeps the memory.
  void clear();
  // Adds a box as the last child; the root when `parent` is kNoBox. The index stays good until clear().
  std::int32_t add(std::int32_t parent, const Style& style, const Content* content = nullptr);
  Box& at(std::int32_t box) { return boxes_[static_cast<std::size_t>(box)]; }
  const Box& at(std::int32_t box) const { return boxes_[static_cast<std::size_t>(box)]; }
  std::int32_t count() const { return static_cast<std::int32_t>(boxes_.size()); }

  // Lays out everything inside a room of this size, which the percentages of the root refer to. The root's own size is its style's; it
  // fills the width of the room and takes the height of its content where that is automatic.
  void lay_out(double width, double height);

 private:
  std::vector<Box> boxes_;
  std::vector<std::int32_t> last_child_;
  // Memory of the last layout, kept for the next.
  std::vector<Memo> memos_;
  std::vector<Item> items_;
  std::vector<Line> lines_;
};

}  // namespace layout
