#pragma once
// Loot on the floor: guns and modifiers, and the colours of rarity.
#include <functional>

#include "game/combat/names.h"

namespace game {

inline const Variable pickup_hint{"pickup_hint"}, bob_speed{"bob_speed"}, bob_height{"bob_height"};

// The colour of a rarity from 1 to 6; grey for everything else.
extern const Script<Real(Value level)> getColorByRarity;
// Lays down a gun pickup that carries the definition, and gives its id.
extern const Script<Value(Value at_x, Value at_y, Value definition)> createGunPickup;

// Lays down a modifier pickup and gives its id.
extern const Script<Value(Value at_x, Value at_y, Value carried)> createModifierPickup;
// Lays down one of the ten modifiers where the caller stands.
extern const Script<Value()> createRandomPickup;

// What every pickup draws: highlighted with disc, halo and hint, otherwise its picture alone.
void draw_pickup(Instance self, const std::function<void()>& picture);

// Puts the gun that a pickup carries into somebody's hands; what was held is dropped first. The pickup stays.
void hand_over_gun(Instance taker, Instance pickup);
// Shows the weapon anew, where there is a controller that can.
void refresh_weapon_ui();

}  // namespace game
