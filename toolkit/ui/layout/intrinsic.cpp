// Widths and heights that come from the content of a box.
#include "toolkit/ui/layout/measure.h"
#include "toolkit/ui/layout/solver.h"

namespace layout {
namespace {

bool same(double a, double b) { return a == b || (!is_known(a) && !is_known(b)); }
bool near(double a, double b) { return std::fabs(a - b) < 1.0 / 64; }
bool is_row(const Style& style) { return style.direction == Direction::kRow || style.direction == Direction::kRowReverse; }
bool wraps_columns(const Style& style) { return !is_row(style) && style.wrap != Wrap::kNone; }

// Margins in percent make a stretched height depend on more than the room for it.
bool remembers_stretched(const Style& style) {
  return style.size[1].is_auto() && (is_percent(style.margin[kTop]) || is_percent(style.margin[kBottom])) && !has_percent_padding(style) &&
         !is_percent(style.min_size[1]) && !is_percent(style.max_size[1]);
}

}  // namespace

// What a child adds to the intrinsic width of its parent: percentages of widths refer to nothing yet. `inner_height` is that of the
// parent where it is known.
double Solver::contribution(const Style& parent, std::int32_t index, Measure measure, double inner_height) {
  const Style& style = boxes_[static_cast<std::size_t>(index)].style;
  const double own_frame = frame(style, 0, kUnknown), frame_height = frame(style, 1, kUnknown);
  const double margins = resolve_or(style.margin[kLeft], kUnknown, 0) + resolve_or(style.margin[kRight], kUnknown, 0);
  const Limits heights = limits(style, 1, inner_height, frame_height);
  const bool in_line = is_row(parent) && parent.wrap == Wrap::kNone;

  double height = wanted(style, 1, inner_height, frame_height);
  const Align align = style.align_self == Align::kAuto ? parent.align_items : style.align_self;
  const bool has_auto_margin = style.margin[kTop].is_auto() || style.margin[kBottom].is_auto();
  if (!is_known(height) && in_line && align == Align::kStretch && style.size[1].is_auto() && !has_auto_margin) {
    height = inner_height - resolve_or(style.margin[kTop], kUnknown, 0) - resolve_or(style.margin[kBottom], kUnknown, 0);
  }
  if (is_known(height)) height = heights.clamp(std::max(height, frame_height));

  const double preferred = wanted(style, 0, kUnknown, own_frame);
  const double from_height = style.aspect_ratio > 0 && is_known(height) ? height * style.aspect_ratio : kUnknown;
  double width = is_known(preferred) ? preferred : from_height;
  if (!is_known(width)) width = intrinsic_width(index, measure, kUnknown, inner_height, height);
  if (!is_known(preferred) && is_known(from_height) && style.min_size[0].is_auto() && !style.clips) {
    width = std::max(width, intrinsic_width(index, kNarrowest, kUnknown, inner_height, height));
  }
  if (is_row(parent) && (in_line || measure == kWidest)) {
    // An item that cannot grow is not wider than its base, one that cannot shrink not narrower; none is below its automatic minimum.
    const double base = style.basis.is_auto() ? preferred : resolve(style.basis, kUnknown);
    if (is_known(base) && style.grow == 0) width = std::min(width, std::max(base, own_frame));
    if (is_known(base) && style.shrink == 0) width = std::max(width, base);
    if (style.min_size[0].is_auto() && !style.clips) {
      double least = intrinsic_width(index, kNarrowest, kUnknown, inner_height, height);
      if (is_known(from_height)) least = std::max(least, from_height);
      if (is_known(preferred)) least = std::min(least, preferred);
      width = std::max(width, least);
    }
  }
  return limits(style, 0, kUnknown, own_frame).clamp(width) + margins;
}

// The lines of a column that wraps at `limit` stand side by side. Percentages refer to the height only where that is known.
double Solver::width_of_columns(std::int32_t box, Measure measure, double inner_height, double limit) {
  const Style& style = boxes_[static_cast<std::size_t>(box)].style;
  const double gap_between = resolve_or(style.gap[0], kUnknown, 0), gap_along = resolve_or(style.gap[1], inner_height, 0);
  double width = 0, line_width = 0, used = 0, before = -kEndless, behind = -kEndless;  // before and behind what baselines are counted from
  bool is_first = true;
  for (std::int32_t child = boxes_[static_cast<std::size_t>(box)].first_child; child != kNoBox;
       child = boxes_[static_cast<std::size_t>(child)].next_sibling) {
    const Style& each = boxes_[static_cast<std::size_t>(child)].style;
    if (each.position == Position::kAbsolute) continue;
    const double own_frame = frame(each, 1, kUnknown);
    const double added = contribution(style, child, measure, inner_height);
    const double own_width = added - resolve_or(each.margin[kLeft], kUnknown, 0) - resolve_or(each.margin[kRight], kUnknown, 0);
    double height = each.basis.is_auto() ? wanted(each, 1, inner_height, own_frame) : resolve(each.basis, inner_height);
    const bool has_minimum = each.min_size[1].is_auto() && !each.clips;
    double natural = has_minimum || !is_known(height) ? natural_height(child, own_width, kUnknown, kUnknown) : 0;
    if (each.aspect_ratio > 0) natural = std::max(natural, own_width / each.aspect_ratio);
    if (!is_known(height)) height = natural;
    if (has_minimum) {
      const double asked = wanted(each, 1, inner_height, own_frame);
      height = std::max(height, is_known(asked) ? std::min(asked, natural) : natural);
    }
    height = limits(each, 1, inner_height, own_frame).clamp(height) + resolve_or(each.margin[kTop], kUnknown, 0) +
             resolve_or(each.margin[kBottom], kUnknown, 0);
    if (!is_first && used + gap_along + height > limit + 1.0 / 128) {
      width += line_width + gap_between;
      line_width = used = 0;
      before = behind = -kEndless;
      is_first = true;
    }
    used += height + (is_first ? 0 : gap_along);
    line_width = std::max(line_width, added);
    is_first = false;
    const Align align = each.align_self == Align::kAuto ? style.align_items : each.align_self;
    if (align != Align::kBaseline || each.margin[kLeft].is_auto() || each.margin[kRight].is_auto()) continue;
    const double left = resolve_or(each.margin[kLeft], kUnknown, 0), right = resolve_or(each.margin[kRight], kUnknown, 0);
    const double ascent = style.wrap == Wrap::kReverse ? right + own_width : left;
    before = std::max(before, ascent);
    behind = std::max(behind, added - ascent);
    line_width = std::max(line_width, before + behind);
  }
  return width + line_width;
}

void Solver::prepare() {
  for (std::size_t index = boxes_.size(); index-- > 0;) {
    const Style& style = boxes_[index].style;
    Memo& memo = memos_[index];
    memo.width_follows_height = wraps_columns(style) && boxes_[index].first_child != kNoBox;
    for (std::int32_t child = boxes_[index].first_child; child != kNoBox; child = boxes_[static_cast<std::size_t>(child)].next_sibling) {
      const Style& each = boxes_[static_cast<std::size_t>(child)].style;
      const Memo& inside = memos_[static_cast<std::size_t>(child)];
      memo.holds_stretched |= inside.holds_stretched || remembers_stretched(each);
      if (each.position == Position::kAbsolute || each.size[0].unit == Length::Unit::kPixels) continue;
      memo.width_follows_height |= inside.width_follows_height || each.aspect_ratio > 0;
    }
  }
}

double Solver::intrinsic_width(std::int32_t box, Measure measure, double percent_width, double percent_height, double height) {
  const auto index = static_cast<std::size_t>(box);
  const Box& self = boxes_[index];
  const Style& style = self.style;
  // What nothing depends on is no part of the question. Where proportions do depend on the height, though only behind a width of pixels,
  // the first answer stays: so browsers have it.
  if (!has_percent_padding(style)) percent_width = kUnknown;
  if (style.aspect_ratio <= 0 && !wraps_columns(style)) percent_height = kUnknown;
  const bool any_height = !memos_[index].width_follows_height;
  for (const Memo::Width& known : memos_[index].widths) {
    if (known.measure == measure && same(known.percent_width, percent_width) && same(known.percent_height, percent_height) &&
        (any_height || same(known.height, height)) && is_known(known.result))
      return known.result;
  }
  const double frame_height = frame(style, 1, percent_width);
  const double inner_height = is_known(height) ? std::max(0.0, height - frame_height) : kUnknown;
  const bool sums = is_row(style) && (measure == kWidest || style.wrap == Wrap::kNone);
  double width = 0;
  int count = 0;
  // Browsers ask for both widths at once: its items are laid out for either.
  if (wraps_columns(style) && measure == kNarrowest && memos_[index].holds_stretched)
    intrinsic_width(box, kWidest, percent_width, percent_height, height);
  if (self.first_child == kNoBox && self.content != nullptr)
    width = measure == kWidest ? self.content->widest() : self.content->narrowest();
  if (wraps_columns(style) && measure == kWidest) {
    const double limit = tallest(style, percent_height, frame_height);
    width = width_of_columns(box, measure, inner_height, is_known(inner_height) ? inner_height : limit);
  } else {
    for (std::int32_t child = self.first_child; child != kNoBox; child = boxes_[static_cast<std::size_t>(child)].next_sibling) {
      if (boxes_[static_cast<std::size_t>(child)].style.position == Position::kAbsolute) continue;
      const double added = contribution(style, child, measure, inner_height);
      width = sums ? width + added : std::max(width, added);
      ++count;
    }
  }
  if (sums && count > 1) width += (count - 1) * resolve_or(style.gap[0], kUnknown, 0);
  width = std::max(0.0, width) + frame(style, 0, percent_width);
  if (style.aspect_ratio > 0) {
    const Limits heights = limits(style, 1, percent_height, frame_height);
    width = std::max(heights.least * style.aspect_ratio, std::min(width, heights.most * style.aspect_ratio));
  }
  if (measure == kWidest && style.wrap != Wrap::kNone && is_row(style))
    width = std::max(width, intrinsic_width(box, kNarrowest, percent_width, percent_height, height));
  Memo& memo = memos_[index];
  memo.widths[memo.next_width] = {measure, percent_width, percent_height, height, width};
  memo.next_width = static_cast<std::uint8_t>((memo.next_width + 1) % memo.widths.size());
  return width;
}

double Solver::fitting_width(std::int32_t box, double available, double percent_width, double percent_height, double height) {
  const double widest = intrinsic_width(box, kWidest, percent_width, percent_height, height);
  return widest <= available ? widest : std::max(intrinsic_width(box, kNarrowest, percent_width, percent_height, height), available);
}

double Solver::natural_height(std::int32_t box, double width, double percent_width, double percent_height) {
  const auto index = static_cast<std::size_t>(box);
  for (const Memo::Height& known : memos_[index].heights) {
    if (known.width == width && same(known.percent_width, percent_width) && same(known.percent_height, percent_height)) return known.result;
  }
  const double result = run(box, width, kUnknown, Tall::kFromContent, percent_width, percent_height, false);
  Memo& memo = memos_[index];
  memo.heights[memo.next_height] = {width, percent_width, percent_height, result};
  memo.next_height ^= 1;
  if (memo.holds_stretched) {
    const double frame_height = frame(boxes_[index].style, 1, percent_width);
    const double asked = wanted(boxes_[index].style, 1, percent_height, frame_height);
    boxes_[index].width = width;
    boxes_[index].height = limits(boxes_[index].style, 1, percent_height, frame_height).clamp(is_known(asked) ? asked : result);
    place(box, width, boxes_[index].height, Tall::kFromContent, percent_width, percent_height);
  }
  return result;
}

// The height of a box that fills the room between its margins. Margins in percent are those it had when it first filled a room of this
// height: browsers lay a box out again only when the room or the box's own lengths change, and do not count margins among them. Nor do
// they lay it out when it stands there `unstretched` (where known) in the right height already.
double Solver::stretched_height(std::int32_t box, double width, double room, double margins, double percent_width, double percent_height,
                                double unstretched) {
  const auto index = static_cast<std::size_t>(box);
  const Style& style = boxes_[index].style;
  Memo& memo = memos_[index];
  const bool remembers = remembers_stretched(style);
  if (remembers) {
    for (const Memo::Stretched& known : memo.stretched) {
      if (near(known.width, width) && near(known.room, room)) return known.result;
    }
  }
  const double own_frame = frame(style, 1, percent_width);
  const double result = limits(style, 1, percent_height, own_frame).clamp(std::max(own_frame, room - margins));
  if (remembers && !(is_known(unstretched) && near(result, unstretched))) {
    memo.stretched[memo.next_stretched] = {width, room, result};
    memo.next_stretched ^= 1;
  }
  return result;
}

}  // namespace layout
