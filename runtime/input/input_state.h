#pragma once
// The one input queue and the state that scripts read. Every change of keys, buttons, pointer, text and window enters through
// push_input and takes effect at the start of the next frame, so that a recording of the queue is a recording of the player.
#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "runtime/session/state.h"

namespace arena {

// Key codes. Letters and digits are places on the keyboard, named by the ASCII capitals of the US layout; others as the vk_ constants.
inline constexpr int kKeys = 256;
inline constexpr int kButtons = 4;  // 1 left, 2 right, 3 middle
inline constexpr int kVkNoKey = 0, kVkAnyKey = 1;
inline constexpr int kBackspace = 8;
inline constexpr std::size_t kLongestTyped = 1024;  // characters of keyboard_string

enum class PointerSpace : std::uint8_t { kWindow, kRoom, kGui };

struct InputEvent {
  enum class Type : std::uint8_t { kKey, kButton, kPointer, kText, kFocus, kWindowSize, kWheel, kKeyLabel } type = Type::kKey;
  std::int32_t code = 0;   // key code, button, width, wheel steps
  std::int32_t value = 0;  // 1 down, 0 up; focus gained; height
  PointerSpace space = PointerSpace::kWindow;
  double x = 0, y = 0;
  std::string text;  // typed; what stands on the key, "" for that of the US layout
  static constexpr auto fields() {
    return std::tuple(field("type", &InputEvent::type), field("code", &InputEvent::code), field("value", &InputEvent::value),
                      field("space", &InputEvent::space), field("x", &InputEvent::x), field("y", &InputEvent::y),
                      field("text", &InputEvent::text));
  }
};

using KeySet = std::array<bool, kKeys>;
using ButtonSet = std::array<bool, kButtons>;

struct InputState {
  KeySet key_down = {}, key_pressed = {}, key_released = {};
  ButtonSet button_down = {}, button_pressed = {}, button_released = {};
  std::int32_t last_key = 0;
  std::int32_t wheel = 0;  // steps up in this frame; down is negative
  PointerSpace pointer_space = PointerSpace::kWindow;
  double pointer_x = 0, pointer_y = 0;
  std::string text;                           // typed in this frame, UTF-8
  std::string typed;                          // keyboard_string: the last kLongestTyped characters, until scripts clear it
  std::array<std::string, kKeys> key_labels;  // what the player's layout has on letter and digit keys; "": as the US layout
  bool has_focus = true;
  std::int32_t window_width = 1280, window_height = 720;
  static constexpr auto fields() {
    return std::tuple(field("key_down", &InputState::key_down), field("key_pressed", &InputState::key_pressed),
                      field("key_released", &InputState::key_released), field("button_down", &InputState::button_down),
                      field("button_pressed", &InputState::button_pressed), field("button_released", &InputState::button_released),
                      field("last_key", &InputState::last_key), field("wheel", &InputState::wheel),
                      field("pointer_space", &InputState::pointer_space), field("pointer_x", &InputState::pointer_x),
                      field("pointer_y", &InputState::pointer_y), field("text", &InputState::text), field("typed", &InputState::typed),
                      field("key_labels", &InputState::key_labels), field("has_focus", &InputState::has_focus),
                      field("window_width", &InputState::window_width), field("window_height", &InputState::window_height));
  }
};

void push_input(const InputEvent& event);
void push_key(int code, bool down);
void push_button(int button, bool down);
void push_pointer(PointerSpace space, double x, double y);
// What the next frame begins with.
const std::vector<InputEvent>& queued_input();
void replace_queued_input(std::vector<InputEvent> events);
// Applies the queue; edges last for this frame.
void begin_input_frame();
// The events that begin_input_frame applied last.
const std::vector<InputEvent>& applied_input();
// Forgets edges, keys held, typed text and queued events, as a restart does.
void reset_input();
InputState& input_state();

// What keyboard_string holds from now on: the last kLongestTyped characters.
void set_typed(std::string text);
// What the player calls the key: in the layout in use for letters and digits, in English for the others. "" for codes without a key.
std::string key_name(int code);

// "Any" and "no key" counted in.
bool key_test(const KeySet& keys, int code);

}  // namespace arena
