#pragma once
// What every walking enemy shares: keeping apart, the fading push of a hit, and the numbers of its bob.
#include "game/names.h"

namespace game {

// A step of everything that walks: its own velocity (pixels/s), the push of its neighbours and the fading impulse of a hit move it, and it
// bobs. Neighbours push away from closer than 64 px, with 1000 px/s when touching.
void walk(Instance self, Real move_x, Real move_y, Real dt);
// What the death of an enemy does: sometimes loot, always a kill. The caller goes.
void die_in_combat(Instance self);

}  // namespace game
