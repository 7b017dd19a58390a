#pragma once
// The names of variables that the scripts of every game share, and a few numbers with names.
#include "runtime/script.h"

namespace game {

// Motion and timing
inline const Variable dt_steady{"dt_steady"};
inline const Variable dt_unsteady{"dt_unsteady"};
inline const Variable bob_timer{"bob_timer"};
inline const Variable image_y_offset{"image_y_offset"};

// Alignments of text.
inline constexpr int fa_left = 0, fa_center = 1, fa_right = 2, fa_top = 0, fa_middle = 1, fa_bottom = 2;
// What window_set_cursor takes.
inline constexpr int kNoCursor = -1, kArrowCursor = 0;

// Colours: blue, green, red from the high byte down.
inline constexpr int c_white = 0xFFFFFF, c_red = 0x0000FF, c_lime = 0x00FF00;

}  // namespace game
