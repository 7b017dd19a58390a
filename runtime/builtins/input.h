#pragma once
// Keyboard and mouse. Buttons: -1 any, 0 none, 1 left, 2 right, 3 middle.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(device_mouse_x, Pixels(Whole), "device", "Where the pointer is in the room, from the left.");
BUILTIN(device_mouse_x_to_gui, Pixels(Whole), "device", "Where the pointer is in the GUI, from the left.");
BUILTIN(device_mouse_y, Pixels(Whole), "device", "Where the pointer is in the room, from the top.");
BUILTIN(device_mouse_y_to_gui, Pixels(Whole), "device", "Where the pointer is in the GUI, from the top.");
BUILTIN(keyboard_check, Flag(KeyCode), "key", "Whether the key is down.");
BUILTIN(keyboard_check_pressed, Flag(KeyCode), "key", "Whether the key went down in this frame.");
BUILTIN(keyboard_check_released, Flag(KeyCode), "key", "Whether the key came up in this frame.");
BUILTIN(keyboard_clear, void(KeyCode), "key", "Forgets that the key is or was down.");
BUILTIN(keyboard_key_name, Text(KeyCode), "key", "What the player's keyboard has at that place.");
BUILTIN(keyboard_text, Text(), "", "What was typed in this frame.");
BUILTIN(mouse_check_button, Flag(In<MouseButton, -1, 3>), "button", "Whether the button is down.");
BUILTIN(mouse_check_button_pressed, Flag(In<MouseButton, -1, 3>), "button", "Whether the button went down in this frame.");
BUILTIN(mouse_check_button_released, Flag(In<MouseButton, -1, 3>), "button", "Whether the button came up in this frame.");
BUILTIN(mouse_wheel_down, Flag(), "", "Whether the wheel was turned towards the player in this frame.");
BUILTIN(mouse_wheel_up, Flag(), "", "Whether the wheel was turned away from the player in this frame.");

}  // namespace arena::script
