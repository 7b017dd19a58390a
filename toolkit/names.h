#pragma once
// The names that the scripts of every game share: time, and the built-in functions that games call.
#include "runtime/script.h"

namespace arena::game {

// Motion and timing
inline const Variable dt_steady{"dt_steady"};
inline const Variable dt_unsteady{"dt_unsteady"};
inline const Variable bob_timer{"bob_timer"};
inline const Variable image_y_offset{"image_y_offset"};

// Alignments of text.
inline constexpr int fa_left = 0, fa_center = 1, fa_right = 2, fa_top = 0, fa_middle = 1, fa_bottom = 2;
// What window_set_cursor takes.
inline constexpr int kNoCursor = -1, kArrowCursor = 0;

// Built-in functions
inline const Builtin instance_create_layer{"instance_create_layer"};
inline const Builtin instance_destroy{"instance_destroy"};
inline const Builtin instance_number{"instance_number"};
inline const Builtin event_inherited{"event_inherited"};
inline const Builtin object_get_name{"object_get_name"};
inline const Builtin string_of{"string"};  // a text with {0}, {1}... filled in
inline const Builtin show_debug_message{"show_debug_message"};
inline const Builtin variable_struct_get_names{"variable_struct_get_names"};
inline const Builtin variable_struct_set{"variable_struct_set"};
inline const Builtin variable_instance_exists{"variable_instance_exists"};
inline const Builtin variable_instance_get{"variable_instance_get"};
inline const Builtin variable_instance_set{"variable_instance_set"};
inline const Builtin variable_global_exists{"variable_global_exists"};
inline const Builtin ds_list_create{"ds_list_create"};
inline const Builtin ds_list_destroy{"ds_list_destroy"};
inline const Builtin ds_list_size{"ds_list_size"};
inline const Builtin ds_list_find_value{"ds_list_find_value"};
inline const Builtin collision_circle_list{"collision_circle_list"};
inline const Builtin keyboard_check_pressed{"keyboard_check_pressed"};
inline const Builtin window_set_cursor{"window_set_cursor"};
inline const Builtin game_end{"game_end"};
inline const Builtin draw_self{"draw_self"};
inline const Builtin draw_sprite_ext{"draw_sprite_ext"};
inline const Builtin draw_set_alpha{"draw_set_alpha"};
inline const Builtin draw_set_colour{"draw_set_colour"};
inline const Builtin draw_rectangle{"draw_rectangle"};
inline const Builtin draw_circle{"draw_circle"};
inline const Builtin draw_text{"draw_text"};
inline const Builtin draw_text_transformed{"draw_text_transformed"};
inline const Builtin draw_set_font{"draw_set_font"};
inline const Builtin draw_set_halign{"draw_set_halign"};
inline const Builtin draw_set_valign{"draw_set_valign"};
inline const Builtin gpu_set_blendmode{"gpu_set_blendmode"};
inline const Builtin gpu_get_blendmode{"gpu_get_blendmode"};
inline const Builtin display_get_gui_width{"display_get_gui_width"};
inline const Builtin display_get_gui_height{"display_get_gui_height"};
inline const Builtin audio_exists{"audio_exists"};
inline const Builtin audio_play_sound{"audio_play_sound"};
inline const Builtin audio_sound_pitch{"audio_sound_pitch"};

// Colours: blue, green, red from the high byte down.
inline constexpr int c_white = 0xFFFFFF, c_red = 0x0000FF, c_lime = 0x00FF00;

}  // namespace arena::game
