// The grenade: it slides, spins, stops, and explodes when its fuse has burnt. Only its explosion hurts.
#include "game/combat/damage.h"
#include "game/combat/names.h"

namespace game {
namespace {

const Variable has_stopped{"has_stopped"}, rotation_multiplier{"rotation_multiplier"}, radius{"radius"};
constexpr Real kStopSpeed = 10;  // pixels/s
constexpr Real kSpin = 2;        // at most so many degrees a second for each pixel/s, either way

}  // namespace
}  // namespace game

METHOD(void, oBulletGrenade, explode) {
  const Instance blast = instance_create_layer(self[x], self[y], "layBullets", oExplosion);
  blast[radius] = self[explosion_radius];
  hand_over_attack(self, blast, self[explosion_damage]);
  blast[explode]();
  instance_destroy();
}

EVENT(oBulletGrenade, Create_0) {
  event_inherited();
  self[grenade_lifetime] = 2;
  self[explosion_radius] = 80;
  self[explosion_damage] = 30;
  self[has_stopped] = false;
  self[friction] = random_range(2.5, 5);
  self[rotation_multiplier] = random_range(-1, 1) * kSpin;
  self[explode] = bind(self, oBulletGrenade_explode);
}

EVENT(oBulletGrenade, Step_0) {
  const Real dt = global[dt_steady];
  self[life_timer] += dt;
  if (self[life_timer] >= self[grenade_lifetime]) {
    self[explode]();
    return;
  }
  if (!self[has_stopped]) {
    const Real decay = exp(-self[friction] * dt);
    self[h_speed] *= decay;
    self[v_speed] *= decay;
    if (point_distance(0, 0, self[h_speed], self[v_speed]) < kStopSpeed) {
      self[has_stopped] = true;
      self[h_speed] = 0;
      self[v_speed] = 0;
    }
  }
  self[x] += self[h_speed] * dt;
  self[y] += self[v_speed] * dt;
  self[image_angle] += self[rotation_multiplier] * point_distance(0, 0, self[h_speed], self[v_speed]) * dt;
}
