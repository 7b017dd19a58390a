#pragma once
// The game itself: rooms, restart and end, time, messages.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(exception_unhandled_handler, void(Any), "function",
        "The function that is told of an error that nothing caught; undefined for none.");
BUILTIN(frame_stage_times, Struct(), "", "A struct of the stages of the last frame and the microseconds that each took.");
BUILTIN(game_end, void(), "", "Ends the game after this frame.");
BUILTIN(game_restart, void(), "", "Starts the game anew after this frame.");
BUILTIN(get_timer, Number(), "", "The microseconds of game time since the start.");
BUILTIN(moment_mark, void(Text), "text",
        "Says that something worth finding again happens now, for whoever goes through a recording. The game stays as it is.");
BUILTIN(room_exists, Flag(RoomIndex), "room", "Whether there is such a room.");
BUILTIN(room_get_name, Text(RoomIndex), "room", "The room's name.");
BUILTIN(room_goto, void(RoomIndex), "room", "Goes to a room after this frame's events.");
BUILTIN(room_restart, void(), "", "Begins this room anew after this frame's events.");
BUILTIN(show_debug_message, void(Any), "value", "Writes the value's text into the log.");

}  // namespace arena::script
