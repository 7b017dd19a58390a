// Styles: what widgets look like, handed down from a widget to its content.
#include "toolkit/ui/paint.h"

namespace game {
namespace {

const Variable default_style{"tui_default_style"};

// Colours are blue, green, red from the high byte down.
constexpr int kInk = 0xF2EEE8, kFaint = 0x9A9086, kPanel = 0x3A322B, kButton = 0x5A4C40, kHover = 0x7A6654, kPressed = 0x4A3C32,
              kAccent = 0x4CC2F2, kField = 0x2A241F;

}  // namespace

Value style_of(const Value& widget) {
  Value at = widget;
  for (int left = kDeepest; left >= 0 && !is_undefined(at); --left, at = struct_in(at, parent)) {
    const Value own = struct_in(at, style);
    if (!is_undefined(own)) return own;
  }
  if (is_undefined(struct_in(RValue::of_object(global_object()), default_style))) global[default_style] = TuiStyle.make();
  return global[default_style];
}

}  // namespace game

CONSTRUCTOR(TuiStyle, Value settings) {
  self[min_width] = 20;
  self[min_height] = 20;
  self[sprite_panel] = -1;
  self[sprite_button] = -1;
  self[sprite_bar_back] = -1;
  self[sprite_bar_fill] = -1;
  self[font_text] = -1;
  self[font_button] = -1;
  self[font_title] = -1;
  self[color_text] = kInk;
  self[color_faint] = kFaint;
  self[color_panel] = kPanel;
  self[color_button] = kButton;
  self[color_hover] = kHover;
  self[color_pressed] = kPressed;
  self[color_accent] = kAccent;
  self[color_field] = kField;
  apply_settings(self, settings);
}

// The smallest size of what can be clicked.
STATIC_METHOD(Value, TuiStyle, setMinSize, Value across, Value down) {
  self[min_width] = across;
  self[min_height] = down;
  return self;
}
// Sprites bring colours of their own: they are not tinted until setColors says so.
STATIC_METHOD(Value, TuiStyle, setSprites, Value panel, Value button) {
  self[sprite_panel] = panel;
  self[sprite_button] = button;
  self[color_panel] = c_white;
  self[color_button] = c_white;
  return self;
}
STATIC_METHOD(Value, TuiStyle, setSpriteProgressBar, Value back, Value fill) {
  self[sprite_bar_back] = back;
  self[sprite_bar_fill] = fill;
  return self;
}
STATIC_METHOD(Value, TuiStyle, setFonts, Value text, Value button, Value title) {
  self[font_text] = text;
  self[font_button] = button;
  self[font_title] = title;
  return self;
}
STATIC_METHOD(Value, TuiStyle, setColors, Value colors) {
  apply_settings(self, colors);
  return self;
}
