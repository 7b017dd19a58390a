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

// Kinds of buffers, and the types of what stands in them.
inline constexpr int buffer_fixed = 0, buffer_grow = 1, buffer_wrap = 2, buffer_fast = 3;
inline constexpr int buffer_u8 = 0, buffer_s8 = 1, buffer_u16 = 2, buffer_s16 = 3, buffer_u32 = 4, buffer_s32 = 5, buffer_int64 = 6,
                     buffer_f16 = 7, buffer_f32 = 8, buffer_f64 = 9, buffer_bool = 10, buffer_string = 11, buffer_bare_string = 12;

// Colours: blue, green, red from the high byte down.
inline constexpr int c_white = 0xFFFFFF, c_red = 0x0000FF, c_lime = 0x00FF00;

}  // namespace game
