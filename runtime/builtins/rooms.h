#pragma once
// Rooms made and changed while the game runs. What is changed shows when the room is entered the next time; a new run begins with the
// rooms of the data.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(room_add_instance, void(RoomIndex, Pixels, Pixels, Text, ObjectIndex), "room, x, y, layer, object",
        "Lets the room begin with one instance more, on a layer that it has by name.");
BUILTIN(room_add_layer, void(RoomIndex, Number, Text), "room, depth, name", "Lets the room begin with one layer more.");
BUILTIN(room_clear, void(RoomIndex), "room", "Lets the room begin without any instance.");
BUILTIN(room_copy, RoomIndex(RoomIndex, Text), "room, name", "Makes a room that is like another one.");
BUILTIN(room_create, RoomIndex(Text, Whole, Whole), "name, width, height",
        "Makes a room with one layer, \"layer\", and a view of all of it.");
BUILTIN(room_find, RoomIndex(Text), "name", "The room of that name; -1 when there is none.");
BUILTIN(room_get_height, Pixels(RoomIndex), "room", "The height that the room begins with.");
BUILTIN(room_get_persistent, Flag(RoomIndex), "room", "Whether the room is kept as it was left.");
BUILTIN(room_get_width, Pixels(RoomIndex), "room", "The width that the room begins with.");
BUILTIN(room_set_colour, void(RoomIndex, Colour), "room, colour", "Sets what stands behind all else in the room.");
BUILTIN(room_set_persistent, void(RoomIndex, Flag), "room, persistent", "Whether the room is kept as it is when it is left.");
BUILTIN(room_set_size, void(RoomIndex, Whole, Whole), "room, width, height", "Sets the size that the room begins with, at least 1.");
BUILTIN(room_set_view_size, void(RoomIndex, Whole, Whole), "room, width, height",
        "Sets how much of the room its camera sees at first, at least 1.");

}  // namespace arena::script
