// The ordinary enemy: it walks straight at the player and keeps apart from its like.
#include "game/combat/names.h"
#include "game/enemies/crowd.h"
#include "game/support/motion.h"

namespace arena::game {
namespace {
const Variable blood_color{"blood_color"};
constexpr Real kWalkSpeed = 100;  // pixels/s
constexpr int kDarkGreen = 32768;
}  // namespace
}  // namespace arena::game

METHOD(oEnemy, onDeath) {
  global[statistics][kills] += 1;
  return instance_destroy();
}

EVENT(oEnemy, Create_0) {
  event_inherited();
  self[image_blend] = kDarkGreen;
  self[blood_color] = self[image_blend];
  self[onDeath] = bind(self, oEnemy_onDeath);
}

EVENT(oEnemy, Step_0) {
  const Real dt = global[dt_steady];
  const Real dir = point_direction(self[x], self[y], oPlayer[x], oPlayer[y]);
  const Real move_x = lengthdir_x(kWalkSpeed, dir), move_y = lengthdir_y(kWalkSpeed, dir);
  const Push push = separation_from_neighbours(self);
  damp_knockback(self, dt);
  self[x] += (move_x + push.along_x + self[knockback_x]) * dt;
  self[y] += (move_y + push.along_y + self[knockback_y]) * dt;
  bob(self, dt, kWalkBobRate, kWalkBobHeight);
  self[image_angle] = dir;
}
