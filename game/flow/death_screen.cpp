#include "game/flow/death_screen.h"

namespace arena::game {
namespace {
const Variable text{"text"};
const Builtin string_of{"string"}, keyboard_check_pressed{"keyboard_check_pressed"}, game_restart{"game_restart"};
const Builtin draw_text_transformed{"draw_text_transformed"}, display_get_gui_width{"display_get_gui_width"};
const Builtin display_get_gui_height{"display_get_gui_height"};
constexpr int kKeySpace = 32;
}  // namespace
}  // namespace arena::game

SCRIPT(showDeathScreen) { instance_create_layer(0, 0, "layUI", oDeathScreen); }

EVENT(oDeathScreen, Create_0) {
  self[text] = "You are dead!\n" + string_of("Kills: {0}\n", global[statistics][kills]) + "Press SPACE to restart!";
}

EVENT(oDeathScreen, Step_0) {
  if (keyboard_check_pressed(kKeySpace)) game_restart();
}

EVENT(oDeathScreen, Draw_64) { draw_text_transformed(display_get_gui_width() / 2, display_get_gui_height() / 2, self[text], 2, 2, 0); }
