// From lines to rectangles: cross sizes, alignment, and what is placed absolutely.
#include "toolkit/ui/layout/container.h"

namespace layout {
namespace {

// Where the first of `count` pieces begins and what lies between two, for the free space. Spaces around pieces that do not fit give way
// to the near end of the axis: where the pieces run in reverse, that is the far end of their own direction.
struct Spread {
  double first = 0, between = 0;
};
Spread spread(Justify justify, double free_space, std::size_t count, bool reverse) {
  const auto pieces = static_cast<double>(count);
  switch (justify) {
    case Justify::kStart: return {};
    case Justify::kEnd: return {free_space, 0};
    case Justify::kCenter: return {free_space / 2, 0};
    case Justify::kBetween: return {0, free_space > 0 && count > 1 ? free_space / (pieces - 1) : 0};
    case Justify::kAround:
      return free_space > 0 ? Spread{free_space / pieces / 2, free_space / pieces} : Spread{reverse ? free_space : 0, 0};
    case Justify::kEvenly:
      return free_space > 0 ? Spread{free_space / (pieces + 1), free_space / (pieces + 1)} : Spread{reverse ? free_space : 0, 0};
  }
  return {};
}

Justify justify_of(Align align) {
  switch (align) {
    case Align::kEnd: return Justify::kEnd;
    case Align::kCenter: return Justify::kCenter;
    case Align::kBetween: return Justify::kBetween;
    case Align::kAround: return Justify::kAround;
    case Align::kEvenly: return Justify::kEvenly;
    default: return Justify::kStart;
  }
}

// A height from proportions may still grow with the content, unless a minimum or clipping rules that out.
bool proportions_decide(const Style& style) { return style.aspect_ratio > 0 && (!style.min_size[1].is_auto() || style.clips); }

// Whether an item fills its line across.
bool stretches(const Solver::Container& in, const Item& item, const Style& style) {
  const auto low = static_cast<std::size_t>(in.cross);
  return item.align == Align::kStretch && style.size[low].is_auto() && !item.margin_is_auto[low] && !item.margin_is_auto[low + 2];
}

bool is_reverse(Direction direction) { return direction == Direction::kRowReverse || direction == Direction::kColumnReverse; }

// The share of the free space that lies before a box out of the flow, were it the only child.
double share_before(const Solver::Container& in, const Style& style, int axis) {
  const bool is_main = axis == in.main;
  const Align align = style.align_self == Align::kAuto ? in.style->align_items : style.align_self;
  const Justify justify = is_main ? in.style->justify : justify_of(align);
  double share = 0.5;
  if (justify == Justify::kStart || justify == Justify::kBetween) share = 0;
  if (justify == Justify::kEnd) share = 1;
  const bool reverse = is_main ? is_reverse(in.style->direction) : in.style->wrap == Wrap::kReverse && align != Align::kBaseline;
  return reverse ? 1 - share : share;
}

}  // namespace

double Solver::child_height(const Container& in, std::int32_t box, double width) {
  const Style& style = boxes_[static_cast<std::size_t>(box)].style;
  const double frame_height = frame(style, 1, in.inner[0]);
  const Limits heights = limits(style, 1, in.percent_height(), frame_height);
  const double height = wanted(style, 1, in.percent_height(), frame_height);
  if (is_known(height)) return heights.clamp(height);
  if (style.aspect_ratio <= 0) return heights.clamp(natural_height(box, width, in.inner[0], in.percent_height()));
  double from_width = std::max(width / style.aspect_ratio, frame_height);
  if (style.min_size[1].is_auto() && !style.clips) {
    from_width = std::max(from_width, natural_height(box, width, in.inner[0], in.percent_height()));
  }
  return heights.clamp(from_width);
}

// The width of a column's item: with proportions and no width of its own it follows the height that flexing gave.
double Solver::child_width(const Container& in, const Item& item) {
  const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
  const bool stretches =
      item.align == Align::kStretch && !item.margin_is_auto[kLeft] && !item.margin_is_auto[kRight] && !in.is_multi_line();
  if (!style.size[0].is_auto() || stretches) return item.cross;
  double width = item.target * style.aspect_ratio;
  if (style.aspect_ratio <= 0) {
    width = fitting_width(item.box, std::max(0.0, in.inner[0] - item.margins(0)), in.inner[0], in.percent_height(),
                          tall(in, item) == Tall::kDefinite ? item.target : kUnknown);
  } else if (style.min_size[0].is_auto() && !style.clips)
    width = std::max(width, intrinsic_width(item.box, kNarrowest, in.inner[0], in.percent_height(), item.target));
  return limits(style, 0, in.inner[0], frame(style, 0, in.inner[0])).clamp(width);
}

// Sizes of the lines across, before free space is given to them.
void Solver::size_lines(Container& in) {
  for (std::size_t l = in.first_line; l < lines_.size(); ++l) {
    lines_[l].cross = 0;
    lines_[l].ascent = -kEndless;
    double below = -kEndless;
    for (std::size_t i = lines_[l].begin; i < lines_[l].end; ++i) {
      const double size = in.is_row() ? child_height(in, items_[i].box, items_[i].target) : child_width(in, items_[i]);
      items_[i].cross = size;
      lines_[l].cross = std::max(lines_[l].cross, size + items_[i].margins(in.cross));
      items_[i].ascent = ascent(in, items_[i]);
      if (!is_known(items_[i].ascent)) continue;
      lines_[l].ascent = std::max(lines_[l].ascent, items_[i].ascent);
      below = std::max(below, size + items_[i].margins(in.cross) - items_[i].ascent);
    }
    if (below > -kEndless) lines_[l].cross = std::max(lines_[l].cross, lines_[l].ascent + below);
  }
}

Tall Solver::tall(const Container& in, const Item& item) const {
  const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
  const bool is_asked_for =
      is_known(in.is_row() || style.basis.is_auto() ? wanted(style, 1, in.percent_height(), 0) : resolve(style.basis, in.percent_height()));
  if (is_asked_for || (in.is_row() ? stretches(in, item, style) || proportions_decide(style) : in.height_counts)) return Tall::kDefinite;
  return in.is_row() ? Tall::kFromContent : Tall::kFixed;
}

// Items with automatic margins across are not aligned at all. Where lines wrap in reverse the baselines are counted from the far end. In
// columns the items stand on their left edges.
double Solver::ascent(const Container& in, const Item& item) {
  const auto low = static_cast<std::size_t>(in.cross), high = low + 2;
  if (item.align != Align::kBaseline || item.margin_is_auto[low] || item.margin_is_auto[high]) return kUnknown;
  const bool reverse = in.style->wrap == Wrap::kReverse;
  if (!in.is_row()) return reverse ? item.margin[high] + item.cross : item.margin[low];
  const Item copy = item;  // the stack grows while its children are placed
  Box& box = boxes_[static_cast<std::size_t>(copy.box)];
  box.width = copy.target;
  box.height = copy.cross;
  place(copy.box, copy.target, copy.cross, tall(in, copy), in.inner[0], in.percent_height());
  const double from_top = baseline(copy.box);
  return reverse ? copy.margin[kBottom] + copy.cross - from_top : copy.margin[kTop] + from_top;
}

// What a placed box stands on, from its upper edge; without anything to stand on it is its lower edge.
double Solver::baseline(std::int32_t index) const {
  const Box& box = boxes_[static_cast<std::size_t>(index)];
  double from_top = box.height;
  if (box.content != nullptr && is_known(box.content->baseline())) {
    from_top = frame_before(box.style, 1, box.width) + box.content->baseline();
  } else if (box.stands_on != kNoBox) {
    from_top = boxes_[static_cast<std::size_t>(box.stands_on)].y + baseline(box.stands_on);
  }
  return box.style.clips ? std::max(0.0, std::min(from_top, box.height)) : from_top;
}

// The child whose baseline is that of the box: of the line that lies nearest to the start an item aligned by it, else the item that lies
// nearest to the start.
std::int32_t Solver::standing_child(const Container& in) const {
  if (lines_.size() == in.first_line) return kNoBox;
  const Line& line = in.style->wrap == Wrap::kReverse ? lines_.back() : lines_[in.first_line];
  for (std::size_t i = line.begin; i < line.end && in.is_row(); ++i) {
    if (is_known(items_[i].ascent)) return items_[i].box;
  }
  return items_[is_reverse(in.style->direction) ? line.end - 1 : line.begin].box;
}

void Solver::align_lines(Container& in) {
  const double gap = in.gap(in.cross), room = in.inner_cross();
  const std::size_t count = lines_.size() - in.first_line;
  if (count == 0) return;
  if (!in.is_multi_line()) {
    lines_[in.first_line].cross = room;
    lines_[in.first_line].position = 0;
    return;
  }
  double used = gap * static_cast<double>(count - 1);
  for (std::size_t l = in.first_line; l < lines_.size(); ++l) used += lines_[l].cross;
  const double free_space = room - used;
  Spread lines = spread(justify_of(in.style->align_content), free_space, count, in.style->wrap == Wrap::kReverse);
  double position = lines.first;
  for (std::size_t l = in.first_line; l < lines_.size(); ++l) {
    if (in.style->align_content == Align::kStretch && free_space > 0) lines_[l].cross += free_space / static_cast<double>(count);
    lines_[l].position = position;
    position += lines_[l].cross + lines.between + gap;
  }
}

void Solver::place_line(const Container& in, const Line& line) {
  const auto low = static_cast<std::size_t>(in.main), high = low + 2;
  const double gap = in.gap(in.main);
  double free_space = in.inner_main() - gap * static_cast<double>(line.end - line.begin - 1);
  int automatic = 0;
  for (std::size_t i = line.begin; i < line.end; ++i) {
    free_space -= items_[i].target + items_[i].margins(in.main);
    automatic += items_[i].margin_is_auto[low] + items_[i].margin_is_auto[high];
  }
  if (automatic > 0 && free_space > 0) {
    for (std::size_t i = line.begin; i < line.end; ++i) {
      for (const std::size_t edge : {low, high}) {
        if (items_[i].margin_is_auto[edge]) items_[i].margin[edge] = free_space / automatic;
      }
    }
    free_space = 0;
  }
  const bool reverse = is_reverse(in.style->direction);
  const Spread along = spread(in.style->justify, free_space, line.end - line.begin, reverse);
  double position = along.first;
  for (std::size_t i = line.begin; i < line.end; ++i) {
    const Item item = items_[i];  // a copy: the stack grows while children are placed
    const double before = reverse ? item.margin[high] : item.margin[low], after = reverse ? item.margin[low] : item.margin[high];
    const double from_start = position + before;
    place_item(in, line, item, reverse ? in.inner_main() - from_start - item.target : from_start);
    position = from_start + item.target + after + along.between + gap;
  }
}

void Solver::place_item(const Container& in, const Line& line, const Item& item, double main_position) {
  const auto low = static_cast<std::size_t>(in.cross), high = low + 2;
  const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
  const double own_frame = frame(style, in.cross, in.inner[0]);
  const bool has_auto_margin = item.margin_is_auto[low] || item.margin_is_auto[high];
  const Limits cross_limits = limits(style, in.cross, in.percent(in.cross), own_frame);
  const double line_room = line.cross - item.margins(in.cross);
  double size = item.cross;
  double ascent = item.ascent;
  if (stretches(in, item, style)) {
    const bool is_sized_before = in.is_multi_line() || !in.height_counts;
    size = in.is_row() ? stretched_height(item.box, item.target, line.cross, item.margins(1), in.inner[0], in.percent_height(),
                                          is_sized_before ? item.cross : kUnknown)
                       : cross_limits.clamp(std::max(own_frame, line_room));
  } else if (!in.is_row() && in.is_multi_line() && style.size[0].is_auto() && style.aspect_ratio <= 0) {
    // A line that another item made wider than the container has room for more of the content.
    size = cross_limits.clamp(fitting_width(item.box, std::max(0.0, line_room), in.inner[0], in.percent_height(),
                                            tall(in, item) == Tall::kDefinite ? item.target : kUnknown));
    if (is_known(ascent) && in.style->wrap == Wrap::kReverse) ascent += size - item.cross;
  }

  // Wrapping in reverse turns the cross axis around: positions are measured from its other end.
  const bool reverse = in.style->wrap == Wrap::kReverse;
  const double free_space = line_room - size;
  double before = reverse ? item.margin[high] : item.margin[low];
  double offset = 0;
  if (has_auto_margin) {
    const bool first_is_auto = reverse ? item.margin_is_auto[high] : item.margin_is_auto[low];
    const bool both = item.margin_is_auto[low] && item.margin_is_auto[high];
    if (free_space > 0 && first_is_auto) before += both ? free_space / 2 : free_space;
  } else if (item.align == Align::kEnd) {
    offset = free_space;
  } else if (item.align == Align::kCenter) {
    offset = free_space / 2;
  } else if (is_known(ascent)) {
    offset = line.ascent - ascent;
  }
  const double from_start = line.position + before + offset;
  const double cross_position = reverse ? in.inner_cross() - from_start - size : from_start;

  Box& box = boxes_[static_cast<std::size_t>(item.box)];
  box.x = in.start[0] + (in.is_row() ? main_position : cross_position);
  box.y = in.start[1] + (in.is_row() ? cross_position : main_position);
  box.width = in.is_row() ? item.target : size;
  box.height = in.is_row() ? size : item.target;
  Tall is_tall = tall(in, item);
  if (is_tall == Tall::kFixed && !is_known(wanted(style, 1, in.percent_height(), 0)) && box.width == item.first_width &&
      natural_height(item.box, box.width, in.inner[0], kUnknown) == box.height)
    is_tall = Tall::kFromContent;  // it may reach further down on its way than in the end, where margins are negative
  place(item.box, box.width, box.height, is_tall, in.inner[0], in.percent_height());
}

// A box out of the flow: its containing block is the padding box of the parent.
void Solver::place_absolute(const Container& in, std::int32_t index) {
  const Style& style = boxes_[static_cast<std::size_t>(index)].style;
  const Box& parent = boxes_[static_cast<std::size_t>(in.box)];
  const std::array<double, 2> block{parent.width - in.style->border[kLeft] - in.style->border[kRight],
                                    parent.height - in.style->border[kTop] - in.style->border[kBottom]};
  std::array<double, 4> inset{}, margin{};
  for (std::size_t edge = 0; edge < 4; ++edge) {
    inset[edge] = resolve(style.inset[edge], block[edge % 2]);
    margin[edge] = resolve_or(style.margin[edge], block[0], 0);
  }
  std::array<double, 2> size{}, room{}, space{}, point{}, share{};
  const std::array<double, 2> own_frame{frame(style, 0, block[0]), frame(style, 1, block[0])};
  for (std::size_t axis = 0; axis < 2; ++axis) {
    size[axis] = wanted(style, static_cast<int>(axis), block[axis], own_frame[axis]);
    const double insets = (is_known(inset[axis]) ? inset[axis] : 0) + (is_known(inset[axis + 2]) ? inset[axis + 2] : 0);
    double around = block[axis] - insets;
    if (!is_known(inset[axis]) && !is_known(inset[axis + 2])) {
      // Where it would stand as the only child: it may reach from there to the edges that it does not lean on.
      share[axis] = share_before(in, style, static_cast<int>(axis));
      point[axis] = in.start[axis] + in.inner[axis] * share[axis];
      const double before = point[axis] - in.style->border[axis], behind = block[axis] - before;
      around = share[axis] == 0 ? behind : share[axis] == 1 ? before : 2 * std::min(before, behind);
    }
    room[axis] = std::max(0.0, around);
    space[axis] = room[axis] - margin[axis] - margin[axis + 2];
    const bool fills = is_known(inset[axis]) && is_known(inset[axis + 2]);
    const bool other_decides = style.aspect_ratio > 0 && is_known(axis == 1 ? size[0] : wanted(style, 1, block[1], own_frame[1]));
    if (!is_known(size[axis]) && fills && !other_decides) size[axis] = std::max(own_frame[axis], space[axis]);
  }
  const Limits widths = limits(style, 0, block[0], own_frame[0]), heights = limits(style, 1, block[1], own_frame[1]);
  if (is_known(size[1])) size[1] = heights.clamp(size[1]);
  if (!is_known(size[0]) && style.aspect_ratio > 0 && is_known(size[1])) {
    size[0] = size[1] * style.aspect_ratio;
    if (style.min_size[0].is_auto() && !style.clips)
      size[0] = std::max(size[0], intrinsic_width(index, kNarrowest, block[0], block[1], size[1]));
  }
  if (!is_known(size[0])) size[0] = fitting_width(index, std::max(0.0, space[0]), block[0], block[1], size[1]);
  if (style.aspect_ratio > 0 && style.size[0].is_auto()) {
    size[0] = std::max(heights.least * style.aspect_ratio, std::min(size[0], heights.most * style.aspect_ratio));
  }
  size[0] = widths.clamp(size[0]);
  if (is_known(inset[kTop]) && is_known(inset[kBottom]) && style.size[1].is_auto() && style.aspect_ratio <= 0)
    size[1] = stretched_height(index, size[0], room[1], margin[kTop] + margin[kBottom], block[0], block[1], kUnknown);
  const bool height_counts = is_known(size[1]) || proportions_decide(style);
  if (style.aspect_ratio > 0 && style.size[1].is_auto()) size[1] = kUnknown;  // the width may have met its limits
  if (!is_known(size[1]) && style.aspect_ratio > 0) {
    size[1] = size[0] / style.aspect_ratio;
    if (style.min_size[1].is_auto() && !style.clips) size[1] = std::max(size[1], natural_height(index, size[0], block[0], block[1]));
  }
  if (!is_known(size[1])) size[1] = natural_height(index, size[0], block[0], block[1]);
  size[1] = heights.clamp(size[1]);

  std::array<double, 2> position{};
  for (std::size_t axis = 0; axis < 2; ++axis) {
    const std::size_t low = axis, high = axis + 2;
    const double border = in.style->border[low];
    const bool both = is_known(inset[low]) && is_known(inset[high]);
    const double left_over = both ? std::max(0.0, block[axis] - inset[low] - inset[high]) - size[axis] - margin[low] - margin[high] : 0;
    const int automatic = style.margin[low].is_auto() + style.margin[high].is_auto();
    double before = margin[low];
    if (both && style.margin[low].is_auto()) before = automatic == 2 ? (left_over > 0 || axis == 1 ? left_over / 2 : 0) : left_over;
    if (is_known(inset[low])) {
      position[axis] = border + inset[low] + before;
    } else if (is_known(inset[high])) {
      position[axis] = border + block[axis] - inset[high] - margin[high] - size[axis];
    } else {
      position[axis] = point[axis] - (size[axis] + margin[low] + margin[high]) * share[axis] + margin[low];
    }
  }
  Box& box = boxes_[static_cast<std::size_t>(index)];
  box.x = position[0];
  box.y = position[1];
  box.width = size[0];
  box.height = size[1];
  place(index, size[0], size[1], height_counts ? Tall::kDefinite : Tall::kFromContent, block[0], block[1]);
}

double Solver::run(std::int32_t box, double width, double height, Tall tall, double percent_width, double percent_height, bool places) {
  const Box& self = boxes_[static_cast<std::size_t>(box)];
  const Style& style = self.style;
  const double frame_width = frame(style, 0, percent_width), frame_height = frame(style, 1, percent_width);
  const double inner_width = std::max(0.0, width - frame_width);
  if (self.first_child == kNoBox) return frame_height + (self.content != nullptr && !places ? self.content->height_at(inner_width) : 0);

  Container in{};
  in.box = box;
  in.style = &style;
  in.main = style.direction == Direction::kRow || style.direction == Direction::kRowReverse ? 0 : 1;
  in.cross = 1 - in.main;
  in.inner = {inner_width, is_known(height) ? std::max(0.0, height - frame_height) : kUnknown};
  in.start = {frame_before(style, 0, percent_width), frame_before(style, 1, percent_width)};
  in.height_counts = tall == Tall::kDefinite;
  in.first_item = items_.size();
  in.first_line = lines_.size();
  collect(in);

  break_lines(in, in.is_row() || tall != Tall::kFromContent ? in.inner_main() : tallest(style, percent_height, frame_height));
  double natural = 0;
  if (!in.is_row() && !is_known(in.inner[1])) {
    for (std::size_t l = in.first_line; l < lines_.size(); ++l) {
      double used = in.gap(1) * static_cast<double>(lines_[l].end - lines_[l].begin - 1);
      for (std::size_t i = lines_[l].begin; i < lines_[l].end; ++i) used += items_[i].hypothetical + items_[i].margins(1);
      natural = std::max(natural, used);
    }
  } else {
    for (std::size_t l = in.first_line; l < lines_.size(); ++l) flex_line(in, lines_[l]);
    size_lines(in);
    for (std::size_t l = in.first_line; l < lines_.size(); ++l) natural += lines_[l].cross + (l > in.first_line ? in.gap(in.cross) : 0);
  }
  if (places) {
    align_lines(in);
    for (std::size_t l = in.first_line; l < lines_.size(); ++l) {
      const Line line = lines_[l];
      place_line(in, line);
    }
    boxes_[static_cast<std::size_t>(box)].stands_on = standing_child(in);
  }
  items_.resize(in.first_item);
  lines_.resize(in.first_line);
  if (places) {
    for (std::int32_t child = boxes_[static_cast<std::size_t>(box)].first_child; child != kNoBox;
         child = boxes_[static_cast<std::size_t>(child)].next_sibling) {
      if (boxes_[static_cast<std::size_t>(child)].style.position == Position::kAbsolute) place_absolute(in, child);
    }
  }
  return natural + frame_height;
}

void Solver::place(std::int32_t box, double width, double height, Tall tall, double percent_width, double percent_height) {
  run(box, width, height, tall, percent_width, percent_height, true);
}

}  // namespace layout
