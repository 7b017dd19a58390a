// A line of text to type in: caret, selection, clipboard. Positions are bytes of the UTF-8 text, always between characters.
#include "toolkit/ui/paint.h"

namespace game {
namespace {

const BasedOn input_is_base{TuiInput, TuiBase};
const Variable caret{"caret"}, anchor{"anchor"}, shift_left{"shift_left"}, blink{"blink"}, onFilter{"onFilter"};

constexpr int kBackspace = 8, kEnter = 13, kEnd = 35, kHome = 36, kLeft = 37, kRight = 39, kDelete = 46, kA = 65, kC = 67, kV = 86, kX = 88,
              kShift = 16, kControl = 17;
constexpr double kPadding = 8, kBlinkSeconds = 1;

std::string text_of_field(const Value& input, const Variable& field) {
  const RValue* held = optional_field(input, field);
  return held != nullptr ? to_text(*held) : std::string();
}
std::string text_in(const Value& input) { return text_of_field(input, value); }
bool starts_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }
std::size_t before(const std::string& text, std::size_t at) {
  if (at == 0) return 0;
  do --at;
  while (at > 0 && !starts_character(text[at]));
  return at;
}
std::size_t after(const std::string& text, std::size_t at) {
  if (at >= text.size()) return text.size();
  do ++at;
  while (at < text.size() && !starts_character(text[at]));
  return at;
}
std::size_t characters(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), starts_character));
}

std::size_t place(const Value& input, const Variable& field, const std::string& text) {
  std::size_t at = static_cast<std::size_t>(std::min(std::max(0.0, number_or(input, field, 0)), static_cast<double>(text.size())));
  while (at > 0 && at < text.size() && !starts_character(text[at])) --at;
  return at;
}

void set_caret(const Value& input, std::size_t to, bool keeps_anchor) {
  input[caret] = static_cast<double>(to);
  if (!keeps_anchor) input[anchor] = static_cast<double>(to);
  input[blink] = 0;
}

// Puts `text` in the place of the selection, as much of it as the length allows; line breaks become blanks.
void replace_selection(const Value& input, std::string text) {
  std::string all = text_in(input);
  const std::size_t one = place(input, caret, all), two = place(input, anchor, all), from = std::min(one, two), to = std::max(one, two);
  for (char& each : text) each = each == '\n' || each == '\r' || each == '\t' ? ' ' : each;
  const double longest = number_or(input, max_length, 1e9);
  while (!text.empty() && static_cast<double>(characters(all) - characters(all.substr(from, to - from)) + characters(text)) > longest) {
    text.resize(before(text, text.size()));
  }
  all.replace(from, to - from, text);
  set_caret(input, from + text.size(), false);
  input[setValue](Value(std::string_view(all)));
}

std::string selection(const Value& input) {
  const std::string all = text_in(input);
  const std::size_t one = place(input, caret, all), two = place(input, anchor, all);
  return all.substr(std::min(one, two), std::max(one, two) - std::min(one, two));
}

// The character boundary nearest to a place on the screen.
std::size_t boundary_at(const Value& input, double pointer_x) {
  const std::string all = text_in(input);
  const double from = rect_of(input).x + kPadding - number_or(input, shift_left, 0);
  const auto edge = [&](std::size_t at) { return from + text_width(std::string_view(all).substr(0, at), font_of(input)); };
  const std::size_t left = longest_beginning(all, [&](std::string_view beginning) { return edge(beginning.size()) <= pointer_x; }),
                    right = after(all, left);
  return edge(right) - pointer_x < pointer_x - edge(left) ? right : left;
}

}  // namespace
}  // namespace game

CONSTRUCTOR(TuiInput, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiInput";
  self[takes_clicks] = true;
  self[takes_text] = true;
  self[is_focusable] = true;
  self[value] = "";
  self[placeholder] = "";
  self[caret] = 0;
  self[anchor] = 0;
  self[shift_left] = 0;
  self[blink] = 0;
  self[min_width] = 120;
  self[min_height] = 30;
  apply_settings(self, settings);
}

STATIC_METHOD(void, TuiInput, onDraw) {
  const Rect at = rect_of(self);
  const bool has_focus = is_set(self, is_focused);
  const std::string all = text_in(self);
  paint_rectangle(at, style_color(self, color_field), opacity_of(self));
  paint_frame(at, style_color(self, has_focus || is_set(self, is_hovered) ? color_accent : color_faint), opacity_of(self));

  // The caret stays in sight.
  const Rect inner{at.x + kPadding, at.y, std::max(1.0, at.width - 2 * kPadding), at.height};
  const std::size_t one = place(self, caret, all), two = place(self, anchor, all);
  const double caret_at = text_width(all.substr(0, one), font_of(self));
  double shifted = number_or(self, shift_left, 0);
  if (caret_at - shifted > inner.width - 2) shifted = caret_at - inner.width + 2;
  if (caret_at - shifted < 0) shifted = caret_at;
  self[shift_left] = shifted;

  gpu_push_scissor(inner.x - 1, inner.y, inner.width + 2, inner.height);
  if (has_focus && one != two) {
    const double anchor_at = text_width(all.substr(0, two), font_of(self)), left = std::min(caret_at, anchor_at),
                 right = std::max(caret_at, anchor_at);
    paint_rectangle({inner.x + left - shifted, inner.y + 5, right - left, inner.height - 10}, style_color(self, color_accent), 0.35);
  }
  const bool shows_placeholder = all.empty() && !has_focus;
  const std::string shown = shows_placeholder ? text_of_field(self, placeholder) : all;
  paint_text(self, shown, {inner.x - shifted, inner.y, inner.width, inner.height}, 0, 1, tui::kOverflowVisible,
             style_color(self, shows_placeholder ? color_faint : color_text), opacity_of(self));
  if (has_focus && number_or(self, blink, 0) < kBlinkSeconds / 2) {
    paint_rectangle({inner.x + caret_at - shifted, inner.y + 6, 2, inner.height - 12}, style_color(self, color_text), 1);
  }
  gpu_pop_scissor();
}

STATIC_METHOD(void, TuiInput, onUpdate, Value dt) { self[blink] = std::fmod(number_or(self, blink, 0) + to_real(dt), kBlinkSeconds); }

STATIC_METHOD(void, TuiInput, onPress, Value at_x, Value) { set_caret(self, boundary_at(self, to_real(at_x)), false); }
STATIC_METHOD(void, TuiInput, onDrag, Value at_x, Value) { set_caret(self, boundary_at(self, to_real(at_x)), true); }

STATIC_METHOD(void, TuiInput, onText, Value typed) {
  if (!keyboard_check(kControl)) replace_selection(self, to_text(typed));
}

STATIC_METHOD(Value, TuiInput, onKey, Value key) {
  const int code = saturate_int32(to_real(key));
  const bool extends = keyboard_check(kShift), control = keyboard_check(kControl);
  const std::string all = text_in(self);
  const std::size_t at = place(self, caret, all);
  const bool has_selection = at != place(self, anchor, all);
  switch (code) {
    case kLeft: set_caret(self, before(all, at), extends); return true;
    case kRight: set_caret(self, after(all, at), extends); return true;
    case kHome: set_caret(self, 0, extends); return true;
    case kEnd: set_caret(self, all.size(), extends); return true;
    case kBackspace:
    case kDelete:
      if (!has_selection) set_caret(self, code == kBackspace ? before(all, at) : after(all, at), true);
      replace_selection(self, "");
      return true;
    case kEnter: raise(self, "submit", Value(self[value])); return true;
    default: break;
  }
  if (code == 32) return true;  // typed, not activated
  if (!control) return false;
  if (code == kA) {
    self[anchor] = 0;
    set_caret(self, all.size(), true);
  } else if ((code == kC || code == kX) && has_selection) {
    clipboard_set_text(Value(std::string_view(selection(self))));
    if (code == kX) replace_selection(self, "");
  } else if (code == kV) {
    replace_selection(self, to_text(clipboard_get_text()));
  }
  return true;
}
