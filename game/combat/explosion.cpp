// An explosion: one hit on everything in its radius, then a flash that grows and fades. The flash is not the radius of the hit.
#include "game/combat/damage.h"
#include "game/combat/names.h"
#include "game/decals/stickers.h"
#include "game/support/found.h"

namespace game {
namespace {

const Variable radius{"radius"}, expand_speed{"expand_speed"}, current_radius{"current_radius"}, max_radius{"max_radius"};
const Variable has_exploded{"has_exploded"};

constexpr int kAdditiveBlend = 1;
constexpr int kOrange = 0x40A0FF, kYellow = 65535;
constexpr Real kOuterAlpha = 0.5, kInnerAlpha = 0.3, kInnerShare = 0.7;

}  // namespace
}  // namespace game

METHOD(void, oExplosion, explode) {
  if (self[has_exploded]) return;
  self[has_exploded] = true;
  const FoundInstances found;
  collision_circle_list(self[x], self[y], self[radius], array_of(oParentEnemy, oPlayer), false, true, found.list, false);
  for (const auto& [place, target] : found) {
    // A blast spares its own side even where a shot would not: those whom anybody may hurt.
    if (!self[friendly_fire] && target[faction] == self[faction]) continue;
    target[takeDamage](self[damage], self[x], self[y], self[knockback]);
  }
  playSoundAt(sndExplosion, self[x], self[y]);
  if (variable_global_exists("decals")) {
    const Value floor_layer = global[decals];
    const Real across = random_range(1, 1.5), down = random_range(1, 1.5);
    floor_layer[Add](sprScorch, 0, self[x], self[y], across, down, random(360), self[image_blend]);
  }
}

EVENT(oExplosion, Create_0) {
  self[radius] = 80;
  self[damage] = 30;
  self[owner] = noone;
  self[expand_speed] = 400;
  self[current_radius] = 0;
  self[max_radius] = 80;
  self[lifetime] = 0.3;
  self[life_timer] = 0;
  self[has_exploded] = false;
  self[faction] = kNeutralFaction;
  self[friendly_fire] = false;
  self[knockback] = 0;
  self[explode] = bind(self, oExplosion_explode);
}

EVENT(oExplosion, Step_0) {
  self[life_timer] += global[dt_steady];
  if (self[life_timer] >= self[lifetime]) {
    instance_destroy();
    return;
  }
  self[current_radius] = lerp(0, self[max_radius], self[life_timer] / self[lifetime]);
}

EVENT(oExplosion, Draw_0) {
  const Real fading = 1 - self[life_timer] / self[lifetime];
  const Value blend_before = gpu_get_blendmode();
  gpu_set_blendmode(kAdditiveBlend);  // light: it brightens what lies under it and hides nothing
  draw_set_alpha(fading * kOuterAlpha);
  draw_set_colour(kOrange);
  draw_circle(self[x], self[y], self[current_radius], false);
  draw_set_alpha(fading * kInnerAlpha);
  draw_set_colour(kYellow);
  draw_circle(self[x], self[y], self[current_radius] * kInnerShare, false);
  draw_set_alpha(1);
  gpu_set_blendmode(blend_before);
}
