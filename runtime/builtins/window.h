#pragma once
// The window, its pointer, the clipboard, and pictures of what it shows.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(clipboard_get_text, Text(), "", "The text on the clipboard.");
BUILTIN(clipboard_has_text, Flag(), "", "Whether there is text on the clipboard.");
BUILTIN(clipboard_set_text, void(Text), "text", "Puts a text on the clipboard.");
BUILTIN(window_get_cursor, Whole(), "", "The pointer: 0 the arrow, -1 none.");
BUILTIN(window_get_fullscreen, Flag(), "", "Whether the window fills the screen.");
BUILTIN(window_set_cursor, void(Or<Whole, 0>), "wanted", "Shows the arrow (0) or no pointer (-1).");
BUILTIN(window_set_fullscreen, void(Flag), "wanted", "Fills the screen, or goes back to a window.");
BUILTIN(window_set_size, void(Whole, Whole), "width, height", "Sets the size of the window in pixels.");

}  // namespace arena::script
