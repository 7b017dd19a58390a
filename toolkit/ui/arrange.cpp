// From widgets to boxes and back: the tree is laid out, and every widget learns where it stands and what clips it.
#include <deque>
#include <unordered_set>

#include "runtime/script/real_chars.h"
#include "toolkit/ui/layout/flexbox.h"
#include "toolkit/ui/paint.h"
#include "toolkit/ui/widget.h"

namespace game {
namespace {

using layout::Align;
using layout::Justify;
using layout::Length;

const Variable order{"order"};

constexpr double kBaseline = 0.8;  // of a line's height: what the letters of the fonts stand on

// A text as layout asks for it. Widths are rounded up, so that a text always fits the box that it asked for.
class TextContent final : public layout::Content {
 public:
  TextContent(std::string text, int font, double scale, bool wraps) : text_(std::move(text)), font_(font), scale_(scale), wraps_(wraps) {}
  double widest() const override { return std::ceil(text_width(text_, font_) * scale_); }
  double narrowest() const override {
    if (!wraps_) return widest();
    double width = 0;
    std::size_t from = 0;
    while (from < text_.size()) {
      const std::size_t end = std::min(text_.find_first_of(" \n", from), text_.size());
      width = std::max(width, text_width(std::string_view(text_).substr(from, end - from), font_));
      from = end + 1;
    }
    return std::ceil(width * scale_);
  }
  double height_at(double width) const override { return std::ceil(text_height(text_, font_, wraps_ ? width / scale_ : 0) * scale_); }
  double baseline() const override { return kBaseline * text_height("", font_, 0) * scale_; }

 private:
  std::string text_;
  int font_;
  double scale_;
  bool wraps_;
};

class SpriteContent final : public layout::Content {
 public:
  SpriteContent(double width, double height) : width_(width), height_(height) {}
  double widest() const override { return width_; }
  double narrowest() const override { return 0; }
  double height_at(double) const override { return height_; }

 private:
  double width_, height_;
};

Length length_of(const RValue* given) {
  if (given == nullptr) return {};
  if (is_numeric(*given)) return Length::pixels(to_real(*given));
  if (!given->is_string()) return {};
  const std::string_view text = text_of(*given);
  if (text == "auto" || text.empty()) return {};
  double number = 0;
  const char* const end = arena::real_from_chars(text.data(), text.data() + text.size(), number).ptr;
  return end != text.data() + text.size() && *end == '%' ? Length::percent(number) : Length::pixels(number);
}

Justify justify_of(int given) {
  constexpr Justify kAll[] = {Justify::kStart,   Justify::kCenter, Justify::kEnd,   Justify::kStart,
                              Justify::kBetween, Justify::kAround, Justify::kEvenly};
  return given >= 0 && given < 7 ? kAll[given] : Justify::kStart;
}
Align align_of(int given) {
  constexpr Align kAll[] = {Align::kStart,  Align::kCenter, Align::kEnd,  Align::kStretch, Align::kBetween,
                            Align::kAround, Align::kEvenly, Align::kAuto, Align::kBaseline};
  return given >= 0 && given < 9 ? kAll[given] : Align::kStretch;
}

// One tree after the other is built in the same memory.
class Arrangement {
 public:
  void run(const Value& root, double gui_width, double gui_height) {
    tree_.clear();
    widgets_.clear();
    texts_.clear();
    sprites_.clear();
    placed_.clear();
    add(root, layout::kNoBox, 1);
    tree_.lay_out(gui_width, gui_height);
    in_order_ = array_create(0);
    write(root, 0, {0, 0, gui_width, gui_height}, 0, 0);
    root[order] = in_order_;
    in_order_ = Value();
  }

 private:
  layout::Style style_for(const Value& widget) {
    layout::Style made;
    const auto edge = [&](const Variable& field, Length& into) {
      if (const RValue* given = optional_field(widget, field)) into = length_of(given);
    };
    made.direction = static_cast<layout::Direction>(
        std::array{layout::Direction::kColumn, layout::Direction::kColumnReverse, layout::Direction::kRow,
                   layout::Direction::kRowReverse}[static_cast<std::size_t>(std::clamp(whole_or(widget, flex_direction, 0), 0, 3))]);
    made.wrap = static_cast<layout::Wrap>(std::clamp(whole_or(widget, flex_wrap, 0), 0, 2));
    made.justify = justify_of(whole_or(widget, justify_content, 0));
    made.align_items = align_of(whole_or(widget, align_items, tui::kStretch));
    made.align_self = align_of(whole_or(widget, align_self, tui::kAuto));
    made.align_content = align_of(whole_or(widget, align_content, tui::kStretch));
    made.position = whole_or(widget, is_absolute, 0) > 0 ? layout::Position::kAbsolute : layout::Position::kRelative;
    made.clips = whole_or(widget, clips, 0) > 0;
    made.grow = std::max(0.0, number_or(widget, flex_grow, 0));
    made.shrink = std::max(0.0, number_or(widget, flex_shrink, 1));
    made.aspect_ratio = std::max(0.0, number_or(widget, aspect_ratio, 0));
    edge(flex_basis, made.basis);
    edge(width, made.size[0]);
    edge(height, made.size[1]);
    edge(min_width, made.min_size[0]);
    edge(min_height, made.min_size[1]);
    edge(max_width, made.max_size[0]);
    edge(max_height, made.max_size[1]);
    edge(column_gap, made.gap[0]);
    edge(row_gap, made.gap[1]);
    const Variable* const paddings[4] = {&padding_left, &padding_top, &padding_right, &padding_bottom};
    const Variable* const margins[4] = {&margin_left, &margin_top, &margin_right, &margin_bottom};
    const Variable* const borders[4] = {&border_left, &border_top, &border_right, &border_bottom};
    const Variable* const insets[4] = {&inset_left, &inset_top, &inset_right, &inset_bottom};
    for (std::size_t i = 0; i < 4; ++i) {
      edge(*paddings[i], made.padding[i]);
      edge(*margins[i], made.margin[i]);
      edge(*insets[i], made.inset[i]);
      made.border[i] = number_or(widget, *borders[i], 0);
    }
    return made;
  }

  const layout::Content* content_for(const Value& widget, layout::Style& made) {
    const int kind = whole_or(widget, measures, kMeasuresNothing);
    if (kind == kMeasuresText) {
      const bool wraps = whole_or(widget, overflow, 0) == tui::kOverflowWrap;
      if (whole_or(widget, overflow, 0) >= tui::kOverflowClip) made.clips = true;
      return &texts_.emplace_back(shown_text(widget), font_of(widget), number_or(widget, text_scale, 1), wraps);
    }
    if (kind == kMeasuresSprite) {
      const int sprite = whole_or(widget, value, -1);
      const double across = sprite_width_of(sprite), down = sprite_height_of(sprite);
      if (whole_or(widget, maintain_aspect, 0) > 0 && down > 0 && made.aspect_ratio == 0) made.aspect_ratio = across / down;
      return &sprites_.emplace_back(across, down);
    }
    return nullptr;
  }

  // Each widget once, and no deeper than the native stack reaches, whatever scripts wrote into `content` and `parent`.
  void add(const Value& widget, std::int32_t above, int depth) {
    placed_.insert(widget.object);
    layout::Style made = style_for(widget);
    const std::vector<Value> inside = content_of(widget);
    const bool has_content = !inside.empty();
    const layout::Content* measured = has_content ? nullptr : content_for(widget, made);
    const std::int32_t box = tree_.add(above, made, measured);
    widgets_.push_back(object_of(widget));
    for (const Value& each : inside) {
      if (depth < kDeepest && is_set(each, visible_field, true) && !placed_.contains(each.object)) add(each, box, depth + 1);
    }
  }

  // In the order of drawing: parents before their content, lower z before higher.
  void write(const Value& widget, std::int32_t index, const Rect& clip, double from_x, double from_y) {
    const layout::Box& box = tree_.at(index);
    const Rect rect{from_x + box.x, from_y + box.y, box.width, box.height};
    widget[rect_x] = rect.x;
    widget[rect_y] = rect.y;
    widget[rect_width] = rect.width;
    widget[rect_height] = rect.height;
    widget[clip_left] = clip.x;
    widget[clip_top] = clip.y;
    widget[clip_right] = clip.x + clip.width;
    widget[clip_bottom] = clip.y + clip.height;
    array_push(in_order_, widget);
    Rect inner = clip;
    if (is_set(widget, clips)) {
      const double left = std::max(clip.x, rect.x), top = std::max(clip.y, rect.y);
      const double right = std::min(clip.x + clip.width, rect.x + rect.width),
                   bottom = std::min(clip.y + clip.height, rect.y + rect.height);
      inner = {left, top, std::max(0.0, right - left), std::max(0.0, bottom - top)};
    }
    std::vector<std::pair<double, std::int32_t>> children;
    for (std::int32_t child = box.first_child; child != layout::kNoBox; child = tree_.at(child).next_sibling) {
      children.emplace_back(number_or(Value(RValue::of_object(widgets_[static_cast<std::size_t>(child)])), z_order, 0), child);
    }
    std::stable_sort(children.begin(), children.end(), [](const auto& a, const auto& b) { return sorts_before(a.first, b.first); });
    const double scrolled_x = rect.x - number_or(widget, scroll_x, 0), scrolled_y = rect.y - number_or(widget, scroll_y, 0);
    for (const auto& [z, child] : children) {
      write(Value(RValue::of_object(widgets_[static_cast<std::size_t>(child)])), child, inner, scrolled_x, scrolled_y);
    }
  }

  layout::Tree tree_;
  std::unordered_set<const WBObjectBase*> placed_;
  std::vector<PropertyObject*> widgets_;  // by box; alive: they hang in the tree that is being arranged
  std::deque<TextContent> texts_;         // boxes point at them: they stay where they are
  std::deque<SpriteContent> sprites_;
  Value in_order_;
};

const Part<Arrangement> arrangement{PartLevel::kServices, "arrangement of widgets"};  // kept for its memory

}  // namespace

void arrange(const Value& root, double gui_width, double gui_height) {
  arrangement().run(root, gui_width, gui_height);
  root[layout_dirty] = false;
}

Rect inner_rect(const Value& widget) {
  Rect rect = rect_of(widget);
  const auto pixels = [&](const Variable& field) {
    const Length length = length_of(optional_field(widget, field));
    return length.unit == Length::Unit::kPercent ? 0 : length.value;
  };
  const double left = pixels(padding_left) + number_or(widget, border_left, 0),
               top = pixels(padding_top) + number_or(widget, border_top, 0);
  rect.width = std::max(0.0, rect.width - left - pixels(padding_right) - number_or(widget, border_right, 0));
  rect.height = std::max(0.0, rect.height - top - pixels(padding_bottom) - number_or(widget, border_bottom, 0));
  rect.x += left;
  rect.y += top;
  return rect;
}

}  // namespace game
