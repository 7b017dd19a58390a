#include "game/enemies/crowd.h"

#include "game/loot/pickups.h"
#include "game/support/spatial_hash.h"
#include "toolkit/support/motion.h"

namespace game {
namespace {
constexpr Real kSeparationRadius = 64;         // pixels: beyond it neighbours do not matter
constexpr Real kSeparationForce = 1000;        // pixels/s when touching, falling to 0 at the radius
constexpr Real kBobRate = 10, kBobHeight = 4;  // radians/s, pixels
constexpr Real kLootChance = 0.1;

struct Push {
  Real along_x, along_y;
};

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

// Below 1 px/s the impulse is gone.
void damp_knockback(Instance self, Real dt) {
  if (self[knockback_x] == 0 && self[knockback_y] == 0) return;
  const Real slowing = self[knockback_friction], decay = exp(-slowing * dt);
  self[knockback_x] *= decay;
  self[knockback_y] *= decay;
  if (point_distance(0, 0, self[knockback_x], self[knockback_y]) < 1) {
    self[knockback_x] = 0;
    self[knockback_y] = 0;
  }
}

}  // namespace

void walk(Instance self, Real move_x, Real move_y, Real dt) {
  const Push push = separation_from_neighbours(self);
  damp_knockback(self, dt);
  self[x] += (move_x + push.along_x + self[knockback_x]) * dt;
  self[y] += (move_y + push.along_y + self[knockback_y]) * dt;
  bob(self, dt, kBobRate, kBobHeight);
}

void die_in_combat(Instance self) {
  if (Chance(kLootChance)) createRandomPickup();
  global[statistics][kills] += 1;
  instance_destroy(self);
}

}  // namespace game
