#include "runtime/input/input_state.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "runtime/input/gamepads.h"
#include "runtime/session/session.h"
#include "runtime/values/number_text.h"

namespace arena {
namespace {

struct Input {
  std::vector<InputEvent> queue, applied;
  InputState state;

  void restart();
  static constexpr auto fields() {
    return std::tuple(field("queue", &Input::queue), field("applied", &Input::applied), field("state", &Input::state));
  }
};
const StatePart<Input> part{PartLevel::kWorld, "input"};

constexpr std::pair<int, const char*> kKeyNames[] = {
    {kBackspace, "Backspace"},
    {9, "Tab"},
    {13, "Enter"},
    {16, "Shift"},
    {17, "Ctrl"},
    {18, "Alt"},
    {19, "Pause"},
    {20, "Caps Lock"},
    {27, "Esc"},
    {32, "Space"},
    {33, "Page Up"},
    {34, "Page Down"},
    {35, "End"},
    {36, "Home"},
    {37, "Left"},
    {38, "Up"},
    {39, "Right"},
    {40, "Down"},
    {45, "Insert"},
    {46, "Delete"},
    {93, "Menu"},
    {106, "Num *"},
    {107, "Num +"},
    {109, "Num -"},
    {110, "Num ."},
    {111, "Num /"},
    {186, ";"},
    {144, "Num Lock"},
    {145, "Scroll Lock"},
    {187, "="},
    {188, ","},
    {189, "-"},
    {190, "."},
    {191, "/"},
    {192, "`"},
    {219, "["},
    {220, "\\"},
    {221, "]"},
    {222, "'"},
    {226, "<"},
};

bool in_range(int code, int count) { return code >= 0 && code < count; }

bool starts_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

void take_back_character(std::string& text) {
  while (!text.empty() && !starts_character(text.back())) text.pop_back();
  if (!text.empty()) text.pop_back();
}

bool is_key(int code) { return in_range(code, kKeys) && code > kVkAnyKey; }

void note_use(InputState& state) { state.keyboard_used = ++state.uses; }

// A repeated key comes again without having been let go. A key goes up as what it went down, and stays down while another holds it, too.
void apply_key(InputState& state, int key, bool down) {
  if (!is_key(key)) return;
  std::uint8_t& held_as = state.key_held_as.data()[key];
  const int code = held_as != 0 ? held_as : state.key_meaning.data()[key];
  held_as = static_cast<std::uint8_t>(down ? code : 0);
  if (code == kVkNoKey) return;
  if (down && code == kBackspace) take_back_character(state.typed);
  if (down) {
    state.last_key = code;
    note_use(state);
  } else if (std::find(state.key_held_as.begin(), state.key_held_as.end(), code) != state.key_held_as.end()) {
    return;
  }
  state.keys.data()[code].turn(down);
}

void apply_button(InputState& state, int button, bool down) {
  if (!in_range(button, kButtons) || button == 0) return;
  state.buttons.data()[button].turn(down);
  if (down) note_use(state);
}

void apply_finger(InputState& state, const InputEvent& event) {
  if (!in_range(event.code, kFingers)) return;
  Finger& finger = state.fingers.data()[event.code];
  finger.touch.turn(event.value != 0);
  finger.x = event.x;
  finger.y = event.y;
}

void apply_pointer(InputState& state, const InputEvent& event) {
  if (event.space == PointerSpace::kWindow && state.pointer_space == PointerSpace::kWindow) {
    state.motion_x += event.x - state.pointer_x;
    state.motion_y += event.y - state.pointer_y;
  }
  state.pointer_space = event.space;
  state.pointer_x = event.x;
  state.pointer_y = event.y;
}

void turn_wheel(InputState& state, std::int32_t& forth, std::int32_t& back, double steps) {
  const std::int32_t whole = saturate_int32(steps);
  if (whole == 0) return;
  std::int32_t& turned = whole > 0 ? forth : back;
  turned = saturate_int32(static_cast<double>(turned) + std::fabs(static_cast<double>(whole)));
  note_use(state);
}

void apply_motion(InputState& state, const InputEvent& event) {
  if (event.code == kMotionPointer && std::isfinite(event.x) && std::isfinite(event.y)) {
    state.motion_x += event.x;
    state.motion_y += event.y;
  }
  if (event.code == kMotionWheelAcross) turn_wheel(state, state.wheel_right, state.wheel_left, event.x);
}

// Whoever loses the focus never hears of the keys let go meanwhile.
void release_all(InputState& state) {
  state.key_held_as.fill(0);
  for (Switch& key : state.keys) key.turn(false);
  for (Switch& button : state.buttons) button.turn(false);
  for (Finger& finger : state.fingers) finger.touch.turn(false);
  state.composition.clear();
  state.composition_cursor = 0;
  release_gamepads();
}

void apply(InputState& state, const InputEvent& event) {
  switch (event.type) {
    case InputEvent::Type::kKey: apply_key(state, event.code, event.value != 0); break;
    case InputEvent::Type::kButton: apply_button(state, event.code, event.value != 0); break;
    case InputEvent::Type::kPointer: apply_pointer(state, event); break;
    case InputEvent::Type::kText:
      state.text += event.text;
      set_typed(state.typed + event.text);
      state.composition.clear();
      state.composition_cursor = 0;
      break;
    case InputEvent::Type::kKeyLabel:
      if (in_range(event.code, kKeys)) state.key_labels.data()[event.code] = event.text;
      break;
    case InputEvent::Type::kFocus:
      state.has_focus = event.value != 0;
      if (!state.has_focus) release_all(state);
      break;
    case InputEvent::Type::kWindowSize:
      state.window_width = event.code;
      state.window_height = event.value;
      break;
    case InputEvent::Type::kWheel: turn_wheel(state, state.wheel_up, state.wheel_down, event.code); break;
    case InputEvent::Type::kMotion: apply_motion(state, event); break;
    case InputEvent::Type::kComposition:
      state.composition = event.text;
      state.composition_cursor = event.code;
      break;
    case InputEvent::Type::kTouch: apply_finger(state, event); break;
    case InputEvent::Type::kPointerInside: state.is_pointer_inside = event.value != 0; break;
    case InputEvent::Type::kPad:
    case InputEvent::Type::kPadButton:
    case InputEvent::Type::kPadAxis:
    case InputEvent::Type::kPadSensor: apply_pad_event(event); break;
    case InputEvent::Type::kAsync:
    case InputEvent::Type::kClose: break;  // events tell of them
  }
}

// Edges of the last frame are over; what waited comes in.
void begin_frame(InputState& state) {
  for (Switch& key : state.keys) key.begin_frame();
  for (Switch& button : state.buttons) button.begin_frame();
  for (Finger& finger : state.fingers) finger.touch.begin_frame();
  state.text.clear();
  state.wheel_up = state.wheel_down = state.wheel_left = state.wheel_right = 0;
  state.motion_x = state.motion_y = 0;
}

// The pointer, the window, what is plugged in and the letters on the keys are where they are.
void Input::restart() {
  state.keys = {};
  state.buttons = {};
  for (Finger& finger : state.fingers) finger.touch = {};
  state.key_held_as.fill(0);
  state.key_meaning = own_meanings();
  begin_frame(state);
  state.last_key = 0;
  state.typed.clear();
  state.composition.clear();
  state.composition_cursor = 0;
  queue.clear();
}

}  // namespace

void push_input(const InputEvent& event) { part().queue.push_back(event); }

void push_key(int code, bool down) {
  InputEvent event;
  event.code = code;
  event.value = down ? 1 : 0;
  push_input(event);
}

void push_button(int button, bool down) {
  InputEvent event;
  event.type = InputEvent::Type::kButton;
  event.code = button;
  event.value = down ? 1 : 0;
  push_input(event);
}

void push_pointer(PointerSpace space, double x, double y) {
  InputEvent event;
  event.type = InputEvent::Type::kPointer;
  event.space = space;
  event.x = x;
  event.y = y;
  push_input(event);
}

void begin_input_frame() {
  Input& input = part();
  begin_frame(input.state);
  begin_gamepads_frame();
  input.applied.swap(input.queue);
  input.queue.clear();
  for (const InputEvent& event : input.applied) apply(input.state, event);
}

const std::vector<InputEvent>& queued_input() { return part().queue; }
void replace_queued_input(std::vector<InputEvent> events) { part().queue = std::move(events); }
const std::vector<InputEvent>& applied_input() { return part().applied; }

void reset_input() { part().restart(); }

void set_typed(std::string text) {
  std::size_t characters = 0, from = text.size();
  while (from > 0 && characters < kLongestTyped) characters += starts_character(text[--from]) ? 1 : 0;
  input_state().typed = text.substr(from);
}

std::string us_key_name(int code) {
  if ((code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9')) return std::string(1, static_cast<char>(code));
  if (code >= 96 && code < 106) return "Num " + std::to_string(code - 96);
  if (code >= 112 && code < 136) return "F" + std::to_string(code - 111);
  for (const auto& [key, name] : kKeyNames) {
    if (key == code) return name;
  }
  return "";
}

std::string key_name(int code) {
  if (!in_range(code, kKeys)) return "";
  const std::string& label = input_state().key_labels.data()[code];
  return label.empty() ? us_key_name(code) : label;
}

InputState& input_state() { return part().state; }

bool key_test(int code, bool Switch::*which) {
  const KeySwitches& keys = input_state().keys;
  const auto is_on = [&](const Switch& key) { return key.*which; };
  if (code == kVkAnyKey) return std::any_of(keys.begin(), keys.end(), is_on);
  if (code == kVkNoKey) return std::none_of(keys.begin(), keys.end(), is_on);
  return in_range(code, kKeys) && keys.data()[code].*which;
}

bool button_test(int button, bool Switch::*which) {
  const ButtonSwitches& buttons = input_state().buttons;
  const auto is_on = [&](const Switch& each) { return each.*which; };
  if (button == -1) return std::any_of(buttons.begin(), buttons.end(), is_on);
  if (button == 0) return std::none_of(buttons.begin(), buttons.end(), is_on);
  return in_range(button, kButtons) && buttons.data()[button].*which;
}

void forget_key(int code) {
  if (in_range(code, kKeys)) input_state().keys.data()[code] = {};
}

void set_key_meaning(int code, int as) {
  if (is_key(code) && (is_key(as) || as == kVkNoKey)) input_state().key_meaning.data()[code] = static_cast<std::uint8_t>(as);
}

}  // namespace arena
