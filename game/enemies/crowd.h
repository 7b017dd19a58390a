#pragma once
// What every walking enemy shares: keeping apart, the fading push of a hit, and the numbers of its bob.
#include "game/names.h"

namespace arena::game {

// Where the neighbours push the calling enemy, in pixels a second: the sum over all closer than 64 px, 1000 when touching.
struct Push {
  Real along_x, along_y;
};
Push separation_from_neighbours(Instance self);
// The impulse of a hit dies away; below 1 px/s it is gone.
void damp_knockback(Instance self, Real dt);
constexpr Real kWalkBobRate = 10;   // radians/s
constexpr Real kWalkBobHeight = 4;  // pixels

}  // namespace arena::game
