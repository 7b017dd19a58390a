#pragma once
// The mouse as the window has it, and where text is typed in the window.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(keyboard_set_text_area, void(Pixels, Pixels, Pixels, Pixels), "x, y, width, height",
        "Says where in the GUI text is being typed, so that an input method shows its choices beside it.");
BUILTIN(window_get_mouse_lock, Flag(), "", "Whether the mouse is locked.");
BUILTIN(window_mouse_get_x, Pixels(), "", "Where the pointer is in the window, from the left, in units of the window.");
BUILTIN(window_mouse_get_y, Pixels(), "", "Where the pointer is in the window, from the top, in units of the window.");
BUILTIN(window_mouse_is_inside, Flag(), "", "Whether the pointer is over the window.");
BUILTIN(window_mouse_set, void(Pixels, Pixels), "x, y", "Puts the pointer to a place in the window. It is there in the next frame.");
BUILTIN(window_set_mouse_lock, void(Flag), "wanted",
        "Locks the mouse into the window, or lets it go: the pointer is hidden and stays where it is, mouse_motion_x and mouse_motion_y go "
        "on.");

}  // namespace arena::script
