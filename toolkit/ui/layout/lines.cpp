// From children to lines: base sizes, line breaks, growing and shrinking.
#include "toolkit/ui/layout/container.h"

namespace layout {
namespace {

constexpr double kRounding = 1.0 / 128;  // pixels: sums may miss the size they came from by less

double outer(const Item& item, double size, int axis) { return size + item.margins(axis); }

}  // namespace

void Solver::collect(Container& in) {
  for (std::int32_t child = boxes_[static_cast<std::size_t>(in.box)].first_child; child != kNoBox;
       child = boxes_[static_cast<std::size_t>(child)].next_sibling) {
    const Style& style = boxes_[static_cast<std::size_t>(child)].style;
    if (style.position == Position::kAbsolute) continue;
    Item item{};
    item.box = child;
    item.align = style.align_self == Align::kAuto ? in.style->align_items : style.align_self;
    for (std::size_t edge = 0; edge < 4; ++edge) {
      item.margin_is_auto[edge] = style.margin[edge].is_auto();
      item.margin[edge] = resolve_or(style.margin[edge], in.inner[0], 0);
    }
    if (in.is_row()) {
      size_row_item(in, item);
    } else {
      size_column_item(in, item);
    }
    item.hypothetical = std::max(item.least, std::min(item.base, item.most));
    item.target = item.hypothetical;
    items_.push_back(item);
  }
}

void Solver::size_row_item(const Container& in, Item& item) {
  const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
  const double frame_width = frame(style, 0, in.inner[0]), frame_height = frame(style, 1, in.inner[0]);
  const double width = wanted(style, 0, in.inner[0], frame_width);
  const Limits widths = limits(style, 0, in.inner[0], frame_width), heights = limits(style, 1, in.percent_height(), frame_height);

  // A height that is definite before anything is laid out, for the proportions.
  double height = wanted(style, 1, in.percent_height(), frame_height);
  const bool stretches =
      item.align == Align::kStretch && style.size[1].is_auto() && !item.margin_is_auto[kTop] && !item.margin_is_auto[kBottom];
  if (!is_known(height) && stretches && !in.is_multi_line() && is_known(in.percent_height()))
    height = std::max(frame_height, in.inner[1] - item.margins(1));
  const double clamped_height = is_known(height) ? heights.clamp(height) : kUnknown;
  const double from_height = style.aspect_ratio > 0 ? clamped_height * style.aspect_ratio : kUnknown;

  double base = style.basis.is_auto() ? width : resolve(style.basis, in.inner[0]);
  if (!is_known(base)) base = from_height;
  if (!is_known(base)) base = intrinsic_width(item.box, kWidest, in.inner[0], in.percent_height(), clamped_height);
  item.base = std::max(base, frame_width);

  item.most = widths.most;
  item.least = widths.least;
  if (style.min_size[0].is_auto() && !style.clips) {
    double least = intrinsic_width(item.box, kNarrowest, in.inner[0], in.percent_height(), clamped_height);
    if (is_known(from_height)) least = std::max(least, from_height);
    if (style.aspect_ratio > 0) least = std::max(heights.least * style.aspect_ratio, std::min(least, heights.most * style.aspect_ratio));
    if (is_known(width)) least = std::min(least, width);
    item.least = std::max(frame_width, std::min(least, widths.most));
  }
}

void Solver::size_column_item(const Container& in, Item& item) {
  const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
  const double frame_width = frame(style, 0, in.inner[0]), frame_height = frame(style, 1, in.inner[0]);
  const double height = wanted(style, 1, in.percent_height(), frame_height);
  const Limits widths = limits(style, 0, in.inner[0], frame_width), heights = limits(style, 1, in.percent_height(), frame_height);
  const bool stretches =
      item.align == Align::kStretch && style.size[0].is_auto() && !item.margin_is_auto[kLeft] && !item.margin_is_auto[kRight];

  const double available = std::max(0.0, in.inner[0] - item.margins(0));
  double width = wanted(style, 0, in.inner[0], frame_width);
  if (!is_known(width) && stretches && !in.is_multi_line()) width = available;
  const double asked = style.basis.is_auto() ? height : resolve(style.basis, in.percent_height());
  const bool follows_height = !is_known(width) && style.aspect_ratio > 0 && is_known(height) && is_known(asked);
  if (follows_height) width = heights.clamp(height) * style.aspect_ratio;
  if (!is_known(width)) width = fitting_width(item.box, available, in.inner[0], kUnknown, kUnknown);
  item.cross = item.first_width = widths.clamp(width);  // flexing may still change the height, and a width that follows it

  const double from_width = style.aspect_ratio > 0 && !follows_height ? item.cross / style.aspect_ratio : kUnknown;
  double base = is_known(asked) ? asked : from_width;
  if (!is_known(base)) base = natural_height(item.box, item.cross, in.inner[0], kUnknown);
  item.base = std::max(base, frame_height);

  item.most = heights.most;
  item.least = heights.least;
  if (style.min_size[1].is_auto() && !style.clips) {
    double least = natural_height(item.box, item.cross, in.inner[0], kUnknown);
    if (is_known(from_width)) least = std::max(least, from_width);
    if (style.aspect_ratio > 0) least = std::max(widths.least / style.aspect_ratio, std::min(least, widths.most / style.aspect_ratio));
    if (is_known(height)) least = std::min(least, height);
    item.least = std::max(frame_height, std::min(least, heights.most));
  }
}

void Solver::break_lines(Container& in, double limit) {
  const double gap = in.gap(in.main);
  Line line{in.first_item, in.first_item, 0, 0, 0};
  double used = 0;
  for (std::size_t i = in.first_item; i < items_.size(); ++i) {
    const double size = outer(items_[i], items_[i].hypothetical, in.main);
    if (in.is_multi_line() && i > line.begin && is_known(limit) && used + gap + size > limit + kRounding) {
      line.end = i;
      lines_.push_back(line);
      line.begin = i;
      used = 0;
    }
    used += size + (i > line.begin ? gap : 0);
  }
  line.end = items_.size();
  if (line.end > line.begin) lines_.push_back(line);
}

// Growing and shrinking one line until it fits, freezing whatever meets its limit.
void Solver::flex_line(const Container& in, const Line& line) {
  const double room = in.inner_main() - static_cast<double>(line.end - line.begin - 1) * in.gap(in.main);
  double used = 0;
  for (std::size_t i = line.begin; i < line.end; ++i) used += outer(items_[i], items_[i].hypothetical, in.main);
  const bool grows = used < room;

  double initial = room, factors = 0;
  for (std::size_t i = line.begin; i < line.end; ++i) {
    Item& item = items_[i];
    const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
    const double factor = grows ? style.grow : style.shrink;
    item.is_frozen = factor == 0 || (grows ? item.base > item.hypothetical : item.base < item.hypothetical);
    item.target = item.is_frozen ? item.hypothetical : item.base;
    initial -= outer(item, item.target, in.main);
  }
  for (std::size_t rounds = line.begin; rounds <= line.end; ++rounds) {
    double free_space = room;
    bool any = false;
    factors = 0;
    for (std::size_t i = line.begin; i < line.end; ++i) {
      Item& item = items_[i];
      const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
      free_space -= outer(item, item.is_frozen ? item.target : item.base, in.main);
      if (item.is_frozen) continue;
      any = true;
      factors += grows ? style.grow : style.shrink;
    }
    if (!any) return;
    if (factors < 1 && std::fabs(initial * factors) < std::fabs(free_space)) free_space = initial * factors;
    share(in, line, free_space, grows);
  }
}

// One round: hands out the free space, then freezes those that overstepped in the direction that prevails.
void Solver::share(const Container& in, const Line& line, double free_space, bool grows) {
  double weights = 0, violation = 0;
  const auto weight_of = [&](const Item& item) {
    const Style& style = boxes_[static_cast<std::size_t>(item.box)].style;
    if (grows) return style.grow;
    return style.shrink * std::max(0.0, item.base - frame(style, in.main, in.inner[0]));
  };
  for (std::size_t i = line.begin; i < line.end; ++i) weights += items_[i].is_frozen ? 0 : weight_of(items_[i]);
  for (std::size_t i = line.begin; i < line.end; ++i) {
    Item& item = items_[i];
    if (item.is_frozen) continue;
    const double wished = weights > 0 && free_space != 0 ? item.base + free_space * weight_of(item) / weights : item.base;
    item.target = std::max(item.least, std::min(wished, item.most));
    violation += item.target - wished;
    item.hypothetical = wished;
  }
  for (std::size_t i = line.begin; i < line.end; ++i) {
    Item& item = items_[i];
    if (item.is_frozen) continue;
    const double over = item.target - item.hypothetical;
    item.is_frozen = std::fabs(violation) < 1e-9 || (violation > 0 ? over > 0 : over < 0);
  }
}

}  // namespace layout
