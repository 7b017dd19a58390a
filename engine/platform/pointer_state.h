#pragma once
// The mouse of the window follows what the game's state says of it.

namespace arena::platform {

class Window;

// Which window it is; null: none.
void use_window_for_pointer(Window* window);
// After a restore.
void follow_pointer_state();

}  // namespace arena::platform
