// A droplet of blood: it flies off, slows down, plays its strip once and, when it has settled, stays on the floor as a decal.
#include "game/combat/damage.h"
#include "game/combat/names.h"
#include "game/decals/stickers.h"

namespace game {
namespace {
const Variable anim_timer{"anim_timer"}, frame_duration{"frame_duration"}, anim_loop{"anim_loop"};
constexpr Real kSettledSpeed = 5;  // pixels/s
constexpr int kSplatPictures = 6;  // of each splat sprite
}  // namespace
}  // namespace game

EVENT(oBlood, Create_0) {
  self[h_speed] = 0;
  self[v_speed] = 0;
  self[friction] = 4;
  self[image_speed] = 0;
  self[anim_timer] = 0;
  self[frame_duration] = 0.05;
  self[anim_loop] = false;
}

EVENT(oBlood, Step_0) {
  const Value floor_layer = variable_global_exists("decals") ? Value(global[decals]) : Value();  // a room may do without
  const Real dt = global[dt_steady];
  const Real decay = exp(-self[friction] * dt);
  self[h_speed] *= decay;
  self[v_speed] *= decay;
  self[x] += self[h_speed] * dt;
  self[y] += self[v_speed] * dt;

  const Real last_frame = self[image_number] - 1;
  if (self[image_index] < last_frame) {
    self[anim_timer] += dt;
    if (self[anim_timer] >= self[frame_duration]) {
      self[anim_timer] -= self[frame_duration];
      const Real next = floor(self[image_index] + 1);
      self[image_index] = next <= last_frame ? next : self[anim_loop] ? 0 : last_frame;
    }
  }

  if (self[image_index] == last_frame && point_distance(0, 0, self[h_speed], self[v_speed]) < kSettledSpeed) {
    if (!is_undefined(floor_layer)) {
      const Value splat = choose(sprSplatSmall, sprSplatWide, sprSplatLarge);  // before its picture: arguments have no order
      const Real picture = irandom(kSplatPictures - 1);
      floor_layer[Add](splat, picture, self[x], self[y], 1, 1, self[image_angle], self[image_blend]);
    }
    play_varied(playSoundAt(choose(sndSplatOne, sndSplatTwo), self[x], self[y]));
    instance_destroy();
  } else if (self[h_speed] != 0 || self[v_speed] != 0) {
    self[image_angle] = point_direction(0, 0, self[h_speed], self[v_speed]);
  }
}
