#pragma once
// The panels of a fight: waves, the player's bars, the weapon with its slots.
#include "toolkit/ui/ui.h"

namespace game {

inline const Variable ui_waves{"ui_waves"}, ui_player_hud{"ui_player_hud"}, ui_weapon{"ui_weapon"}, ui_hpbar{"ui_hpbar"},
    ui_energybar{"ui_energybar"};

// Makes the interface and its panels: the globals game_ui, ui_waves, ui_player_hud, ui_weapon, ui_hpbar and ui_energybar.
void build_hud();
// The weapon panel anew: the weapon's picture and a box for each slot, with the modifier in it. Empty where there is no weapon.
void rebuild_weapon_panel();

}  // namespace game
