#pragma once
// What a window manager does for a window, for displays of X11 that have none.
#include <SDL.h>

namespace arena::platform {

// Puts the window there, in pixels of the display, where no window manager does; elsewhere nothing happens.
void place_without_manager(SDL_Window* window, const SDL_Rect& where);

}  // namespace arena::platform
