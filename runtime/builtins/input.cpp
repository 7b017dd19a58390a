// Keyboard and mouse.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/input.h"

#include "runtime/builtins/implement.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"

namespace arena {
namespace {

bool keyboard_check(std::int32_t key) { return key_test(input_state().key_down, key); }
bool keyboard_check_pressed(std::int32_t key) { return key_test(input_state().key_pressed, key); }
bool keyboard_check_released(std::int32_t key) { return key_test(input_state().key_released, key); }
void keyboard_clear(std::int32_t key) {
  if (key < 0 || key >= kKeys) return;
  input_state().key_down.data()[key] = input_state().key_pressed.data()[key] = input_state().key_released.data()[key] = false;
}

std::string keyboard_key_name(std::int32_t key) { return key_name(key); }
std::string keyboard_text() { return input_state().text; }  // typed in this frame

// -1 any button, 0 none, 1 left, 2 right, 3 middle.
bool test_button(const ButtonSet& buttons, std::int32_t button) {
  const bool any = buttons[1] || buttons[2] || buttons[3];
  if (button == -1) return any;
  if (button == 0) return !any;
  return button > 0 && button < kButtons && buttons[static_cast<std::size_t>(button)];
}
bool mouse_check_button(std::int32_t button) { return test_button(input_state().button_down, button); }
bool mouse_check_button_pressed(std::int32_t button) { return test_button(input_state().button_pressed, button); }
bool mouse_check_button_released(std::int32_t button) { return test_button(input_state().button_released, button); }
bool mouse_wheel_up() { return input_state().wheel > 0; }
bool mouse_wheel_down() { return input_state().wheel < 0; }
double device_mouse_x(std::int32_t) { return pointer_in_room().x; }
double device_mouse_y(std::int32_t) { return pointer_in_room().y; }
double device_mouse_x_to_gui(std::int32_t) { return pointer_in_gui().x; }
double device_mouse_y_to_gui(std::int32_t) { return pointer_in_gui().y; }

constexpr Implementation kRows[] = {
    implement<script::keyboard_check, keyboard_check>,
    implement<script::keyboard_check_pressed, keyboard_check_pressed>,
    implement<script::keyboard_check_released, keyboard_check_released>,
    implement<script::keyboard_clear, keyboard_clear>,
    implement<script::keyboard_key_name, keyboard_key_name>,
    implement<script::keyboard_text, keyboard_text>,
    implement<script::mouse_check_button, mouse_check_button>,
    implement<script::mouse_check_button_pressed, mouse_check_button_pressed>,
    implement<script::mouse_check_button_released, mouse_check_button_released>,
    implement<script::mouse_wheel_up, mouse_wheel_up>,
    implement<script::mouse_wheel_down, mouse_wheel_down>,
    implement<script::device_mouse_x, device_mouse_x>,
    implement<script::device_mouse_y, device_mouse_y>,
    implement<script::device_mouse_x_to_gui, device_mouse_x_to_gui>,
    implement<script::device_mouse_y_to_gui, device_mouse_y_to_gui>,
};
const BuiltinTable table(
    "Keyboard and mouse",
    "Key codes of letters and digits are places on the keyboard, named by the US layout; `keyboard_key_name` tells what the player's "
    "layout has there. The variable `keyboard_string` holds the last 1,024 characters typed, less those taken back with Backspace, until a "
    "script sets it anew; `keyboard_text` gives what was typed in this frame. Buttons are -1 any, 0 none, 1 left, 2 right, 3 middle.",
    kRows);

}  // namespace
}  // namespace arena
