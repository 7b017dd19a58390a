// Buttons, check boxes, sliders, progress.
#include "toolkit/ui/paint.h"

namespace game {
namespace {

const BasedOn button_is_base{TuiButton, TuiBase}, checkbox_is_base{TuiCheckbox, TuiBase}, slider_is_base{TuiSlider, TuiBase};
const BasedOn bar_is_base{TuiProgressBar, TuiBase}, ring_is_base{TuiProgressRing, TuiBase};

constexpr double kKnob = 14, kTrack = 6, kBox = 18;  // pixels
constexpr int kKeyLeft = 37, kKeyRight = 39;
constexpr int kRingSteps = 48;  // of a whole ring

// What can be clicked is never smaller than its style says.
void take_smallest_size(const ObjectSelf& widget) {
  const Value look = style_of(widget);
  if (optional_field(widget, min_width) == nullptr) widget[min_width] = number_or(look, min_width, 20);
  if (optional_field(widget, min_height) == nullptr) widget[min_height] = number_or(look, min_height, 20);
}

double share_of(const Value& widget) {
  const double low = number_or(widget, minimum, 0), high = number_or(widget, maximum, 100);
  return high > low ? std::clamp((number_or(widget, value, low) - low) / (high - low), 0.0, 1.0) : 0;
}

void paint_focus(const Value& widget) {
  if (!is_set(widget, is_focused)) return;
  Rect at = rect_of(widget);
  at = {at.x - 2, at.y - 2, at.width + 4, at.height + 4};
  paint_frame(at, style_color(widget, color_accent), 1);
}

// A colour made lighter (above 1) or darker.
int shaded(int tint, double by) {
  int made = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const double part = (tint >> shift & 255) * by;
    made |= static_cast<int>(std::clamp(part, 0.0, 255.0)) << shift;
  }
  return made;
}

void slide_to(const ObjectSelf& slider, double pointer_x) {
  const Rect at = rect_of(slider);
  const double low = number_or(slider, minimum, 0), high = number_or(slider, maximum, 100), by = number_or(slider, step, 0);
  double to = low + std::clamp((pointer_x - at.x - kKnob / 2) / std::max(1.0, at.width - kKnob), 0.0, 1.0) * (high - low);
  if (by > 0) to = std::min(std::max(low + std::round((to - low) / by) * by, low), high);
  slider[setValue](to);
}

}  // namespace
}  // namespace game

// A caption is a text inside; other content may stand there instead.
CONSTRUCTOR(TuiButton, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiButton";
  self[takes_clicks] = true;
  self[color] = undefined;
  self[is_focusable] = true;
  self[align_items] = tui::kCenter;
  self[justify_content] = tui::kCenter;
  self[setPadding](10, 6);
  apply_settings(self, settings);
  take_smallest_size(self);
  if (const RValue* text = optional_field(self, value)) {
    Value shown = TuiText.make(struct_of({{value, Value(RValue(*text))}, {text_halign, 1}}));
    shown[caption_of_button] = true;
    shown[setMouseIgnore]();
    self[addContent](shown);
  }
}
STATIC_METHOD(void, TuiButton, onDraw) {
  const bool works = is_set(self, enabled, true);
  const Rect at = rect_of(self);
  const double light = works && is_set(self, is_pressed) ? 0.78 : 1;
  paint_panel(whole_or(style_of(self), sprite_button, -1), at, shaded(own_color_or(self, color_button), light), opacity_of(self));
  if (works && is_set(self, is_hovered) && light == 1) paint_rectangle({at.x + 3, at.y + 3, at.width - 6, at.height - 6}, c_white, 0.1);
  paint_focus(self);
}
STATIC_METHOD(void, TuiButton, onActivate) { raise(self, "click"); }

CONSTRUCTOR(TuiCheckbox, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiCheckbox";
  self[takes_clicks] = true;
  self[is_focusable] = true;
  self[value] = false;
  self[caption] = "";
  self[flex_direction] = tui::kRow;
  self[align_items] = tui::kCenter;
  self[min_height] = kBox + 4;
  self[padding_left] = kBox + 8;
  apply_settings(self, settings);
  self[addContent](Value(TuiText.make(struct_of({{value, Value(self[caption])}}))[setMouseIgnore]()));
}
STATIC_METHOD(void, TuiCheckbox, onDraw) {
  const Rect at = rect_of(self);
  const Rect box{at.x, at.y + (at.height - kBox) / 2, kBox, kBox};
  paint_rectangle(box, style_color(self, color_field), opacity_of(self));
  paint_frame(box, style_color(self, is_set(self, is_hovered) ? color_accent : color_faint), opacity_of(self));
  if (is_set(self, value)) paint_rectangle({box.x + 4, box.y + 4, kBox - 8, kBox - 8}, style_color(self, color_accent), opacity_of(self));
  paint_focus(self);
}
STATIC_METHOD(void, TuiCheckbox, onRelease, Value, Value, Value inside) {
  if (inside) self[setValue](!is_set(self, value));
}
STATIC_METHOD(void, TuiCheckbox, onActivate) { self[setValue](!is_set(self, value)); }

CONSTRUCTOR(TuiSlider, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiSlider";
  self[takes_clicks] = true;
  self[is_focusable] = true;
  self[minimum] = 0;
  self[maximum] = 100;
  self[step] = 0;
  self[value] = 0;
  self[min_width] = 80;
  self[min_height] = 20;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiSlider, onDraw) {
  const Rect at = rect_of(self);
  const double share = share_of(self), middle = at.y + at.height / 2, knob = at.x + kKnob / 2 + share * (at.width - kKnob);
  paint_rectangle({at.x, middle - kTrack / 2, at.width, kTrack}, style_color(self, color_field), opacity_of(self));
  paint_rectangle({at.x, middle - kTrack / 2, knob - at.x, kTrack}, style_color(self, color_accent), opacity_of(self));
  draw_set_alpha(opacity_of(self));
  draw_set_colour(style_color(self, is_set(self, is_hovered) || is_set(self, is_pressed) ? color_text : color_faint));
  draw_circle(knob, middle, kKnob / 2, false);
  draw_set_alpha(1);
  paint_focus(self);
}
STATIC_METHOD(void, TuiSlider, onPress, Value at_x, Value) { slide_to(self, to_real(at_x)); }
STATIC_METHOD(void, TuiSlider, onDrag, Value at_x, Value) { slide_to(self, to_real(at_x)); }
STATIC_METHOD(Value, TuiSlider, onKey, Value key) {
  if (key != kKeyLeft && key != kKeyRight) return false;
  const double low = number_or(self, minimum, 0), high = number_or(self, maximum, 100);
  const double by = number_or(self, step, 0) > 0 ? number_or(self, step, 0) : (high - low) / 20;
  self[setValue](std::min(std::max(number_or(self, value, low) + (key == kKeyLeft ? -by : by), low), high));
  return true;
}

// Shows its value as a share of the maximum and as a number; `rounding` is the number's decimals.
CONSTRUCTOR(TuiProgressBar, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiProgressBar";
  self[color] = undefined;
  self[minimum] = 0;
  self[maximum] = 100;
  self[value] = 0;
  self[min_width] = 60;
  self[min_height] = 20;
  self[flex_grow] = 1;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiProgressBar, onDraw) {
  const Rect at = rect_of(self);
  const Value look = style_of(self);
  const double share = share_of(self);
  paint_panel(whole_or(look, sprite_bar_back, -1), at, style_color(self, color_field), opacity_of(self));
  const double filled = share * at.width;
  if (filled > 0.5)
    paint_panel(whole_or(look, sprite_bar_fill, -1), {at.x, at.y, filled, at.height}, own_color_or(self, color_accent), opacity_of(self));
  paint_shadowed_text(self, shown_text(self), at);
}

CONSTRUCTOR(TuiProgressRing, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiProgressRing";
  self[color] = undefined;
  self[minimum] = 0;
  self[maximum] = 100;
  self[value] = 0;
  self[width] = 64;
  self[height] = 64;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiProgressRing, onDraw) {
  const Rect at = rect_of(self);
  const double radius = std::min(at.width, at.height) / 2, thickness = std::max(3.0, radius / 4), centre_x = at.x + at.width / 2,
               centre_y = at.y + at.height / 2;
  const auto arc = [&](double share, int tint) {
    draw_set_colour(tint);
    draw_set_alpha(opacity_of(self));
    const int steps = std::max(1, saturate_int32(std::ceil(share * kRingSteps)));
    const auto place = [&](double along, double out, double& to_x, double& to_y) {
      const Real turn = 90 - along * 360;
      to_x = centre_x + lengthdir_x(out, turn).number();
      to_y = centre_y + lengthdir_y(out, turn).number();
    };
    for (int i = 0; i < steps; ++i) {
      double x1, y1, x2, y2, x3, y3, x4, y4;
      place(share * i / steps, radius, x1, y1);
      place(share * (i + 1) / steps, radius, x2, y2);
      place(share * (i + 1) / steps, radius - thickness, x3, y3);
      place(share * i / steps, radius - thickness, x4, y4);
      draw_triangle(x1, y1, x2, y2, x3, y3, false);
      draw_triangle(x1, y1, x3, y3, x4, y4, false);
    }
    draw_set_alpha(1);
  };
  arc(1, style_color(self, color_field));
  if (share_of(self) > 0) arc(share_of(self), own_color_or(self, color_accent));
  paint_shadowed_text(self, shown_text(self), at);
}
