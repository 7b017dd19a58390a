#pragma once
// Who may hurt whom, what a hit sheds, and where it is heard.
#include "game/names.h"

namespace game {

extern const Script<Value(Value attacker_faction, Value target_faction, Value may_hurt_friends)> canDamageTarget;
// A droplet that flies off and settles; red unless a colour is given. Pixels/s and degrees. Where too many fly already it is left out.
extern const Script<void(Value at_x, Value at_y, Value launch_speed, Value towards, Value colour)> createBlood;
// Plays at a position of the room and gives the handle. `distances`, when given, is the reference distance in place of the usual one.
extern const Script<Value(Value sound, Value at_x, Value at_y, Value distances)> playSoundAt;

// What an attack carries: its damage, and what is its maker's: whose it is and for which side, whether it hurts friends, and how far it
// pushes (pixels/s).
void hand_over_attack(Instance from, Instance attack, const Value& with_damage);

// How many droplets a hit sheds: the whole part of `wanted`, but at least one, and no more than could ever fly.
Real droplets_of(Real wanted);

// Plays with a pitch a little off, so that repeated sounds do not drone.
Value play_varied(const Value& handle);

}  // namespace game
