#include "runtime/input/input_state.h"

#include <algorithm>
#include <utility>

#include "runtime/session/session.h"

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

bool in_range(int code, int count) { return code >= 0 && code < count; }

bool starts_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

void take_back_character(std::string& text) {
  while (!text.empty() && !starts_character(text.back())) text.pop_back();
  if (!text.empty()) text.pop_back();
}

// A repeated key comes again without having been let go.
void apply_key(InputState& state, int code, bool down) {
  if (!in_range(code, kKeys) || code <= kVkAnyKey) return;
  if (down && code == kBackspace) take_back_character(state.typed);
  if (down && !state.key_down.data()[code]) state.key_pressed.data()[code] = true;
  if (!down && state.key_down.data()[code]) state.key_released.data()[code] = true;
  state.key_down.data()[code] = down;
  if (down) state.last_key = code;
}

void apply_button(InputState& state, int button, bool down) {
  if (!in_range(button, kButtons) || button == 0) return;
  if (down && !state.button_down.data()[button]) state.button_pressed.data()[button] = true;
  if (!down && state.button_down.data()[button]) state.button_released.data()[button] = true;
  state.button_down.data()[button] = down;
}

// Whoever loses the focus never hears of the keys let go meanwhile.
void release_all(InputState& state) {
  for (int code = 0; code < kKeys; ++code) apply_key(state, code, false);
  for (int button = 0; button < kButtons; ++button) apply_button(state, button, false);
}

void apply(InputState& state, const InputEvent& event) {
  switch (event.type) {
    case InputEvent::Type::kKey: apply_key(state, event.code, event.value != 0); break;
    case InputEvent::Type::kButton: apply_button(state, event.code, event.value != 0); break;
    case InputEvent::Type::kPointer:
      state.pointer_space = event.space;
      state.pointer_x = event.x;
      state.pointer_y = event.y;
      break;
    case InputEvent::Type::kText:
      state.text += event.text;
      set_typed(state.typed + event.text);
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
    case InputEvent::Type::kWheel: state.wheel += event.code; break;
  }
}

void clear_edges(InputState& state) {
  state.key_pressed.fill(false);
  state.key_released.fill(false);
  state.button_pressed.fill(false);
  state.button_released.fill(false);
  state.text.clear();
  state.wheel = 0;
}

// The pointer, the window and the letters on the keys are where they are.
void Input::restart() {
  clear_edges(state);
  state.key_down.fill(false);
  state.button_down.fill(false);
  state.last_key = 0;
  state.typed.clear();
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
  clear_edges(input.state);
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

std::string key_name(int code) {
  if (!in_range(code, kKeys)) return "";
  if (const std::string& label = input_state().key_labels.data()[code]; !label.empty()) return label;
  if ((code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9')) return std::string(1, static_cast<char>(code));
  if (code >= 112 && code < 124) return "F" + std::to_string(code - 111);
  switch (code) {
    case kBackspace: return "Backspace";
    case 9: return "Tab";
    case 13: return "Enter";
    case 16: return "Shift";
    case 17: return "Ctrl";
    case 18: return "Alt";
    case 27: return "Esc";
    case 32: return "Space";
    case 33: return "Page Up";
    case 34: return "Page Down";
    case 35: return "End";
    case 36: return "Home";
    case 37: return "Left";
    case 38: return "Up";
    case 39: return "Right";
    case 40: return "Down";
    case 45: return "Insert";
    case 46: return "Delete";
    default: return "";
  }
}

InputState& input_state() { return part().state; }

bool key_test(const KeySet& keys, int code) {
  if (code == kVkAnyKey) return std::any_of(std::begin(keys), std::end(keys), [](bool key) { return key; });
  if (code == kVkNoKey) return std::none_of(std::begin(keys), std::end(keys), [](bool key) { return key; });
  return in_range(code, kKeys) && keys.data()[code];
}

}  // namespace arena
