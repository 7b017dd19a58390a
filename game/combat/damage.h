#pragma once
// Who may hurt whom, what a hit sheds, and where it is heard.
#include "game/names.h"

namespace arena::game {

extern const Script<Value(Value attacker_faction, Value target_faction, Value may_hurt_friends)> canDamageTarget;
// A droplet that flies off and settles; red unless a colour is given. Pixels/s and degrees.
extern const Script<Value(Real at_x, Real at_y, Real launch_speed, Real towards, Value colour)> createBlood;
// Plays at a position of the room and gives the handle. `distances`, when given, is the reference distance in place of the usual one.
extern const Script<Value(Value sound, Real at_x, Real at_y, Value distances)> playSoundAt;

// Plays with a pitch a little off, so that repeated sounds do not drone.
Value play_varied(const Value& handle);

}  // namespace arena::game
