#include "game/player/death_screen.h"

#include "toolkit/support/drawing.h"

namespace game {
namespace {
const Variable text{"text"};
constexpr int kKeySpace = 32;
constexpr int kVeilColour = 0x180810, kMessageColour = 0xE8ECFF;  // dark wine, pale rose
constexpr Real kVeilAlpha = 0.6;
}  // namespace
}  // namespace game

SCRIPT(showDeathScreen) { instance_create_layer(0, 0, "layUI", oDeathScreen); }

EVENT(oDeathScreen, Create_0) {
  self[text] = "You are dead!\n" + string_of("Kills: {0}\n", global[statistics][kills]) + "Press SPACE to restart!";
}

EVENT(oDeathScreen, Step_0) {
  if (keyboard_check_pressed(kKeySpace)) game_restart();
}

// A veil over the arena, so that the message is read, in the middle and in the font of the interface's titles.
EVENT(oDeathScreen, Draw_64) {
  const KeptDrawState kept;
  draw_set_colour(kVeilColour);
  draw_set_alpha(kVeilAlpha);
  draw_rectangle(0, 0, display_get_gui_width(), display_get_gui_height(), false);
  draw_set_alpha(1);
  draw_set_colour(kMessageColour);
  draw_set_font(fntTitle);
  draw_set_halign(fa_center);
  draw_set_valign(fa_middle);
  draw_text_transformed(display_get_gui_width() / 2, display_get_gui_height() / 2, self[text], 2, 2, 0);
}
