// The boss: it circles the player at a changing range and shoots with a copy of the player's own gun.
#include "game/combat/names.h"
#include "game/enemies/crowd.h"
#include "toolkit/support/motion.h"

namespace game {
namespace {

const Variable strafe_direction{"strafe_direction"}, strafe_timer{"strafe_timer"}, strafe_interval{"strafe_interval"};
const Variable target_distance{"target_distance"}, distance_timer{"distance_timer"}, distance_interval{"distance_interval"};
const Variable strafe_speed{"strafe_speed"}, approach_speed{"approach_speed"}, min_distance{"min_distance"}, max_distance{"max_distance"};
const Variable shoot_cooldown{"shoot_cooldown"}, shoot_interval{"shoot_interval"}, shoot_timer{"shoot_timer"};
const Variable copyPlayerWeapon{"copyPlayerWeapon"};

constexpr int kDarkGrey = 4210752;
constexpr Real kStrafeShortest = 2, kStrafeLongest = 8;      // s on one side of the player
constexpr Real kDistanceShortest = 1, kDistanceLongest = 6;  // s at one range
constexpr Real kDeadBand = 20;                               // pixels off the wanted range that do not matter
constexpr Real kSightInRanges = 4;                           // it shoots within so many times its greatest range

}  // namespace
}  // namespace game

METHOD(void, oEnemyBoss, onDeath) { die_in_combat(self); }

// Without a player, or with a player without a gun, its gun stays as it is.
METHOD(void, oEnemyBoss, copyPlayerWeapon) {
  if (!instance_exists(oPlayer) || !instance_exists(oPlayer[gun])) return;
  const Value copied = oPlayer[gun];
  self[gun][setStats](copied[getStats]());
  self[gun][faction] = kEnemyFaction;
  self[gun][friendly_fire] = true;
}

EVENT(oEnemyBoss, Create_0) {
  event_inherited();
  self[max_hp] = 1000;
  self[hp] = self[max_hp];
  self[blood_color] = c_red;
  self[image_blend] = kDarkGrey;
  self[onDeath] = bind(self, oEnemyBoss_onDeath);
  self[gun] = instance_create_layer(self[x], self[y], "layMobs", oGun);
  self[gun][owner] = self[id];
  self[copyPlayerWeapon] = bind(self, oEnemyBoss_copyPlayerWeapon);
  self[copyPlayerWeapon]();
  self[strafe_direction] = 1;   // 1 or -1
  self[strafe_timer] = 0;       // s since it last changed sides
  self[strafe_interval] = 3;    // s until it changes sides
  self[target_distance] = 200;  // pixels
  self[distance_timer] = 0;     // s since it last chose a range
  self[distance_interval] = 4;  // s until it chooses another
  self[strafe_speed] = 350;     // pixels/s
  self[approach_speed] = 300;   // pixels/s
  self[min_distance] = 200;     // pixels
  self[max_distance] = 400;     // pixels
  self[shoot_cooldown] = 0.1;   // s, the wind-up
  self[shoot_interval] = 0.5;   // s
  self[shoot_timer] = self[shoot_interval];
}

EVENT(oEnemyBoss, Step_0) {
  const Real dt = global[dt_steady];

  // Changes of mind
  self[strafe_timer] += dt;
  self[distance_timer] += dt;
  if (self[strafe_timer] >= self[strafe_interval]) {
    self[strafe_timer] = 0;
    self[strafe_direction] = -self[strafe_direction];
    self[strafe_interval] = random_range(kStrafeShortest, kStrafeLongest);
  }
  if (self[distance_timer] >= self[distance_interval]) {
    self[distance_timer] = 0;
    self[target_distance] = random_range(self[min_distance], self[max_distance]);
    self[distance_interval] = random_range(kDistanceShortest, kDistanceLongest);
  }

  // Around the player, closing in or backing off
  const Real dir = point_direction(self[x], self[y], oPlayer[x], oPlayer[y]);
  const Real dist = point_distance(self[x], self[y], oPlayer[x], oPlayer[y]);
  const Real strafe_dir = dir + 90 * self[strafe_direction];
  const Real dist_error = dist - self[target_distance];
  Real approach_dir = 0, approach_spd = 0;
  if (abs(dist_error) > kDeadBand) {
    approach_dir = dist_error > 0 ? dir : dir + 180;
    approach_spd = self[approach_speed];
  }
  const Real move_x = lengthdir_x(self[strafe_speed], strafe_dir) + lengthdir_x(approach_spd, approach_dir);
  const Real move_y = lengthdir_y(self[strafe_speed], strafe_dir) + lengthdir_y(approach_spd, approach_dir);
  walk(self, move_x, move_y, dt);
  self[image_angle] = point_direction(self[x], self[y], oPlayer[x], oPlayer[y]);

  // One pull of the trigger each time the countdown has passed the wind-up; it aims at where the player was a step ago
  if (!instance_exists(self[gun]) || !instance_exists(oPlayer)) return;
  self[shoot_timer] -= dt;
  const Instance carried = self[gun];
  carried[image_angle] = point_direction(carried[x], carried[y], oPlayer[xprevious], oPlayer[yprevious]);
  carried[is_firing] = false;
  if (distance_to_object(oPlayer) >= self[max_distance] * kSightInRanges) return;
  if (self[shoot_timer] <= 0 && self[shoot_timer] <= -self[shoot_cooldown]) {
    self[shoot_timer] = self[shoot_interval];
    carried[is_firing] = true;
  }
}
