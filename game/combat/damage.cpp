#include "game/combat/damage.h"

#include "game/combat/names.h"
#include "game/support/warnings.h"

namespace game {
namespace {
const Variable warned_of_droplets{"warned_of_droplets"};
constexpr int kMostDroplets = 20000;  // alive at once: each is an instance with a Step of its own
}  // namespace

// One more than fit, so that the last one is missed.
Real droplets_of(Real wanted) { return min(floor(max(1, wanted)), kMostDroplets + 1); }

void hand_over_attack(Instance from, Instance attack, const Value& with_damage) {
  attack[damage] = with_damage;
  for (const Variable* field : {&owner, &faction, &friendly_fire, &knockback}) attack[*field] = from[*field];
}

Value play_varied(const Value& handle) {
  if (audio_exists(handle)) audio_sound_pitch(handle, random_range(0.8, 1.2));
  return handle;
}
}  // namespace game

SCRIPT(canDamageTarget, Value attacker_faction, Value target_faction, Value may_hurt_friends) {
  if (target_faction == kVulnerableFaction) return true;
  if (attacker_faction != target_faction) return true;
  return may_hurt_friends;
}

SCRIPT(createBlood, Value at_x, Value at_y, Value launch_speed, Value towards, Value colour) {
  if (instance_number(oBlood) >= kMostDroplets) {
    warn_once(warned_of_droplets, "20000 droplets of blood fly already: more are left out");
    return;
  }
  const Instance droplet = instance_create_layer(at_x, at_y, "layBlood", oBlood);
  droplet[h_speed] = checked::lengthdir_x(launch_speed, towards);
  droplet[v_speed] = checked::lengthdir_y(launch_speed, towards);
  droplet[image_blend] = is_undefined(colour) ? c_red : colour;
}

SCRIPT(playSoundAt, Value sound, Value at_x, Value at_y, Value distances) {
  const Value reference = is_undefined(distances) ? Value(global[snd_Ref]) : distances;
  return audio_play_sound_at(sound, at_x, at_y, 0, reference, global[snd_Max], 1, false, 0);
}
