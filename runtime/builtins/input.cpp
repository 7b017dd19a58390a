// Keyboard, mouse and fingers.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/input.h"

#include "runtime/builtins/implement.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"

namespace arena {
namespace {

bool keyboard_check(std::int32_t key) { return key_test(key, &Switch::down); }
bool keyboard_check_pressed(std::int32_t key) { return key_test(key, &Switch::pressed); }
bool keyboard_check_released(std::int32_t key) { return key_test(key, &Switch::released); }
void keyboard_clear(std::int32_t key) { forget_key(key); }

std::string keyboard_key_name(std::int32_t key) { return key_name(key); }
std::string keyboard_text() { return input_state().text; }  // typed in this frame
std::string keyboard_composition() { return input_state().composition; }
std::int32_t keyboard_composition_cursor() { return input_state().composition_cursor; }

bool is_key(std::int32_t key) { return key > kVkAnyKey && key < kKeys; }
void keyboard_set_map(std::int32_t key, std::int32_t as) {
  if (!is_key(key)) return report_invalid_resource(1, "key", key, kKeys);
  if (!is_key(as) && as != kVkNoKey) return report_invalid_resource(2, "key", as, kKeys);
  set_key_meaning(key, as);
}
std::int32_t keyboard_get_map(std::int32_t key) { return is_key(key) ? input_state().key_meaning.data()[key] : kVkNoKey; }
void keyboard_reset_map() { input_state().key_meaning = own_meanings(); }

bool mouse_check_button(std::int32_t button) { return button_test(button, &Switch::down); }
bool mouse_check_button_pressed(std::int32_t button) { return button_test(button, &Switch::pressed); }
bool mouse_check_button_released(std::int32_t button) { return button_test(button, &Switch::released); }
void mouse_clear(std::int32_t button) {
  for (int each = 1; each < kButtons; ++each) {
    if (button == -1 || button == each) input_state().buttons.data()[each] = {};
  }
}
bool mouse_wheel_up() { return input_state().wheel_up > 0; }
bool mouse_wheel_down() { return input_state().wheel_down > 0; }
bool mouse_wheel_left() { return input_state().wheel_left > 0; }
bool mouse_wheel_right() { return input_state().wheel_right > 0; }
std::int32_t mouse_wheel_steps() { return input_state().wheel_up - input_state().wheel_down; }
std::int32_t mouse_wheel_steps_across() { return input_state().wheel_right - input_state().wheel_left; }
double mouse_motion_x() { return input_state().motion_x; }
double mouse_motion_y() { return input_state().motion_y; }

// Null for the mouse, and for a device that is none, which is reported.
const Finger* finger_of(std::int32_t device) {
  if (device == 0) return nullptr;
  if (device > 0 && device <= kFingers) return &input_state().fingers.data()[device - 1];
  report_invalid_resource(1, "pointer", device, kFingers + 1);
  return nullptr;
}
bool test_pointer(std::int32_t device, std::int32_t button, bool Switch::*which) {
  const Finger* const finger = finger_of(device);
  if (finger == nullptr) return device == 0 && button_test(button, which);
  const bool is_on = finger->touch.*which;
  return button == 0 ? !is_on : (button == 1 || button == -1) && is_on;
}
bool device_mouse_check_button(std::int32_t device, std::int32_t button) { return test_pointer(device, button, &Switch::down); }
bool device_mouse_check_button_pressed(std::int32_t device, std::int32_t button) { return test_pointer(device, button, &Switch::pressed); }
bool device_mouse_check_button_released(std::int32_t device, std::int32_t button) {
  return test_pointer(device, button, &Switch::released);
}
Point in_room(std::int32_t device) {
  const Finger* const finger = finger_of(device);
  return finger == nullptr ? pointer_in_room() : window_to_room({finger->x, finger->y});
}
Point in_gui(std::int32_t device) {
  const Finger* const finger = finger_of(device);
  return finger == nullptr ? pointer_in_gui() : window_to_gui({finger->x, finger->y});
}
double device_mouse_x(std::int32_t device) { return in_room(device).x; }
double device_mouse_y(std::int32_t device) { return in_room(device).y; }
double device_mouse_x_to_gui(std::int32_t device) { return in_gui(device).x; }
double device_mouse_y_to_gui(std::int32_t device) { return in_gui(device).y; }

constexpr Implementation kRows[] = {
    implement<script::device_mouse_check_button, device_mouse_check_button>,
    implement<script::device_mouse_check_button_pressed, device_mouse_check_button_pressed>,
    implement<script::device_mouse_check_button_released, device_mouse_check_button_released>,
    implement<script::device_mouse_x, device_mouse_x>,
    implement<script::device_mouse_x_to_gui, device_mouse_x_to_gui>,
    implement<script::device_mouse_y, device_mouse_y>,
    implement<script::device_mouse_y_to_gui, device_mouse_y_to_gui>,
    implement<script::keyboard_check, keyboard_check>,
    implement<script::keyboard_check_pressed, keyboard_check_pressed>,
    implement<script::keyboard_check_released, keyboard_check_released>,
    implement<script::keyboard_clear, keyboard_clear>,
    implement<script::keyboard_composition, keyboard_composition>,
    implement<script::keyboard_composition_cursor, keyboard_composition_cursor>,
    implement<script::keyboard_get_map, keyboard_get_map>,
    implement<script::keyboard_key_name, keyboard_key_name>,
    implement<script::keyboard_reset_map, keyboard_reset_map>,
    implement<script::keyboard_set_map, keyboard_set_map>,
    implement<script::keyboard_text, keyboard_text>,
    implement<script::mouse_check_button, mouse_check_button>,
    implement<script::mouse_check_button_pressed, mouse_check_button_pressed>,
    implement<script::mouse_check_button_released, mouse_check_button_released>,
    implement<script::mouse_clear, mouse_clear>,
    implement<script::mouse_motion_x, mouse_motion_x>,
    implement<script::mouse_motion_y, mouse_motion_y>,
    implement<script::mouse_wheel_down, mouse_wheel_down>,
    implement<script::mouse_wheel_left, mouse_wheel_left>,
    implement<script::mouse_wheel_right, mouse_wheel_right>,
    implement<script::mouse_wheel_steps, mouse_wheel_steps>,
    implement<script::mouse_wheel_steps_across, mouse_wheel_steps_across>,
    implement<script::mouse_wheel_up, mouse_wheel_up>,
};
const BuiltinTable table(
    "Keyboard and mouse",
    "Key codes of letters, digits and signs are places on the keyboard, named by the US layout; `keyboard_key_name` tells what the "
    "player's "
    "layout has there. The variable `keyboard_string` holds the last 1,024 characters typed, less those taken back with Backspace, until a "
    "script sets it anew; `keyboard_text` gives what was typed in this frame. Buttons are -1 any, 0 none, 1 left, 2 right, 3 middle, 4 and "
    "5 "
    "at the side. Of one key or button a frame takes at most one press and one release; what comes beyond waits for the next frame, so "
    "that "
    "none is lost. Devices are 0 the mouse, which the first finger moves, too, and 1 to 10 the fingers. docs/input.md shows all of it.",
    kRows);

}  // namespace
}  // namespace arena
