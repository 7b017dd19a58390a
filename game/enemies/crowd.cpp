#include "game/enemies/crowd.h"

#include "game/support/spatial_hash.h"

namespace arena::game {
namespace {
constexpr Real kSeparationRadius = 64;   // pixels: beyond it neighbours do not matter
constexpr Real kSeparationForce = 1000;  // pixels/s when touching, falling to 0 at the radius
}  // namespace

Push separation_from_neighbours(Instance self) {
  Push push{0, 0};
  const Real self_x = self[x], self_y = self[y];
  for (const Instance other : instances(grid_get_nearby(self_x, self_y))) {
    if (other == self) continue;
    const Real dx = self_x - other[x], dy = self_y - other[y];
    const Real d2 = dx * dx + dy * dy;
    if (d2 > 0 && d2 < kSeparationRadius * kSeparationRadius) {
      const Real dist = sqrt(d2);
      const Real force = (1 - dist / kSeparationRadius) * kSeparationForce;
      push.along_x += dx / dist * force;
      push.along_y += dy / dist * force;
    }
  }
  return push;
}

void damp_knockback(Instance self, Real dt) {
  if (self[knockback_x] == 0 && self[knockback_y] == 0) return;
  const Real decay = exp(-Real(self[knockback_friction]) * dt);
  self[knockback_x] *= decay;
  self[knockback_y] *= decay;
  if (point_distance(0, 0, self[knockback_x], self[knockback_y]) < 1) {
    self[knockback_x] = 0;
    self[knockback_y] = 0;
  }
}

}  // namespace arena::game
