#pragma once
// The one input queue and the state that scripts read. Every change of keys, buttons, pointer, text and window enters through
// push_input and takes effect at the start of the next frame, so that a recording of the queue is a recording of the player.
#include <array>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "runtime/input/switch.h"
#include "runtime/session/state.h"

namespace arena {

// Key codes. Letters, digits and signs are places on the keyboard, named by what the US layout has there: letters and digits by their ASCII
// capitals; others as the vk_ constants.
inline constexpr int kKeys = 256;
inline constexpr int kButtons = 6;  // 1 left, 2 right, 3 middle, 4 and 5 at the side: back and forward
inline constexpr int kFingers = 10;
inline constexpr int kVkNoKey = 0, kVkAnyKey = 1;
inline constexpr int kBackspace = 8;
inline constexpr std::size_t kLongestTyped = 1024;  // characters of keyboard_string

enum class PointerSpace : std::uint8_t { kWindow, kRoom, kGui };
// What turns and moves without being anywhere: kMotion's code.
inline constexpr int kMotionPointer = 0, kMotionWheelAcross = 1;

struct InputEvent {
  enum class Type : std::uint8_t {
    kKey,
    kButton,
    kPointer,
    kText,
    kFocus,
    kWindowSize,
    kWheel,
    kKeyLabel,
    kPad,            // code: the device, -1 all; value: plugged in, unplugged; text: its description (gamepads.h)
    kPadButton,      // code: the device; value: the button; x: down, up
    kPadAxis,        // code: the device; value: the axis; x: -1 to 1
    kPadSensor,      // code: the device; value: the sensor's axis; x: what it measures
    kMotion,         // code: what moved; x, y: by how much, window's units or steps
    kComposition,    // text: what an input method is about to type; code: characters before its cursor
    kTouch,          // code: the finger, from 0; value: 1 it is there, 0 it left; x, y: where, in the window
    kPointerInside,  // value: the pointer came into the window, left it
    kAsync = 16,     // code: the number of a request; value: the kind of result; text: what came of it
    kClose = 17,     // the player wants the window closed
  } type = Type::kKey;
  std::int32_t code = 0;   // key code, button, width, wheel steps; number of a request
  std::int32_t value = 0;  // 1 down, 0 up; focus gained; height; kind of asynchronous result
  PointerSpace space = PointerSpace::kWindow;
  double x = 0, y = 0;
  std::string text;  // typed; what stands on the key, "" for that of the US layout
  static constexpr auto fields() {
    return std::tuple(field("type", &InputEvent::type), field("code", &InputEvent::code), field("value", &InputEvent::value),
                      field("space", &InputEvent::space), field("x", &InputEvent::x), field("y", &InputEvent::y),
                      field("text", &InputEvent::text));
  }
};

inline constexpr InputEvent::Type kLastInputType = InputEvent::Type::kClose;  // all numbers up to it are types

using KeySwitches = std::array<Switch, kKeys>;
using ButtonSwitches = std::array<Switch, kButtons>;

// A finger on the glass. It stays where it was last when it leaves.
struct Finger {
  Switch touch;
  double x = 0, y = 0;  // in the window
  static constexpr auto fields() { return std::tuple(field("touch", &Finger::touch), field("x", &Finger::x), field("y", &Finger::y)); }
};

constexpr std::array<std::uint8_t, kKeys> own_meanings() {
  std::array<std::uint8_t, kKeys> meanings = {};
  for (int code = 0; code < kKeys; ++code) meanings[static_cast<std::size_t>(code)] = static_cast<std::uint8_t>(code);
  return meanings;
}

struct InputState {
  KeySwitches keys;
  ButtonSwitches buttons;
  std::int32_t last_key = 0;
  std::array<std::uint8_t, kKeys> key_meaning = own_meanings();                // as which key each counts; 0: as none
  std::array<std::uint8_t, kKeys> key_held_as = {};                            // as which key each was pressed; 0: it is up
  std::int32_t wheel_up = 0, wheel_down = 0, wheel_left = 0, wheel_right = 0;  // steps in this frame
  PointerSpace pointer_space = PointerSpace::kWindow;
  double pointer_x = 0, pointer_y = 0;
  double motion_x = 0, motion_y = 0;  // of the pointer in this frame, in window's units
  bool is_pointer_inside = true;      // over the window
  std::array<Finger, kFingers> fingers;
  std::string text;                           // typed in this frame, UTF-8
  std::string typed;                          // keyboard_string: the last kLongestTyped characters, until scripts clear it
  std::string composition;                    // what an input method is about to type
  std::int32_t composition_cursor = 0;        // characters before the cursor in it
  std::array<std::string, kKeys> key_labels;  // what the player's layout has on the keys that are places; "": as the US layout
  bool has_focus = true;
  std::int32_t window_width = 1280, window_height = 720;
  std::uint64_t uses = 0, keyboard_used = 0;  // how often anything was pressed; the use that was the last one of keyboard and mouse
  static constexpr auto fields() {
    return std::tuple(field("keys", &InputState::keys), field("buttons", &InputState::buttons), field("last_key", &InputState::last_key),
                      field("key_meaning", &InputState::key_meaning), field("key_held_as", &InputState::key_held_as),
                      field("wheel_up", &InputState::wheel_up), field("wheel_down", &InputState::wheel_down),
                      field("wheel_left", &InputState::wheel_left), field("wheel_right", &InputState::wheel_right),
                      field("pointer_space", &InputState::pointer_space), field("pointer_x", &InputState::pointer_x),
                      field("pointer_y", &InputState::pointer_y), field("motion_x", &InputState::motion_x),
                      field("motion_y", &InputState::motion_y), field("is_pointer_inside", &InputState::is_pointer_inside),
                      field("fingers", &InputState::fingers), field("text", &InputState::text), field("typed", &InputState::typed),
                      field("composition", &InputState::composition), field("composition_cursor", &InputState::composition_cursor),
                      field("key_labels", &InputState::key_labels), field("has_focus", &InputState::has_focus),
                      field("window_width", &InputState::window_width), field("window_height", &InputState::window_height),
                      field("uses", &InputState::uses), field("keyboard_used", &InputState::keyboard_used));
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
// What the player calls the key: in the layout in use for those that are places, in English for the others. "" for codes without a key.
std::string key_name(int code);
// The same for a US keyboard.
std::string us_key_name(int code);

// Whether keys or buttons are down, or have an edge (`which`) in this frame; "any" and "none" counted in. Buttons: -1 any, 0 none.
bool key_test(int code, bool Switch::*which);
bool button_test(int button, bool Switch::*which);
// Forgets that a key is or was down.
void forget_key(int code);
// From its next press on the key counts as another; as none when that is kVkNoKey.
void set_key_meaning(int code, int as);

}  // namespace arena
