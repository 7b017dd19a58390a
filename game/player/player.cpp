// The player: walking with friction, the dash, the carried gun, hits and death. Pixels and seconds.
#include "game/combat/damage.h"
#include "game/combat/names.h"
#include "game/loot/pickups.h"
#include "game/player/death_screen.h"
#include "game/support/found.h"
#include "toolkit/support/motion.h"

namespace game {
namespace {

const Variable invulnerable{"invulnerable"}, invulnerable_timer{"invulnerable_timer"}, invulnerable_duration{"invulnerable_duration"};
const Variable is_dead{"is_dead"}, acceleration{"acceleration"}, dash_speed{"dash_speed"}, dash_duration{"dash_duration"};
const Variable dash_timer{"dash_timer"}, dash_dir_x{"dash_dir_x"}, dash_dir_y{"dash_dir_y"}, is_dashing{"is_dashing"};
const Variable dash_energy{"dash_energy"}, dash_energy_max{"dash_energy_max"}, dash_cost{"dash_cost"}, energy_regen{"energy_regen"};
const Variable startDash{"startDash"}, takeMod{"takeMod"}, pickupNearestItem{"pickupNearestItem"};
const Variable pickup_range{"pickup_range"}, isInteracting{"isInteracting"};

constexpr int kKeyShift = 16, kKeyA = 65, kKeyD = 68, kKeyE = 69, kKeyQ = 81, kKeyS = 83, kKeyW = 87;
constexpr int kMouseLeft = 1;
constexpr Real kThrowAhead = 64;  // pixels in front of the player where a dropped gun appears
constexpr Real kReach = 128;      // pixels within which E looks for pickups
constexpr Real kDashShield = 4;   // a dash protects for so many times its own length
constexpr Real kBobRate = 10;     // radians/s
constexpr Real kBobHeight = 4;    // pixels

bool interface_is_busy() {
  if (!variable_global_exists("game_ui")) return false;
  const Value interface = global[game_ui];
  return bool(interface[isInteracting]());
}

// One corner mark of the aim cursor, `turn` degrees around the pointer.
void draw_corner(Real size, Real turn) {
  draw_sprite_ext(sprCursor, 0, mouse_x + lengthdir_x(size, turn), mouse_y + lengthdir_y(size, turn), 1, 1, turn, c_white, 1);
}

}  // namespace
}  // namespace game

METHOD(void, oPlayer, takeDamage, Value amount, Value source_x, Value source_y, Value push) {
  const Value strength = is_undefined(push) ? Value(0) : push;
  if (self[invulnerable]) return;
  self[hp] -= amount;

  // Blood sprays away from the source; less of it as health runs low.
  const Real spray = point_direction(source_x, source_y, self[x], self[y]) - 15 + random(30);  // degrees, 15 to either side
  const Real spray_speed = random_range(1, 15);                                                // pixels a frame
  const Real drops = droplets_of(min(amount / 2, self[hp] / 10));
  for (Real i = 0; i < drops; i += 1) {
    const Real drop_x = self[x] - 16 + irandom(32), drop_y = self[y] - 16 + irandom(32);
    createBlood(drop_x, drop_y, spray_speed, spray);
  }
  if (strength > 0) {
    self[knockback_x] = lengthdir_x(strength, spray);
    self[knockback_y] = lengthdir_y(strength, spray);
  }
  self[invulnerable] = true;
  self[invulnerable_timer] = self[invulnerable_duration];
  self[image_blend] = c_red;
  self[alarm][0] = 5;
  if (self[hp] <= 0) {
    self[dropGun]();
    self[is_dead] = true;
    moment_mark("death");
    showDeathScreen();
  }
}

METHOD(void, oPlayer, startDash) {
  if (self[dash_timer] > 0) return;
  if (self[dash_energy] < self[dash_cost]) return;
  const Real speed_now = point_distance(0, 0, self[h_speed], self[v_speed]);
  if (speed_now > 0) {
    self[dash_dir_x] = self[h_speed] / speed_now;
    self[dash_dir_y] = self[v_speed] / speed_now;
  } else {
    const Real towards = point_direction(self[x], self[y], mouse_x, mouse_y);
    self[dash_dir_x] = lengthdir_x(1, towards);
    self[dash_dir_y] = lengthdir_y(1, towards);
  }
  self[dash_timer] = self[dash_duration];
  self[dash_energy] -= self[dash_cost];
  self[is_dashing] = true;
  self[invulnerable] = true;
  self[invulnerable_timer] = self[dash_duration] * kDashShield;
  self[image_alpha] = 0.5;
}

METHOD(void, oPlayer, dropGun) {
  if (!instance_exists(self[gun])) return;
  const Real ahead_x = lengthdir_x(kThrowAhead, self[image_angle]), ahead_y = lengthdir_y(kThrowAhead, self[image_angle]);
  const Value carried = self[gun];
  const Instance pickup = createGunPickup(self[x] + ahead_x, self[y] + ahead_y, carried[getStats]());
  pickup[h_speed] = ahead_x * random_range(9, 11);
  pickup[v_speed] = ahead_y * random_range(9, 11);
  instance_destroy(carried);
  self[gun] = noone;
  refresh_weapon_ui();
}

METHOD(void, oPlayer, takeGun, Value pickup) {
  if (pickup[weapon_stats] == noone) return;
  hand_over_gun(self, pickup);
  self[gun][rarity] = pickup[rarity];
  instance_destroy(pickup);
  refresh_weapon_ui();
}

METHOD(void, oPlayer, takeMod, Value pickup) {
  if (pickup[modifier] == noone) return;
  if (instance_exists(self[gun]) && self[gun][addModifier](pickup[modifier])) instance_destroy(pickup);
  refresh_weapon_ui();
}

METHOD(void, oPlayer, pickupNearestItem) {
  Value nearest = noone;
  Real nearest_dist = 999999;
  {
    const FoundInstances found;
    collision_circle_list(self[x], self[y], kReach, oPickup, false, true, found.list, false);
    for (const auto& [place, pickup] : found) {
      const Real d = point_distance(self[x], self[y], pickup[x], pickup[y]);
      if (d < nearest_dist && d <= pickup[pickup_range]) {
        nearest = pickup;
        nearest_dist = d;
      }
    }
  }
  if (nearest != noone) nearest[onPickup](self[id]);
}

EVENT(oPlayer, Create_0) {
  self[hp] = 100;
  self[max_hp] = 100;
  self[invulnerable] = false;
  self[invulnerable_timer] = 0;       // s left
  self[invulnerable_duration] = 0.5;  // s
  self[faction] = kPlayerFaction;
  self[is_dead] = false;
  self[move_speed] = 1200;    // pixels/s, the most
  self[acceleration] = 5000;  // pixels/s^2
  self[friction] = 8;         // 1/s: the share of the speed that is lost
  self[h_speed] = 0;
  self[v_speed] = 0;
  self[knockback_x] = 0;
  self[knockback_y] = 0;
  self[knockback_friction] = 6;    // 1/s
  self[dash_speed] = 900;          // pixels/s
  self[dash_duration] = 1.0 / 12;  // s
  self[dash_timer] = 0;            // s left
  self[dash_dir_x] = 0;
  self[dash_dir_y] = 0;
  self[is_dashing] = false;
  self[dash_energy] = 100;      // points
  self[dash_energy_max] = 100;  // points
  self[dash_cost] = 30;         // points
  self[energy_regen] = 30;      // points/s
  self[gun] = noone;
  self[bob_timer] = 0;
  self[image_y_offset] = 0;

  self[takeDamage] = bind(self, oPlayer_takeDamage);
  self[startDash] = bind(self, oPlayer_startDash);
  self[dropGun] = bind(self, oPlayer_dropGun);
  self[takeGun] = bind(self, oPlayer_takeGun);
  self[takeMod] = bind(self, oPlayer_takeMod);
  self[pickupNearestItem] = bind(self, oPlayer_pickupNearestItem);
}

EVENT(oPlayer, Step_0) {
  const Real dt = global[dt_steady];
  if (self[is_dead]) return;

  // Aim and trigger
  if (instance_exists(self[gun])) {
    const Instance carried = self[gun];
    carried[is_firing] = mouse_check_button(kMouseLeft) && !interface_is_busy();
    carried[image_angle] = point_direction(carried[x], carried[y], mouse_x, mouse_y);
  }

  // Invulnerability
  if (self[invulnerable]) {
    self[invulnerable_timer] -= dt;
    if (self[invulnerable_timer] <= 0) {
      self[invulnerable] = false;
      self[image_blend] = c_white;
      self[image_alpha] = 1;
    }
  }

  // Energy and dash
  if (!self[is_dashing] && self[dash_energy] < self[dash_energy_max]) {
    self[dash_energy] = min(self[dash_energy] + self[energy_regen] * dt, self[dash_energy_max]);
  }
  if (keyboard_check_pressed(kKeyShift)) self[startDash]();
  if (self[dash_timer] > 0) {
    self[h_speed] = self[dash_dir_x] * self[dash_speed];
    self[v_speed] = self[dash_dir_y] * self[dash_speed];
    self[dash_timer] -= dt;
    instance_create_layer(self[x], self[y], "layPlayer", oFader, struct_of({{sprite_index, self[sprite_index]}}));
    if (self[dash_timer] <= 0) {
      self[dash_timer] = 0;
      self[is_dashing] = false;
    }
  } else {
    // Walk: a diagonal is no faster than a straight line
    Real input_x = keyboard_check(kKeyD) - keyboard_check(kKeyA);
    Real input_y = keyboard_check(kKeyS) - keyboard_check(kKeyW);
    const Real len = point_distance(0, 0, input_x, input_y);
    if (len > 0) {
      input_x /= len;
      input_y /= len;
    }
    self[h_speed] += input_x * self[acceleration] * dt;
    self[v_speed] += input_y * self[acceleration] * dt;
    const Real kept = exp(-self[friction] * dt);
    self[h_speed] *= kept;
    self[v_speed] *= kept;
    const Real spd = point_distance(0, 0, self[h_speed], self[v_speed]);
    if (spd > self[move_speed]) {
      self[h_speed] = self[h_speed] / spd * self[move_speed];
      self[v_speed] = self[v_speed] / spd * self[move_speed];
    }
    if (input_x != 0 || input_y != 0) bob(self, dt, kBobRate, kBobHeight);
  }

  // Knockback, measured before this step's decay
  const Real push = point_distance(0, 0, self[knockback_x], self[knockback_y]);
  if (push > 0) {
    const Real slowing = self[knockback_friction], kept = exp(-slowing * dt);
    self[knockback_x] *= kept;
    self[knockback_y] *= kept;
    if (push < 1) {
      self[knockback_x] = 0;
      self[knockback_y] = 0;
    }
  }

  // Move
  self[x] += (self[h_speed] + self[knockback_x]) * dt;
  self[y] += (self[v_speed] + self[knockback_y]) * dt;
  self[image_angle] = point_direction(self[x], self[y], mouse_x, mouse_y);
  audio_listener_position(self[x], self[y], 0);

  // Hands
  if (keyboard_check_pressed(kKeyQ) && instance_exists(self[gun])) self[dropGun]();
  if (keyboard_check_pressed(kKeyE)) self[pickupNearestItem]();
}

EVENT(oPlayer, Collision_oParentEnemy) { self[takeDamage](other[damage], other[x], other[y]); }

EVENT(oPlayer, Draw_0) {
  draw_sprite_ext(self[sprite_index], self[image_index], self[x], self[y] + self[image_y_offset], self[image_xscale], self[image_yscale], 0,
                  self[image_blend], self[image_alpha]);
  if (!instance_exists(self[gun])) return;

  // The cursor's size shows where the shots may go at the pointer's distance
  const Instance carried = self[gun];
  Real spread = carried[bullet_spread];
  if (carried[bullet_count] > 1) spread += (carried[bullet_count] - 1) * carried[multishot_angle];
  const Real dist = point_distance(carried[x], carried[y], mouse_x, mouse_y);
  const Real size = max(10, dist * tan(degtorad(spread / 2)));
  for (const Real turn : {0, 90, 180, -90}) draw_corner(size, carried[image_angle] + turn);
}
