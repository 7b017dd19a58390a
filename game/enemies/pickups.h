#pragma once
// Loot on the floor: guns and (later) modifiers, and the colours of rarity.
#include "game/combat/names.h"

namespace arena::game {

// The colour of a rarity from 1 to 6; grey for everything else.
extern const Script<Real(Value level)> getColorByRarity;
// Lays down a gun pickup that carries the definition, and gives its id.
extern const Script<Value(Value at_x, Value at_y, Value definition)> createGunPickup;

// Puts the gun that a pickup carries into somebody's hands; what was held is dropped first. The pickup stays.
void hand_over_gun(Instance taker, Instance pickup);
// Shows the weapon anew, where there is a controller that can.
void refresh_weapon_ui();

}  // namespace arena::game
