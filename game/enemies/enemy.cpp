// The ordinary enemy: it walks straight at the player and keeps apart from its like.
#include "game/combat/names.h"
#include "game/enemies/crowd.h"

namespace game {
namespace {
constexpr Real kWalkSpeed = 100;  // pixels/s
constexpr int kDarkGreen = 32768;
}  // namespace
}  // namespace game

METHOD(void, oEnemy, onDeath) { die_in_combat(self); }

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
  walk(self, move_x, move_y, dt);
  self[image_angle] = dir;
}
