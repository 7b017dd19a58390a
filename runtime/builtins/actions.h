#pragma once
// Actions: what players want to do, by name, and which keys, buttons and sticks say so. A table for each player, from 0 to 7.
#include "runtime/builtins/builtin.h"

namespace arena::script {

using PlayerNumber = In<Whole, 0, 7>;

BUILTIN(
    action_bind, void(PlayerNumber, Text, Text, Optional<Text>), "player, action, input, direction",
    "Adds an input to an action: \"key A\", \"key Space\", \"mouse left\", \"wheel up\", \"pad south\", \"pad left trigger\", \"pad left "
    "stick\". A direction (\"left\", \"right\", \"up\", \"down\") makes it one way of an action that has two axes.");
BUILTIN(action_check, Flag(PlayerNumber, Text), "player, action", "Whether any input of the action is down.");
BUILTIN(action_check_pressed, Flag(PlayerNumber, Text), "player, action",
        "Whether an input of the action went down in this frame while no other was held.");
BUILTIN(action_check_released, Flag(PlayerNumber, Text), "player, action",
        "Whether an input of the action came up in this frame while no other was held.");
BUILTIN(action_exists, Flag(PlayerNumber, Text), "player, action", "Whether the action has an input.");
BUILTIN(action_get_device, Text(PlayerNumber), "player", "What the player used last: \"keyboard\" (or the mouse) or \"pad\".");
BUILTIN(
    action_get_inputs, Array(PlayerNumber, Text), "player, action",
    "The inputs of an action in the order in which they were bound, as action_bind takes them; behind those with a direction stands it: "
    "\"key A > left\".");
BUILTIN(action_get_names, Array(PlayerNumber), "player", "The names of the player's actions, sorted.");
BUILTIN(action_get_pad, GamepadNumber(PlayerNumber), "player", "The player's gamepad; -1 for none.");
BUILTIN(action_get_text, Text(), "", "The tables of all players as text, a line for each input: to be saved.");
BUILTIN(action_get_value, Number(PlayerNumber, Text), "player, action", "How far the action is pressed, 0 to 1; of a wheel its steps.");
BUILTIN(action_get_x, Number(PlayerNumber, Text), "player, action", "The action's axis across: -1 left to 1 right.");
BUILTIN(action_get_y, Number(PlayerNumber, Text), "player, action", "The action's axis down: -1 up to 1 down.");
BUILTIN(
    action_listen, Text(Optional<PlayerNumber>), "player",
    "The input that went down in this frame, as action_bind takes it; \"\" when none did. Of a player: only those of the player's gamepad, "
    "keyboard and mouse.");
BUILTIN(action_prompt, Text(PlayerNumber, Text), "player, action",
        "What the player is to press, as it is printed on the device used last; \"\" when the action has nothing there.");
BUILTIN(action_prompt_picture, Text(PlayerNumber, Text), "player, action",
        "A name for the picture of that: \"key_A\", \"mouse_left\", \"pad_letters_south\".");
BUILTIN(action_set_pad, void(PlayerNumber, GamepadNumber), "player, gamepad",
        "Gives the player a gamepad; -1 none. At first each has that of the own number.");
BUILTIN(
    action_set_text, Text(Text), "text",
    "Puts the tables of all players to what action_get_text gave. Gives \"\", or one sentence about the first line that is wrong; nothing "
    "changes then.");
BUILTIN(action_unbind, void(PlayerNumber, Text, Optional<Text>), "player, action, input",
        "Takes an input away from an action, or all of them.");

}  // namespace arena::script
