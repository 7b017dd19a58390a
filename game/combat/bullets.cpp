// Bullets: what all share, and the projectile, which is spent on the first enemy or player it touches.
#include "game/combat/damage.h"
#include "game/combat/names.h"

EVENT(oBullet, Create_0) {
  self[h_speed] = 0;
  self[v_speed] = 0;
  self[damage] = 1;
  self[lifetime] = 2;
  self[life_timer] = 0;
  self[knockback] = 0;
  self[owner] = noone;
  self[faction] = kNeutralFaction;
  self[friendly_fire] = false;
}

EVENT(oBulletProjectile, Create_0) { event_inherited(); }

EVENT(oBulletProjectile, Step_0) {
  const Real dt = global[dt_steady];
  self[life_timer] += dt;
  if (self[life_timer] >= self[lifetime]) {
    instance_destroy();
    return;
  }
  self[x] += self[h_speed] * dt;
  self[y] += self[v_speed] * dt;
  if (self[h_speed] != 0 || self[v_speed] != 0) self[image_angle] = point_direction(0, 0, self[h_speed], self[v_speed]);
}

namespace game {
namespace {

// The push comes from where the bullet was fired. The bullet is spent even on whom it may not hurt.
void hit(Instance self, Instance struck) {
  if (canDamageTarget(self[faction], struck[faction], self[friendly_fire])) {
    struck[takeDamage](self[damage], self[xstart], self[ystart], self[knockback]);
  }
  instance_destroy();
}

}  // namespace
}  // namespace game

EVENT(oBulletProjectile, Collision_oParentEnemy) { hit(self, other); }
EVENT(oBulletProjectile, Collision_oPlayer) { hit(self, other); }
