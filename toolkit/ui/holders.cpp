// What holds other widgets in a special way: scroll areas, windows, tabs, combo boxes.
#include "toolkit/ui/paint.h"

namespace game {
namespace {

const BasedOn scroll_is_base{TuiScroll, TuiBase}, window_is_panel{TuiWindow, TuiPanel}, tabs_is_base{TuiTabs, TuiBase},
    combo_is_base{TuiCombo, TuiBase};

const Variable content_height{"content_height"}, grab_x{"grab_x"}, grab_y{"grab_y"}, is_resizing{"is_resizing"}, title_text{"title_text"},
    body{"body"};
const Variable titles{"titles"}, pages{"pages"}, shown_tab{"shown_tab"}, tab_number{"tab_number"}, popup{"popup"}, combo{"combo"},
    option_number{"option_number"};

constexpr double kWheelStep = 48, kBarWidth = 8;   // pixels
constexpr double kTitleHeight = 32, kCorner = 16;  // pixels
constexpr double kSmallestWindow = 80;             // pixels each way

// How far a scroll area can be scrolled down.
double scroll_room(const Value& area) {
  double lowest = 0;
  const Rect inner = inner_rect(area);
  for (const Value& each : content_of(area)) {
    const Rect at = rect_of(each);
    lowest = std::max(lowest, at.y + at.height + number_or(area, scroll_y, 0) - inner.y);
  }
  return std::max(0.0, lowest - inner.height);
}

void scroll_to(const Value& area, double to) {
  const double wanted = std::clamp(to, 0.0, scroll_room(area));
  if (wanted == number_or(area, scroll_y, 0)) return;
  area[scroll_y] = wanted;
  mark_dirty(area);
}

Rect bar_of(const Value& area) {
  const Rect at = rect_of(area);
  const double room = scroll_room(area), height = at.height * at.height / std::max(1.0, at.height + room);
  const double share = room > 0 ? number_or(area, scroll_y, 0) / room : 0;
  return {at.x + at.width - kBarWidth, at.y + share * (at.height - height), kBarWidth, height};
}

void close_list(const Value& box) {
  const Value open = struct_in(box, popup);
  if (is_widget(open)) open[destroy]();
  box[popup] = undefined;
}

}  // namespace

extern const Script<void(Value, Value)> tui_close_window, tui_choose_tab, tui_choose_option;
}  // namespace game

CONSTRUCTOR(TuiScroll, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiScroll";
  self[takes_clicks] = true;
  self[clips] = true;
  self[padding_right] = kBarWidth + 4;
  apply_settings(self, settings);
  self[grab_y] = 0;
}
// Content keeps its height: it is scrolled, not squeezed.
STATIC_METHOD(Value, TuiScroll, addContent, Value what) {
  const Value base_method(RValue(*statics_of(TuiBase.function())->find_variable(addContent.slot)));
  call_guarded(self, base_method, {what});
  for (const Value& each : content_of(self)) each[flex_shrink] = 0;
  return self;
}
STATIC_METHOD(void, TuiScroll, onUpdate, Value) {
  scroll_to(self, number_or(self, scroll_y, 0));  // content may have become shorter
}
STATIC_METHOD(Value, TuiScroll, onWheel, Value steps) {
  if (scroll_room(self) <= 0) return false;
  scroll_to(self, number_or(self, scroll_y, 0) - to_real(steps) * kWheelStep);
  return true;
}
STATIC_METHOD(void, TuiScroll, onPress, Value, Value at_y) { self[grab_y] = to_real(at_y) - bar_of(self).y; }
STATIC_METHOD(void, TuiScroll, onDrag, Value, Value at_y) {
  const Rect at = rect_of(self), bar = bar_of(self);
  if (at.height > bar.height)
    scroll_to(self, (to_real(at_y) - number_or(self, grab_y, 0) - at.y) / (at.height - bar.height) * scroll_room(self));
}
STATIC_METHOD(void, TuiScroll, onDraw) {
  if (scroll_room(self) <= 0) return;
  const Rect at = rect_of(self);
  paint_rectangle({at.x + at.width - kBarWidth, at.y, kBarWidth, at.height}, style_color(self, color_field), 0.8);
  paint_rectangle(bar_of(self), style_color(self, is_set(self, is_hovered) || is_set(self, is_pressed) ? color_accent : color_faint), 1);
}

// An absolute panel: its title bar moves it, its lower right corner resizes it, the cross closes it.
CONSTRUCTOR(TuiWindow, Value settings) {
  TuiPanel.extend(self);
  self[widget_type] = "TuiWindow";
  self[takes_clicks] = true;
  self[is_absolute] = true;
  self[inset_left] = 40;
  self[inset_top] = 40;
  self[value] = "";
  self[padding_top] = kTitleHeight + 8;
  self[padding_left] = 12;
  self[padding_right] = 12;
  self[padding_bottom] = 12;
  self[row_gap] = 8;
  self[is_resizing] = false;
  apply_settings(self, settings);
  const Value cross = TuiButton.make(struct_of({{value, "x"}, {is_absolute, true}, {inset_top, 4}, {inset_right, 6}}));
  cross[setPadding](6, 0);
  cross[setMinSize](24, 24);
  cross[addEvent]("click", tui_close_window);
  self[addContent](cross);
  self[bringToFront]();
}
SCRIPT(tui_close_window, Value button, Value) {
  const Value window = button[parent];
  raise(window, "close");
  window[destroy]();
}
STATIC_METHOD(void, TuiWindow, onDraw) {
  const Rect at = rect_of(self);
  paint_panel(whole_or(style_of(self), sprite_panel, -1), at, style_color(self, color_panel), opacity_of(self));
  paint_rectangle({at.x + 3, at.y + kTitleHeight, at.width - 6, 1}, style_color(self, color_faint), 0.6);
  const Value plain_font = number_or(style_of(self), font_title, -1);
  self[font] = plain_font;
  paint_text(self, shown_text(self), {at.x + 12, at.y + 2, at.width - 48, kTitleHeight - 2}, 0, 1, tui::kOverflowEllipsis,
             style_color(self, color_text), opacity_of(self));
  self[font] = undefined;
  for (int line = 1; line <= 3; ++line) {
    const double from = 3.0 + line * 4;
    paint_rectangle({at.x + at.width - from, at.y + at.height - 5, 2, 2}, style_color(self, color_faint), 1);
  }
}
STATIC_METHOD(void, TuiWindow, onPress, Value at_x, Value at_y) {
  const Rect at = rect_of(self);
  self[bringToFront]();
  self[is_resizing] = to_real(at_x) > at.x + at.width - kCorner && to_real(at_y) > at.y + at.height - kCorner;
  self[grab_x] = to_real(at_x) - (is_set(self, is_resizing) ? at.width : at.x);
  self[grab_y] = to_real(at_y) - (is_set(self, is_resizing) ? at.height : at.y);
}
STATIC_METHOD(void, TuiWindow, onDrag, Value at_x, Value at_y) {
  const double to_x = to_real(at_x) - number_or(self, grab_x, 0), to_y = to_real(at_y) - number_or(self, grab_y, 0);
  const Rect at = rect_of(self), room = rect_of(root_of(self));
  if (is_set(self, is_resizing)) {
    self[setSize](std::max(kSmallestWindow, to_x), std::max(kSmallestWindow, to_y));
  } else {
    // The title bar stays within reach.
    self[setInset](std::min(std::max(to_x, kSmallestWindow - at.width), room.width - kSmallestWindow),
                   std::min(std::max(to_y, 0.0), std::max(0.0, room.height - kTitleHeight)));
  }
}

CONSTRUCTOR(TuiTabs, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiTabs";
  self[value] = 0;
  apply_settings(self, settings);
  self[titles] = TuiRow.make(struct_of({{column_gap, 4}}));
  self[pages] = TuiPanel.make(struct_of({{flex_grow, 1}}));
  self[pages][setPadding](12);
  self[addContent](array_of(Value(self[titles]), Value(self[pages])));
}
STATIC_METHOD(Value, TuiTabs, addTab, Value title, Value page) {
  const Value button = TuiButton.make(struct_of({{value, title}}));
  button[tab_number] = array_length(self[pages][content]);
  button[addEvent]("click", tui_choose_tab);
  self[titles][addContent](button);
  self[pages][addContent](page);
  self[showTab](Value(self[value]));
  return self;
}
STATIC_METHOD(Value, TuiTabs, showTab, Value number) {
  self[value] = number;
  double place = 0;
  const double wanted = to_real(number);
  for (const Value& each : elements(Value(self[pages][content]))) each[setVisible](place++ == wanted);
  for (const Value& each : elements(Value(self[titles][content]))) {
    each[color] = to_real(Value(each[tab_number])) == wanted ? Value(style_color(self, color_hover)) : Value(undefined);
  }
  raise(self, "change", number);
  return self;
}
SCRIPT(tui_choose_tab, Value button, Value) {
  const Value row = button[parent], tabs = row[parent];
  tabs[showTab](Value(button[tab_number]));
}

// The options open below it, above everything else; a press elsewhere closes them.
CONSTRUCTOR(TuiCombo, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiCombo";
  self[takes_clicks] = true;
  self[is_focusable] = true;
  self[value] = 0;
  self[options] = array_create(0);
  self[popup] = undefined;
  self[min_width] = 120;
  self[min_height] = 30;
  apply_settings(self, settings);
}
STATIC_METHOD(void, TuiCombo, onDraw) {
  const Rect at = rect_of(self);
  const Value all = array_in(self, options);
  const double number = number_or(self, value, 0);
  paint_rectangle(at, style_color(self, color_field), opacity_of(self));
  paint_frame(at, style_color(self, is_set(self, is_hovered) || is_set(self, is_focused) ? color_accent : color_faint), opacity_of(self));
  if (number >= 0 && number < array_length(all)) {
    paint_text(self, to_text(Value(all[number])), {at.x + 8, at.y, at.width - 32, at.height}, 0, 1, tui::kOverflowEllipsis,
               style_color(self, color_text), opacity_of(self));
  }
  const double middle = at.y + at.height / 2, right = at.x + at.width;
  for (int row = 0; row < 5; ++row)
    paint_rectangle({right - 20 + row, middle - 2 + row, 10.0 - 2 * row, 1}, style_color(self, color_text), opacity_of(self));
}
STATIC_METHOD(void, TuiCombo, onActivate) {
  if (is_widget(struct_in(self, popup))) {
    close_list(self);
    return;
  }
  const Rect at = rect_of(self), room = rect_of(root_of(self));
  const Value all = array_in(self, options);
  const double row = 28, tall = std::min(row * array_length(all).number() + 8, room.height * 0.5);
  const bool opens_above = at.y + at.height + tall > room.height && at.y > tall;
  const Value list = TuiPanel.make(struct_of({{is_absolute, true}, {width, at.width}, {height, tall}, {inset_left, at.x}}));
  list[takes_clicks] = true;
  list[inset_top] = opens_above ? at.y - tall : at.y + at.height;
  list[setPadding](4);
  const Value area = TuiScroll.make(struct_of({{flex_grow, 1}}));
  double number = 0;
  for (const Value& each : elements(all)) {
    const Value option = TuiButton.make(struct_of({{value, each}, {height, row}}));
    option[option_number] = number++;
    option[combo] = self;
    option[addEvent]("click", tui_choose_option);
    area[addContent](option);
  }
  list[addContent](area);
  list[bringToFront]();
  root_of(self)[addContent](list);
  self[popup] = list;
}
STATIC_METHOD(void, TuiCombo, onRelease, Value, Value, Value inside) {
  if (inside) self[onActivate]();
}
STATIC_METHOD(void, TuiCombo, onUpdate, Value) {
  const Value open = struct_in(self, popup);
  if (!is_widget(open)) return;
  // Anything pressed outside closes the list.
  if (!mouse_check_button_pressed(1) || is_set(self, is_hovered)) return;
  if (rect_of(open).contains(device_mouse_x_to_gui(0).number(), device_mouse_y_to_gui(0).number())) return;
  close_list(self);
}
STATIC_METHOD(void, TuiCombo, onDestroy) { close_list(self); }
SCRIPT(tui_choose_option, Value option, Value) {
  const Value box = option[combo];
  close_list(box);
  box[setValue](Value(option[option_number]));
}
