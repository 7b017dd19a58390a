#pragma once
// Keyboard, mouse and fingers. Buttons: -1 any, 0 none, 1 left, 2 right, 3 middle, 4 and 5 at the side. Devices: 0 the mouse, 1 to 10 the
// fingers on a glass that feels them.
#include "runtime/builtins/builtin.h"

namespace arena::script {

using AnyButton = In<MouseButton, -1, 5>;
using PointerDevice = In<Whole, 0, 10>;

BUILTIN(device_mouse_check_button, Flag(PointerDevice, AnyButton), "device, button",
        "Whether the button of a pointer is down. A finger on the glass is a left button that is down.");
BUILTIN(device_mouse_check_button_pressed, Flag(PointerDevice, AnyButton), "device, button",
        "Whether the button went down in this frame, or the finger came.");
BUILTIN(device_mouse_check_button_released, Flag(PointerDevice, AnyButton), "device, button",
        "Whether the button came up in this frame, or the finger left.");
BUILTIN(device_mouse_x, Pixels(PointerDevice), "device", "Where the pointer is in the room, from the left.");
BUILTIN(device_mouse_x_to_gui, Pixels(PointerDevice), "device", "Where the pointer is in the GUI, from the left.");
BUILTIN(device_mouse_y, Pixels(PointerDevice), "device", "Where the pointer is in the room, from the top.");
BUILTIN(device_mouse_y_to_gui, Pixels(PointerDevice), "device", "Where the pointer is in the GUI, from the top.");
BUILTIN(keyboard_check, Flag(KeyCode), "key", "Whether the key is down.");
BUILTIN(keyboard_check_pressed, Flag(KeyCode), "key", "Whether the key went down in this frame.");
BUILTIN(keyboard_check_released, Flag(KeyCode), "key", "Whether the key came up in this frame.");
BUILTIN(keyboard_clear, void(KeyCode), "key", "Forgets that the key is or was down.");
BUILTIN(keyboard_composition, Text(), "",
        "What an input method shows while a character is put together, before it is typed; \"\" when nothing is.");
BUILTIN(keyboard_composition_cursor, Whole(), "", "How many characters of that stand before its cursor.");
BUILTIN(keyboard_get_map, KeyCode(KeyCode), "key", "As which key the key counts; 0: as none.");
BUILTIN(keyboard_key_name, Text(KeyCode), "key", "What the player's keyboard has at that place.");
BUILTIN(keyboard_reset_map, void(), "", "Each key counts as itself again.");
BUILTIN(keyboard_set_map, void(KeyCode, KeyCode), "key, as",
        "From its next press on the key counts as another one, or as none (0). The other one counts as before.");
BUILTIN(keyboard_text, Text(), "", "What was typed in this frame.");
BUILTIN(mouse_check_button, Flag(AnyButton), "button", "Whether the button is down.");
BUILTIN(mouse_check_button_pressed, Flag(AnyButton), "button", "Whether the button went down in this frame.");
BUILTIN(mouse_check_button_released, Flag(AnyButton), "button", "Whether the button came up in this frame.");
BUILTIN(mouse_clear, void(AnyButton), "button", "Forgets that the button is or was down; -1: that any is.");
BUILTIN(mouse_motion_x, Number(), "",
        "How far the mouse moved to the right in this frame, in units of the window. Goes on while it is locked.");
BUILTIN(mouse_motion_y, Number(), "", "How far the mouse moved down in this frame, in units of the window. Goes on while it is locked.");
BUILTIN(mouse_wheel_down, Flag(), "", "Whether the wheel was turned towards the player in this frame.");
BUILTIN(mouse_wheel_left, Flag(), "", "Whether the wheel was pushed or turned to the left in this frame.");
BUILTIN(mouse_wheel_right, Flag(), "", "Whether the wheel was pushed or turned to the right in this frame.");
BUILTIN(mouse_wheel_steps, Whole(), "", "By how many steps the wheel was turned away from the player in this frame; less than 0 towards.");
BUILTIN(mouse_wheel_steps_across, Whole(), "",
        "By how many steps the wheel was turned to the right in this frame; less than 0 to the left.");
BUILTIN(mouse_wheel_up, Flag(), "", "Whether the wheel was turned away from the player in this frame.");

}  // namespace arena::script
