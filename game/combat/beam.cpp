// The beam: a line that hits everything along it once, and is seen for a single frame.
#include "game/combat/damage.h"
#include "game/combat/names.h"
#include "game/support/found.h"

namespace game {
namespace {

const Variable beam_width{"beam_width"}, start_x{"start_x"}, start_y{"start_y"}, end_x{"end_x"}, end_y{"end_y"};
const Variable hit_recorded{"hit_recorded"};

// Each further target of the list takes four fifths of what the one before took: a beam through a queue of enemies is worth
// aiming for, and still kills the first of them first.
constexpr Real kFalloff = 1.25;
constexpr Real kGlowWidth = 3;                                 // times the width of the core
constexpr Real kGlowAlpha = 0.35;                              // a glow that enemies are seen through
constexpr int kGlowColour = 0xFFC850, kCoreColour = 0xFFF4E0;  // sky blue around white

}  // namespace
}  // namespace game

EVENT(oBulletBeam, Create_0) {
  event_inherited();
  self[beam_width] = 4;
  self[start_x] = self[x];
  self[start_y] = self[y];
  self[end_x] = self[x];
  self[end_y] = self[y];
  self[lifetime] = 0.01;
  self[hit_recorded] = false;
}

// A beam whose first Step is its last hits all the same. Targets are met by their masks, the nearest to the muzzle first.
EVENT(oBulletBeam, Step_0) {
  self[life_timer] += global[dt_steady];
  if (self[life_timer] >= self[lifetime]) instance_destroy();
  if (self[hit_recorded]) return;
  const FoundInstances found;
  collision_line_list(self[start_x], self[start_y], self[end_x], self[end_y], array_of(oParentEnemy, oPlayer), true, true, found.list,
                      true);
  for (const auto& [place, target] : found) {
    if (!canDamageTarget(self[faction], target[faction], self[friendly_fire])) continue;
    target[takeDamage](self[damage] / power(kFalloff, place), self[start_x], self[start_y], self[knockback]);
  }
  self[hit_recorded] = true;
}

EVENT(oBulletBeam, Draw_0) {
  draw_set_alpha(kGlowAlpha);
  draw_set_colour(kGlowColour);
  draw_line_width(self[start_x], self[start_y], self[end_x], self[end_y], self[beam_width] * kGlowWidth);
  draw_set_alpha(1);
  draw_set_colour(kCoreColour);
  draw_line_width(self[start_x], self[start_y], self[end_x], self[end_y], self[beam_width]);
}
