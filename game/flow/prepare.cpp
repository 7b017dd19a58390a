// The preparation room, which is the title, too: a gun in hand, a first modifier on the floor, and the way into the arena.
#include "game/combat/names.h"
#include "game/loot/modifier.h"
#include "game/loot/pickups.h"
#include "toolkit/support/drawing.h"
#include "toolkit/support/resolution.h"

namespace game {
namespace {

const Variable start_timer{"start_timer"}, start_timer_on{"start_timer_on"}, pistol{"pistol"}, update{"update"};

constexpr int kAnyKey = 1, kKeyEscape = 27;
constexpr Real kCountdown = 60;  // seconds
constexpr Real kStartVolume = 0.25;
constexpr Real kPickupBeside = 96;                              // pixels from the player: within reach
constexpr int kTitleColour = 0x60C8FF, kTextColour = 0xE8E0D8;  // amber, pale

void write(Real from_top, Real scale, int colour, const Value& text) {
  draw_set_colour(colour);
  draw_text_transformed(display_get_gui_width() / 2, display_get_gui_height() * from_top, text, scale, scale, 0);
}

}  // namespace
}  // namespace game

EVENT(oPrepare1, Create_0) {
  self[start_timer] = kCountdown;
  self[start_timer_on] = false;
}

// Everything stands in the room: the player takes the pistol into the hand, the first modifier lies beside.
EVENT(oPrepare1, Other_4) {
  const Value offer = createGunPickup(oPlayer[x], oPlayer[y], global[weapons][pistol]);
  oPlayer[takeGun](offer);
  createModifierPickup(oPlayer[x] + kPickupBeside, oPlayer[y], randomModifierOf("passive"));
}

EVENT(oPrepare1, Step_0) {
  getTarnResolutionManager()[update]();
  getTarnResolutionManager()[fitRoom]();
  if (!instance_exists(oModifierPickup) && !self[start_timer_on]) self[start_timer_on] = true;
  if (self[start_timer_on]) {
    self[start_timer] -= global[dt_steady];
    if (self[start_timer] <= 0) {
      audio_play_sound(sndStart, 1, false, kStartVolume);
      room_goto(rArena);
    }
  }
  if (keyboard_check_pressed(kAnyKey) && !keyboard_check_pressed(kKeyEscape)) room_goto(rArena);
}

EVENT(oPrepare1, Draw_64) {
  const KeptDrawState kept;
  draw_set_font(fntTitle);
  draw_set_halign(fa_center);
  draw_set_valign(fa_middle);
  write(0.16, 4, kTitleColour, "ARENA");
  draw_set_font(fntUi);
  const auto key = [](int code) { return keyboard_key_name(code); };  // as the player's own layout names the place
  write(0.72, 1, kTextColour,
        string_of("{0} {1} {2} {3}  move      Shift  dash      Mouse  aim and fire", key('W'), key('A'), key('S'), key('D')));
  write(0.77, 1, kTextColour, string_of("{0}  pick up      {1}  drop gun      Esc  quit", key('E'), key('Q')));
  const Value call = self[start_timer_on] ? string_of("The arena opens in {0} s", ceil(self[start_timer])) : Value("Press any key");
  write(0.88, 1.25, kTitleColour, call);
}

EVENT(oPrepare1, KeyPress_27) { game_end(); }
