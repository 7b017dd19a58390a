#pragma once
// Events of what is crossed: the pointer enters an instance and leaves it, an instance leaves the room or a view; and those of the wheel
// and of the window. A game whose objects handle none of them pays one look-up a frame.

namespace arena {

// Behind the key and mouse events: wheel, pointer, window. A close request that no instance handles ends the game.
void run_wheel_pointer_and_window_events();
// Behind the collisions. An instance leaves when its box, or without a sprite its place, was inside in the frame before and is outside now.
void run_outside_events();

}  // namespace arena
