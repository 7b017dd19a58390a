// The root of an interface: arrangement, pointer, keyboard, tooltips, drawing.
#include "toolkit/ui/paint.h"

namespace game {

void follow_binding(const Value& widget);
void advance_tweens(const Value& widget, double dt);
extern const Method TuiBase_onUpdate;

namespace {

const BasedOn main_is_base{TuiMain, TuiBase};

const Variable order{"order"}, hovered{"hovered"}, pressed{"pressed"}, focused{"focused"}, last_width{"last_width"},
    last_height{"last_height"};
const Variable hover_seconds{"hover_seconds"}, pointer_x{"pointer_x"}, pointer_y{"pointer_y"};

constexpr int kLeftButton = 1;
constexpr int kKeyTab = 9, kKeyEnter = 13, kKeyShift = 16, kKeySpace = 32, kKeyLeft = 37, kKeyUp = 38, kKeyRight = 39, kKeyDown = 40;
constexpr int kKeysForWidgets[] = {8, kKeyEnter, 27, kKeySpace, 35, 36, kKeyLeft, kKeyUp, kKeyRight, kKeyDown, 46};
constexpr double kTooltipDelay = 0.4;  // s of rest over a widget

Value reference(const Value& root, const Variable& field) {
  const Value found = struct_in(root, field);
  return is_widget(found) && !is_set(found, is_destroyed) ? found : Value();
}

bool is_live_widget(const Value& value) { return is_widget(value) && !is_set(value, is_destroyed); }

// Those on the screen, in the order of drawing: a list of their own, for handlers may change the tree.
std::vector<Value> shown_widgets(const Value& root) {
  std::vector<Value> found;
  const Value all = array_in(root, order);
  for (const Value& each : elements(all)) {
    if (is_live_widget(each)) found.push_back(each);
  }
  return found;
}

// Whether a kind of widget, or a script, put something else in the place of the empty method that all widgets have.
bool has_own_way(const Value& widget, const Variable& method, const Method& empty) {
  const RValue* const found = optional_field(widget, method);
  const MethodClosure* const code = found != nullptr ? method_of(*found) : nullptr;
  return found != nullptr && (code == nullptr || code->function != &empty.function());
}

bool stands_in(const Value& widget, const Value& holder) {
  for (const Value& at : upwards(widget)) {
    if (is_same(at, holder)) return true;
  }
  return false;
}

bool takes_pointer(const Value& widget) {
  if (is_set(widget, mouse_ignore)) return false;
  for (const Value& at : upwards(widget)) {
    if (is_set(at, mouse_ignore_all)) return false;
  }
  return true;
}

// What a method of a script answered.
bool is_true(const Value& answer) { return is_numeric(answer) && to_real(answer) > 0.5; }

bool is_under(const Value& widget, double at_x, double at_y) {
  const auto spans = [&](const Variable& from, const Variable& across, double at) {
    const double start = number_or(widget, from, 0);
    return at >= start && at < start + number_or(widget, across, 0);
  };
  return spans(rect_x, rect_width, at_x) && spans(rect_y, rect_height, at_y) && at_x >= number_or(widget, clip_left, 0) &&
         at_x < number_or(widget, clip_right, 0) && at_y >= number_or(widget, clip_top, 0) && at_y < number_or(widget, clip_bottom, 0);
}

// The modal widget above all others, or undefined.
Value modal_of(const Value& root) {
  Value found;
  const Value all = array_in(root, order);
  for (const Value& each : elements(all)) {
    if (is_set(each, is_modal) && is_live_widget(each)) found = each;
  }
  return found;
}

Value widget_at(const Value& root, double at_x, double at_y) {
  Value found;
  const Value modal = modal_of(root);
  const Value all = array_in(root, order);
  for (const Value& each : elements(all)) {
    if (is_same(each, root) || !is_under(each, at_x, at_y) || !is_live_widget(each) || !takes_pointer(each)) continue;
    if (is_undefined(modal) || stands_in(each, modal)) found = each;
  }
  return found;
}

void set_focus(const Value& root, const Value& to) {
  const Value old = reference(root, focused);
  if (is_same(old, to)) return;
  if (is_widget(old)) {
    old[is_focused] = false;
    raise(old, "blur");
  }
  root[focused] = to;
  if (is_widget(to)) {
    to[is_focused] = true;
    raise(to, "focus");
  }
}

// Whether the keyboard may have a widget that is shown: it is neither disabled nor under a modal layer.
bool takes_keyboard(const Value& widget, const Value& modal) {
  return is_set(widget, enabled, true) && (is_undefined(modal) || stands_in(widget, modal));
}

bool is_shown(const Value& root, const Value& widget) {
  const Value all = array_in(root, order);
  for (const Value& each : elements(all)) {
    if (is_same(each, widget)) return is_live_widget(each);
  }
  return false;
}

std::vector<Value> focusable(const Value& root) {
  std::vector<Value> found;
  const Value modal = modal_of(root);
  for (const Value& each : shown_widgets(root)) {
    if (is_set(each, is_focusable) && takes_keyboard(each, modal)) found.push_back(each);
  }
  return found;
}

// Tab goes round; an arrow goes to the nearest widget that lies in its direction.
void move_focus(const Value& root, int key, bool backwards) {
  const std::vector<Value> all = focusable(root);
  if (all.empty()) return;
  const Value now = reference(root, focused);
  const auto here = std::find_if(all.begin(), all.end(), [&](const Value& each) { return is_same(each, now); });
  if (key == kKeyTab) {
    const std::size_t count = all.size(), place = static_cast<std::size_t>(here - all.begin());
    set_focus(root, all[here == all.end() ? (backwards ? count - 1 : 0) : (place + (backwards ? count - 1 : 1)) % count]);
    return;
  }
  if (here == all.end()) return;
  const Rect from = rect_of(now);
  double nearest = 1e18;
  Value best;
  for (const Value& each : all) {
    const Rect to = rect_of(each);
    const double dx = to.x + to.width / 2 - from.x - from.width / 2, dy = to.y + to.height / 2 - from.y - from.height / 2;
    const double along = key == kKeyLeft ? -dx : key == kKeyRight ? dx : key == kKeyUp ? -dy : dy;
    const double aside = key == kKeyLeft || key == kKeyRight ? std::fabs(dy) : std::fabs(dx);
    if (is_same(each, now) || along <= 0.5 || along + 2 * aside >= nearest) continue;
    nearest = along + 2 * aside;
    best = each;
  }
  if (is_widget(best)) set_focus(root, best);
}

// Whether a press there is the interface's and not the game's: on a widget that takes clicks, or on what stands in one.
bool takes_press(const Value& widget) {
  for (const Value& at : upwards(widget)) {
    if (is_set(at, takes_clicks) || is_set(at, is_focusable)) return true;
    for (const char* const event : {"press", "drag", "release", "click"}) {
      if (has_handlers(at, event)) return true;
    }
  }
  return false;
}

// A press lasts while its widget is shown, under no modal layer.
bool can_be_pressed(const Value& root, const Value& widget) {
  const Value modal = modal_of(root);
  return is_shown(root, widget) && (is_undefined(modal) || stands_in(widget, modal));
}

// `over` is where the pointer is then: it makes a click of what began there, too.
void end_press(const Value& root, const Value& held, double at_x, double at_y, const Value& over) {
  const bool inside = is_same(over, held), was_told = is_set(held, is_pressed);
  root[pressed] = undefined;
  held[is_pressed] = false;
  if (!was_told) return;
  call_own(held, onRelease, {at_x, at_y, inside});
  raise(held, "release");
  if (inside && is_set(held, enabled, true)) raise(held, "click");
}

// What is disabled keeps the press from the game, but hears nothing of it.
void begin_press(const Value& root, const Value& over, double at_x, double at_y) {
  const Value before = reference(root, pressed);
  if (is_widget(before)) end_press(root, before, at_x, at_y, over);  // let go and pressed again within one frame
  root[hover_seconds] = 0;
  set_focus(root, is_widget(over) && is_set(over, is_focusable) && is_set(over, enabled, true) ? over : Value());
  if (!takes_press(over)) return;
  root[pressed] = over;
  if (!is_set(over, enabled, true)) return;
  over[is_pressed] = true;
  raise(over, "press");
  call_own(over, onPress, {at_x, at_y});
}

void use_pointer(const Value& root, double dt) {
  const double at_x = device_mouse_x_to_gui(0).number(), at_y = device_mouse_y_to_gui(0).number();
  const bool moved = number_or(root, pointer_x, -1) != at_x || number_or(root, pointer_y, -1) != at_y;
  root[pointer_x] = at_x;
  root[pointer_y] = at_y;
  const Value over = widget_at(root, at_x, at_y), before = reference(root, hovered);
  if (!is_same(over, before)) {
    if (is_widget(before)) {
      before[is_hovered] = false;
      raise(before, "leave");
    }
    root[hovered] = over;
    root[hover_seconds] = 0;
    if (is_widget(over)) {
      over[is_hovered] = true;
      raise(over, "hover");
    }
  } else {
    root[hover_seconds] = number_or(root, hover_seconds, 0) + dt;
  }

  const Value held = reference(root, pressed);
  if (!is_widget(held)) {
    root[pressed] = undefined;  // it was destroyed meanwhile
  } else if (!can_be_pressed(root, held)) {
    end_press(root, held, at_x, at_y, Value());
  }
  if (mouse_check_button_pressed(kLeftButton)) begin_press(root, over, at_x, at_y);
  const Value still = reference(root, pressed);
  if (is_widget(still) && !mouse_check_button(kLeftButton)) {
    end_press(root, still, at_x, at_y, window_has_focus() ? over : Value());  // a lost focus lets go of the button, but is no click
  } else if (is_widget(still) && moved && is_set(still, is_pressed)) {
    call_own(still, onDrag, {at_x, at_y});
    raise(still, "drag");
  }

  const int turned = (mouse_wheel_up() ? 1 : 0) - (mouse_wheel_down() ? 1 : 0);
  for (const Value& at : upwards(turned != 0 ? over : Value())) {
    if (is_true(call_own(at, onWheel, {turned}))) break;
  }
}

// Key codes are places; what widgets take for commands (Ctrl+A) is the letter that the player's layout has there, if it has any.
int letter_at(int place) {
  const Value name = keyboard_key_name(place);
  const std::string_view label = text_of(name);
  return label.size() == 1 && label[0] >= 'A' && label[0] <= 'Z' ? label[0] : place;
}

void use_keyboard(const Value& root) {
  const bool backwards = keyboard_check(kKeyShift);
  if (keyboard_check_pressed(kKeyTab)) move_focus(root, kKeyTab, backwards);
  const Value target = reference(root, focused);
  if (!is_widget(target)) return;
  if (!is_shown(root, target) || !takes_keyboard(target, modal_of(root))) return set_focus(root, undefined);
  const Value typed = keyboard_text();
  if (typed.is_string() && !text_of(typed).empty()) call_own(target, onText, {typed});
  for (int place = 'A'; place <= 'Z'; ++place) {
    if (keyboard_check_pressed(place)) call_own(target, onKey, {letter_at(place)});
  }
  for (const int key : kKeysForWidgets) {
    if (!keyboard_check_pressed(key) || is_true(call_own(target, onKey, {key}))) continue;
    if (key >= kKeyLeft && key <= kKeyDown) move_focus(root, key, false);
    if (key == kKeyEnter || key == kKeySpace) call_own(target, onActivate, {});
  }
}

void draw_tooltip(const Value& root) {
  const Value over = reference(root, hovered);
  if (!is_widget(over) || number_or(root, hover_seconds, 0) < kTooltipDelay) return;
  const RValue* text = optional_field(over, tooltip);
  if (text == nullptr || to_text(*text).empty()) return;
  const std::string shown = to_text(*text);
  const double room_width = number_or(root, last_width, 0), room_height = number_or(root, last_height, 0);
  const double wrap = std::min(320.0, room_width / 2), across = std::min(wrap, text_width(shown, font_of(root))) + 16;
  const double down = text_height(shown, font_of(root), wrap) + 10;
  const double left = std::clamp(number_or(root, pointer_x, 0) + 14, 0.0, std::max(0.0, room_width - across));
  const double top = std::clamp(number_or(root, pointer_y, 0) + 18, 0.0, std::max(0.0, room_height - down));
  paint_panel(whole_or(style_of(root), sprite_panel, -1), {left, top, across, down}, style_color(root, color_field), 0.96);
  paint_text(root, shown, {left + 8, top + 5, wrap, down - 10}, 0, 0, tui::kOverflowWrap, style_color(root, color_text), 1);
}

}  // namespace
}  // namespace game

CONSTRUCTOR(TuiMain, Value settings) {
  TuiBase.extend(self);
  self[widget_type] = "TuiMain";
  self[setFullSize]();
  self[mouse_ignore] = true;
  self[order] = array_create(0);
  self[layout_dirty] = true;
  self[last_width] = 0;
  self[last_height] = 0;
  self[hover_seconds] = 0;
  self[pointer_x] = -1;
  self[pointer_y] = -1;
  apply_settings(self, settings);
}

// Once a frame, in a Step event.
STATIC_METHOD(void, TuiMain, update) {
  const double dt = to_real(Value(global[dt_steady]));
  const double across = display_get_gui_width().number(), down = display_get_gui_height().number();
  for (const Value& each : shown_widgets(self)) {
    if (is_set(each, is_destroyed)) continue;  // by one before it
    follow_binding(each);
    advance_tweens(each, dt);
    if (has_own_way(each, onUpdate, TuiBase_onUpdate)) call_own(each, onUpdate, {dt});
  }
  const bool resized = number_or(self, last_width, 0) != across || number_or(self, last_height, 0) != down;
  self[last_width] = across;
  self[last_height] = down;
  if (resized || is_set(self, layout_dirty)) arrange(self, across, down);
  use_pointer(self, dt);
  use_keyboard(self);
}

// Once a frame, in a Draw GUI event. What changed since update() is arranged first.
STATIC_METHOD(void, TuiMain, render) {
  const double across = display_get_gui_width().number(), down = display_get_gui_height().number();
  if (is_set(self, layout_dirty)) arrange(self, across, down);
  for (const Value& each : shown_widgets(self)) {
    const double left = number_or(each, clip_left, 0), top = number_or(each, clip_top, 0), right = number_or(each, clip_right, 0),
                 bottom = number_or(each, clip_bottom, 0);
    const Rect at = rect_of(each);
    if (at.x >= right || at.y >= bottom || at.x + at.width <= left || at.y + at.height <= top) continue;
    const bool is_cut = left > 0 || top > 0 || right < across || bottom < down;
    if (is_cut) gpu_push_scissor(left, top, right - left, bottom - top);
    call_own(each, onDraw, {});
    if (is_cut) gpu_pop_scissor();
  }
  draw_tooltip(self);
}

// Whether the pointer belongs to the interface now, or the keyboard to a line of text: the game leaves them alone then. While the left
// button is held it is the interface's if the press began on a widget that takes clicks, wherever the pointer went since. Holds before
// update() of the frame, too.
STATIC_METHOD(Value, TuiMain, isInteracting) {
  if (is_widget(modal_of(self)) || is_widget(reference(self, pressed))) return true;
  const bool begins = mouse_check_button_pressed(kLeftButton);
  if (mouse_check_button(kLeftButton) && !begins) return false;
  const Value over = widget_at(self, device_mouse_x_to_gui(0).number(), device_mouse_y_to_gui(0).number());
  const Value writer = begins ? Value() : reference(self, focused);
  return takes_press(over) || (is_widget(writer) && is_set(writer, takes_text));
}

// Gives the keyboard to a widget of the tree.
STATIC_METHOD(Value, TuiBase, focus) {
  set_focus(root_of(self), self);
  return self;
}
