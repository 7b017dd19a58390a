// Containers, panels, pictures and texts.
#include "toolkit/ui/paint.h"

namespace game {
namespace {
const BasedOn box_is_base{TuiBox, TuiBase}, row_is_base{TuiRow, TuiBase}, column_is_base{TuiColumn, TuiBase},
    panel_is_base{TuiPanel, TuiBase};
const BasedOn image_is_base{TuiImage, TuiBase}, text_is_base{TuiText, TuiBase};
constexpr double kDisabled = 0.4;  // how opaque what does not work is
}  // namespace

double opacity_of(const Value& widget) { return number_or(widget, alpha, 1) * (is_set(widget, enabled, true) ? 1 : kDisabled); }

}  // namespace game

CONSTRUCTOR(TuiBox, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiBox";
  self[color] = undefined;
  apply_settings(self, settings);
}
// Seen only with a colour of its own, on the style's panel.
STATIC_METHOD(void, TuiBox, onDraw) {
  if (optional_field(self, color) != nullptr)
    paint_panel(whole_or(style_of(self), sprite_panel, -1), rect_of(self), whole_or(self, color, c_white), opacity_of(self));
}

CONSTRUCTOR(TuiRow, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiRow";
  self[flex_direction] = tui::kRow;
  apply_settings(self, settings);
}

CONSTRUCTOR(TuiColumn, Value settings) {
  TuiBase.extend(self, settings);
  self[widget_type] = "TuiColumn";
}

CONSTRUCTOR(TuiPanel, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiPanel";
  self[color] = undefined;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiPanel, onDraw) {
  paint_panel(whole_or(style_of(self), sprite_panel, -1), rect_of(self), own_color_or(self, color_panel), opacity_of(self));
}

// Stretched over its box; as nine pieces when it is made to hold content, so that a panel's corners keep their form.
CONSTRUCTOR(TuiImage, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiImage";
  self[image] = 0;
  self[maintain_aspect] = false;
  self[rotation] = 0;
  self[measures] = kMeasuresSprite;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiImage, onDraw) {
  const int sprite = whole_or(self, value, -1);
  const double across = sprite_width_of(sprite), down = sprite_height_of(sprite);
  if (across <= 0 || down <= 0) return;
  Rect at = rect_of(self);
  const int tint = whole_or(self, color, c_white);
  if (array_length(array_in(self, content)) > 0 || number_or(self, padding_left, 0) > 0) {
    paint_panel(sprite, at, tint, opacity_of(self));
    return;
  }
  if (is_set(self, maintain_aspect)) {
    const double scale = std::min(at.width / across, at.height / down);
    at = {at.x + (at.width - across * scale) / 2, at.y + (at.height - down * scale) / 2, across * scale, down * scale};
  }
  paint_sprite(sprite, number_or(self, image, 0), at, number_or(self, rotation, 0), tint, opacity_of(self));
}

CONSTRUCTOR(TuiText, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiText";
  self[color] = undefined;
  self[text_halign] = 0;
  self[text_valign] = 1;
  self[text_scale] = 1;
  self[overflow] = tui::kOverflowVisible;
  self[measures] = kMeasuresText;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiText, onDraw) {
  const int tint = own_color_or(self, color_text);
  paint_text(self, shown_text(self), inner_rect(self), whole_or(self, text_halign, 0), whole_or(self, text_valign, 1),
             whole_or(self, overflow, 0), tint, opacity_of(self));
}
