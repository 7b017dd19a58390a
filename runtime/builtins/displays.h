#pragma once
// The displays of the machine, where the window stands on them, and how often a frame runs.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(display_get, Struct(Whole), "display",
        "A struct of a display: x, y, width, height, frequency (Hz; 0 not known), dpi, work_x, work_y, work_width and work_height.");
BUILTIN(display_get_count, Whole(), "", "How many displays there are.");
BUILTIN(display_get_of_window, Whole(), "", "The display that the window stands on.");
BUILTIN(display_set_awake, void(Flag), "wanted",
        "Keeps the display from going dark while nobody presses anything, as at first, or no longer.");
BUILTIN(game_get_sleep_margin, Number(), "", "The milliseconds before a frame that are waited awake.");
BUILTIN(game_get_speed, Whole(), "", "The frames a second that are wanted; 0: with the display.");
BUILTIN(game_set_sleep_margin, void(Number), "milliseconds",
        "How long before a frame of a wanted speed the program waits awake, from 0 to 20: more is more even, and takes more power.");
BUILTIN(game_set_speed, void(Whole), "frames_per_second",
        "Runs so many frames a second, at most 1000; 0: one for each picture of the display.");
BUILTIN(window_get_borderless, Flag(), "", "Whether the window has no border.");
BUILTIN(window_get_caption, Text(), "", "What a script wrote above the window; an empty text when none did.");
BUILTIN(window_get_x, Pixels(), "", "Where the window stands, from the left.");
BUILTIN(window_get_y, Pixels(), "", "Where the window stands, from the top.");
BUILTIN(window_is_minimised, Flag(), "", "Whether the window is put away.");
BUILTIN(window_minimise, void(), "", "Puts the window away.");
BUILTIN(window_restore, void(), "", "Brings the window back that was put away or made as large as the display.");
BUILTIN(window_set_borderless, void(Flag), "wanted", "Takes the window's border away, or brings it back.");
BUILTIN(window_set_caption, void(Text), "caption", "Writes above the window; an empty text: the game's title.");
BUILTIN(window_set_position, void(Whole, Whole), "x, y", "Moves the window.");

}  // namespace arena::script
