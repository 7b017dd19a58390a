#pragma once
// Gamepads, by their places from 0 to 7. A place where no pad is answers as one that nobody touches.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(gamepad_button_name, Text(GamepadNumber, GamepadButton), "gamepad, button",
        "What is printed on the button; where it lies, when that is not known.");
BUILTIN(gamepad_check_button, Flag(GamepadNumber, GamepadButton), "gamepad, button", "Whether the button is down; of gamepad -1: of any.");
BUILTIN(gamepad_check_button_pressed, Flag(GamepadNumber, GamepadButton), "gamepad, button",
        "Whether the button went down in this frame; of gamepad -1: of any.");
BUILTIN(gamepad_check_button_released, Flag(GamepadNumber, GamepadButton), "gamepad, button",
        "Whether the button came up in this frame; of gamepad -1: of any.");
BUILTIN(gamepad_check_plugged, Flag(GamepadNumber), "gamepad", "Whether a gamepad was plugged in there in this frame; -1: anywhere.");
BUILTIN(gamepad_check_unplugged, Flag(GamepadNumber), "gamepad", "Whether the gamepad there was unplugged in this frame; -1: any.");
BUILTIN(gamepad_get_acceleration, Number(GamepadNumber, In<Whole, 0, 2>), "gamepad, axis",
        "Its acceleration to the right, upwards, towards the player; 1 is that of the earth.");
BUILTIN(gamepad_get_axis, Number(GamepadNumber, GamepadAxis), "gamepad, axis",
        "Where the axis stands, behind dead zone and curve: -1 to 1, down and right are positive; triggers 0 to 1.");
BUILTIN(gamepad_get_axis_raw, Number(GamepadNumber, GamepadAxis), "gamepad, axis", "Where the axis stands, as it comes from the device.");
BUILTIN(gamepad_get_curve, Number(GamepadNumber, GamepadAxis), "gamepad, axis", "The exponent of the axis' curve.");
BUILTIN(gamepad_get_guid, Text(GamepadNumber), "gamepad", "The number of its make, 32 digits; \"\" where none ever was.");
BUILTIN(gamepad_get_gyro, Number(GamepadNumber, In<Whole, 0, 2>), "gamepad, axis",
        "How fast it turns: nodding, turning, tilting, in degrees a second.");
BUILTIN(gamepad_get_labels, Text(GamepadNumber), "gamepad",
        "What is printed on its buttons: \"letters\", \"swapped letters\", \"shapes\"; \"\" when that is not known.");
BUILTIN(gamepad_get_last, GamepadNumber(), "", "The gamepad that was used last; -1 for none.");
BUILTIN(gamepad_get_light, Colour(GamepadNumber), "gamepad", "The colour that its light was given; -1: its own.");
BUILTIN(gamepad_get_name, Text(GamepadNumber), "gamepad", "The name of the gamepad that is or was there; \"\" where none ever was.");
BUILTIN(gamepad_get_player, Whole(GamepadNumber), "gamepad", "The number of the player that it shows, from 0 on.");
BUILTIN(gamepad_get_thresholds, Array(GamepadNumber, GamepadAxis), "gamepad, axis",
        "The axis' thresholds: [press, release, inner, outer].");
BUILTIN(gamepad_has, Flag(GamepadNumber, Text), "gamepad, ability",
        "Whether it can do something: \"vibration\", \"trigger-vibration\", \"light\", \"motion\".");
BUILTIN(gamepad_is_connected, Flag(GamepadNumber), "gamepad", "Whether a gamepad is plugged in there.");
BUILTIN(gamepad_is_vibrating, Flag(GamepadNumber), "gamepad", "Whether it was told to vibrate and that is not over.");
BUILTIN(gamepad_number, Whole(), "", "How many gamepads are plugged in.");
BUILTIN(gamepad_set_curve, void(GamepadNumber, GamepadAxis, Number), "gamepad, axis, exponent",
        "The curve between inner and outer threshold: 1 is straight, 2 finer near the middle. A stick's axes have one.");
BUILTIN(gamepad_set_light, void(GamepadNumber, Colour), "gamepad, colour", "Gives its light a colour; -1: its own.");
BUILTIN(gamepad_set_motion, void(GamepadNumber, Flag), "gamepad, wanted",
        "Whether it is to tell how it is turned and moved; at first it does not.");
BUILTIN(gamepad_set_player, void(GamepadNumber, Whole), "gamepad, player",
        "Shows the number of a player on it, from 0 on; -1: that of its place.");
BUILTIN(
    gamepad_set_thresholds, void(GamepadNumber, GamepadAxis, Number, Number, Number, Number), "gamepad, axis, press, release, inner, outer",
    "From where on the axis counts as a button that is down, below where as up again; up to where it gives 0, from where on 1. A stick's "
    "axes share the last two.");
BUILTIN(gamepad_swap, void(GamepadNumber, GamepadNumber), "first, second", "The gamepads of two places change places.");
BUILTIN(gamepad_vibrate, void(GamepadNumber, Number, Number, Number), "gamepad, deep, high, seconds",
        "Lets its two motors run for so many seconds, with strengths from 0 to 1.");
BUILTIN(gamepad_vibrate_stop, void(GamepadNumber), "gamepad", "Stops all its motors.");
BUILTIN(gamepad_vibrate_triggers, void(GamepadNumber, Number, Number, Number), "gamepad, left, right, seconds",
        "Lets the motors of its triggers run for so many seconds, with strengths from 0 to 1.");

}  // namespace arena::script
