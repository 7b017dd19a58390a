// What every enemy is: health, the impulse of a hit, and the way it is drawn with a bar above it once hurt.
#include "game/combat/damage.h"
#include "game/combat/names.h"

namespace game {
namespace {
constexpr Real kBarWidth = 32, kBarHeight = 4, kBarGap = 10;  // pixels
}  // namespace
}  // namespace game

METHOD(void, oParentEnemy, takeDamage, Value amount, Value from_x, Value from_y, Value push) {
  const auto or_zero = [](const Value& given) -> Real { return is_undefined(given) ? 0 : given; };
  const Real source_x = or_zero(from_x), source_y = or_zero(from_y), strength = or_zero(push);
  const Real hp_before = self[hp];
  self[hp] -= amount;

  // The direction is a single-precision number before its jitter.
  const Real away = static_cast<float>(point_direction(source_x, source_y, self[x], self[y]).number());
  const Real dir = away - 15 + random(30);
  const Real drops = droplets_of(min(amount / 2, hp_before));
  for (Real i = 0; i < drops; i += 1) {
    const Real drop_x = self[x] - 16 + irandom(32), drop_y = self[y] - 16 + irandom(32);
    const Real launch = random_range(100, 1500);
    createBlood(drop_x, drop_y, launch, dir - 15 + random(30), self[blood_color]);
  }
  if (strength > 0) {
    self[knockback_x] = lengthdir_x(strength, dir);
    self[knockback_y] = lengthdir_y(strength, dir);
  }
  play_varied(playSoundAt(sndHit, self[x], self[y]));
  if (self[hp] <= 0) self[onDeath]();
}

METHOD(void, oParentEnemy, onDeath) { instance_destroy(); }

EVENT(oParentEnemy, Create_0) {
  self[max_hp] = 100;
  self[hp] = self[max_hp];
  self[faction] = kEnemyFaction;
  self[move_speed] = 100;
  self[damage] = 10;
  self[blood_color] = self[image_blend];
  self[knockback_x] = 0;
  self[knockback_y] = 0;
  self[knockback_friction] = 5;
  self[gun] = noone;
  self[bob_timer] = 0;
  self[image_y_offset] = 0;
  self[takeDamage] = bind(self, oParentEnemy_takeDamage);
  self[onDeath] = bind(self, oParentEnemy_onDeath);
}

EVENT(oParentEnemy, Draw_0) {
  draw_sprite_ext(self[sprite_index], self[image_index], self[x], self[y] + self[image_y_offset], self[image_xscale], self[image_yscale], 0,
                  self[image_blend], self[image_alpha]);
  if (self[hp] >= self[max_hp]) return;

  const Real ratio = self[hp] / self[max_hp];
  const Real left = self[x] - kBarWidth / 2, top = self[y] - self[sprite_height] / 2 - kBarGap;
  draw_set_alpha(1);
  draw_set_colour(c_red);
  draw_rectangle(left, top, left + kBarWidth, top + kBarHeight, false);
  draw_set_colour(c_lime);
  draw_rectangle(left, top, left + kBarWidth * ratio, top + kBarHeight, false);
}
