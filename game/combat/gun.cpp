// A gun in somebody's hand: it follows its owner, keeps its statistics and modifier slots, and fires while is_firing is set.
#include "game/combat/damage.h"
#include "game/combat/weapon.h"
#include "game/support/camera.h"
#include "game/support/warnings.h"
#include "toolkit/support/drawing.h"

namespace game {
namespace {

const Variable offset_distance{"offset_distance"}, offset_angle_offset{"offset_angle_offset"}, follow_speed{"follow_speed"};
const Variable muzzle_distance{"muzzle_distance"}, flash_time{"flash_time"};
const Variable warned_of_bullets{"warned_of_bullets"};
const Variable start_x{"start_x"}, start_y{"start_y"}, end_x{"end_x"}, end_y{"end_y"};

constexpr Real kShakePixels = 6, kShakeSeconds = 0.1;  // each shot is felt, a volley does not blur
constexpr Real kFlashRadius = 9;                       // pixels: seen, but smaller than the gun
constexpr int kFlashColour = 0x80E8FF;                 // warm white
constexpr Real kGrenadeThrow = 0.25;                   // of the bullet speed
constexpr Real kMostBullets = 1000;                    // in one shot: three for each degree around
constexpr Real kShotPriority = 5;                      // above blood (0), below music

struct Statistic {
  const Variable& current;
  const Variable& base;
};
// Every statistic that a shot uses, with the base it starts from.
const Statistic kStatistics[] = {
    {bullet_damage, base_damage},
    {bullet_speed, base_speed},
    {fire_rate, base_fire_rate},
    {bullet_spread, base_spread},
    {bullet_type, base_bullet_type},
    {knockback, base_knockback},
    {grenade_lifetime, base_grenade_lifetime},
    {explosion_radius, base_explosion_radius},
    {explosion_damage, base_explosion_damage},
    {bullet_count, base_bullet_count},
    {multishot_angle, base_multishot_angle},
};
// What a definition hands over; a gun's base_knockback is its own.
const Variable* const kDefinitionFields[] = {&rarity,
                                             &base_damage,
                                             &base_speed,
                                             &base_fire_rate,
                                             &base_spread,
                                             &base_bullet_type,
                                             &base_bullet_count,
                                             &base_multishot_angle,
                                             &base_grenade_lifetime,
                                             &base_explosion_radius,
                                             &base_explosion_damage,
                                             &max_slots};

bool has(const Value& stats, const Variable& field) { return variable_struct_exists(stats, field.text); }

}  // namespace
}  // namespace game

METHOD(void, oGun, applyModifiers) {
  for (const Statistic& each : kStatistics) self[each.current] = self[each.base];
  const Value slots = self[modifiers];
  for (const Value& slot : elements(slots)) {
    if (slot == noone) continue;
    self[bullet_damage] *= slot[damage_mult];
    self[bullet_speed] *= slot[speed_mult];
    self[fire_rate] *= slot[fire_rate_mult];
    self[bullet_spread] += slot[spread_add];
    self[knockback] += slot[knockback_force];
    if (slot[bullet_type_override] != -1) self[bullet_type] = slot[bullet_type_override];
    self[bullet_count] += slot[multishot_add];
    // Only a modifier that adds bullets has a say in their fan: the others merely carry the default angle.
    if (slot[multishot_add] > 0) self[multishot_angle] = slot[multishot_angle];
    self[grenade_lifetime] *= slot[grenade_lifetime_mult];
    self[explosion_radius] *= slot[explosion_radius_mult];
    self[explosion_damage] *= slot[explosion_damage_mult];
  }
}

METHOD(Value, oGun, addModifier, Value added) {
  const Real slots = array_length(self[modifiers]);
  for (Real i = 0; i < slots; i += 1) {
    if (self[modifiers][i] != noone) continue;
    self[modifiers][i] = added;
    self[applyModifiers]();
    return true;
  }
  return false;
}

METHOD(void, oGun, removeModifier, Value index) {
  if (index >= 0 && index < array_length(self[modifiers])) {
    self[modifiers][index] = noone;
    self[applyModifiers]();
  }
}

METHOD(void, oGun, clearModifiers) {
  const Real slots = array_length(self[modifiers]);
  for (Real i = 0; i < slots; i += 1) self[modifiers][i] = noone;
  self[applyModifiers]();
}

METHOD(Value, oGun, getStats) {
  const Value slots = array_create(self[max_slots], noone);
  Value carried = slots;
  for (Real i = 0; i < min(self[max_slots], array_length(self[modifiers])); i += 1) carried[i] = self[modifiers][i];
  const auto text_or = [&](const Variable& field, const Value& otherwise) {
    return variable_instance_exists(self, field.text) ? Value(self[field]) : otherwise;
  };
  return struct_of({{name, text_or(name, "")},
                    {description, text_or(description, "")},
                    {icon, text_or(icon, -1)},
                    {rarity, self[rarity]},
                    {base_damage, self[base_damage]},
                    {base_speed, self[base_speed]},
                    {base_fire_rate, self[base_fire_rate]},
                    {base_spread, self[base_spread]},
                    {base_bullet_type, self[base_bullet_type]},
                    {base_bullet_count, self[base_bullet_count]},
                    {base_multishot_angle, self[base_multishot_angle]},
                    {base_grenade_lifetime, self[base_grenade_lifetime]},
                    {base_explosion_radius, self[base_explosion_radius]},
                    {base_explosion_damage, self[base_explosion_damage]},
                    {faction, self[faction]},
                    {friendly_fire, self[friendly_fire]},
                    {max_slots, self[max_slots]},
                    {modifiers, carried}});
}

METHOD(void, oGun, setStats, Value stats) {
  for (const Variable* field : {&name, &description, &faction, &friendly_fire}) {
    if (has(stats, *field)) self[*field] = stats[*field];
  }
  if (has(stats, icon)) {
    self[icon] = stats[icon];
    self[sprite_index] = stats[icon];
  }
  for (const Variable* field : kDefinitionFields) {
    if (has(stats, *field)) self[*field] = stats[*field];
  }
  self[weapon_stats] = stats;
  self[gun_picture] = weapon_picture(stats);
  Value slots = array_create(self[max_slots], noone);
  const Value given = stats[modifiers];
  for (Real i = 0; i < min(self[max_slots], array_length(given)); i += 1) slots[i] = given[i];
  self[modifiers] = slots;
  self[applyModifiers]();
}

// The flash is marked here, painted by the gun's Draw in the same frame, and over when the next one begins.
METHOD(Value, oGun, createMuzzleFlash) { return self[flash_time] = 1, undefined; }

namespace game {
namespace {

void launch(Instance bullet, Real pixels_per_second, Real angle) {
  bullet[h_speed] = lengthdir_x(pixels_per_second, angle);
  bullet[v_speed] = lengthdir_y(pixels_per_second, angle);
}

// One bullet of the gun's kind, and the sound that it leaves with.
Value shoot(Instance self, Real muzzle_x, Real muzzle_y, Real angle) {
  if (self[bullet_type] == kProjectile) {
    const Instance bullet = instance_create_layer(muzzle_x, muzzle_y, "layBullets", oBulletProjectile);
    hand_over_attack(self, bullet, self[bullet_damage]);
    launch(bullet, self[bullet_speed], angle);
    bullet[lifetime] = self[bullet_lifetime];
    bullet[image_angle] = angle;
    return audio_play_sound(sndShot, kShotPriority, false);
  }
  if (self[bullet_type] == kBeam) {
    const Instance beam = instance_create_layer(muzzle_x, muzzle_y, "layBullets", oBulletBeam);
    hand_over_attack(self, beam, self[bullet_damage]);
    beam[direction] = angle;
    beam[start_x] = muzzle_x;
    beam[start_y] = muzzle_y;
    beam[end_x] = self[x] + lengthdir_x(self[beam_length], angle);
    beam[end_y] = self[y] + lengthdir_y(self[beam_length], angle);
    return audio_play_sound(sndBeam, kShotPriority, false);
  }
  if (self[bullet_type] == kGrenade) {
    const Instance grenade = instance_create_layer(muzzle_x, muzzle_y, "layBullets", oBulletGrenade);
    hand_over_attack(self, grenade, self[bullet_damage]);
    launch(grenade, self[bullet_speed] * kGrenadeThrow, angle);
    grenade[lifetime] = self[bullet_lifetime];
    for (const Variable* field : {&explosion_radius, &explosion_damage, &grenade_lifetime}) grenade[*field] = self[*field];
    return audio_play_sound(sndShot, kShotPriority, false);
  }
  return -1;  // a kind that nobody knows makes no bullet
}

}  // namespace
}  // namespace game

METHOD(Value, oGun, fireWeapon) {
  self[applyModifiers]();
  if (self[bullet_type] < 0) return false;
  const Real aim = self[image_angle];
  const Real muzzle_x = self[x] + lengthdir_x(self[muzzle_distance], aim);
  const Real muzzle_y = self[y] + lengthdir_y(self[muzzle_distance], aim);
  const Real fan = self[multishot_angle], spread = self[bullet_spread];
  const Real first_angle = aim - (self[bullet_count] - 1) * fan / 2;
  if (self[bullet_count] > kMostBullets) warn_once(warned_of_bullets, "a shot has at most 1000 bullets: the rest stay in the gun");
  for (Real i = 0; i < min(self[bullet_count], kMostBullets); i += 1) {
    play_varied(shoot(self, muzzle_x, muzzle_y, first_angle + i * fan + random_range(-spread, spread)));
  }
  self[createMuzzleFlash]();
  return true;
}

EVENT(oGun, Create_0) {
  self[offset_distance] = 40;
  self[offset_angle_offset] = -70;
  self[follow_speed] = 40;
  self[muzzle_distance] = 30;
  self[rarity] = -1;
  self[owner] = noone;
  self[faction] = kNeutralFaction;
  self[friendly_fire] = false;
  self[base_damage] = 10;
  self[base_speed] = 500;
  self[base_fire_rate] = 0.15;
  self[base_spread] = 5;
  self[base_bullet_type] = -1;
  self[base_knockback] = 0;
  self[base_grenade_lifetime] = 2;
  self[base_explosion_radius] = 80;
  self[base_explosion_damage] = 30;
  self[base_bullet_count] = 1;
  self[base_multishot_angle] = 10;
  for (const Statistic& each : kStatistics) self[each.current] = self[each.base];
  self[fire_timer] = 0;
  self[is_firing] = false;
  self[bullet_lifetime] = 2;
  self[beam_length] = 1000;
  self[max_slots] = 1;
  self[modifiers] = array_create(self[max_slots], noone);
  self[flash_time] = 0;
  self[gun_picture] = 0;

  self[fireWeapon] = bind(self, oGun_fireWeapon);
  self[createMuzzleFlash] = bind(self, oGun_createMuzzleFlash);
  self[applyModifiers] = bind(self, oGun_applyModifiers);
  self[addModifier] = bind(self, oGun_addModifier);
  self[removeModifier] = bind(self, oGun_removeModifier);
  self[clearModifiers] = bind(self, oGun_clearModifiers);
  self[getStats] = bind(self, oGun_getStats);
  self[setStats] = bind(self, oGun_setStats);
}

EVENT(oGun, Step_1) { self[flash_time] = 0; }

EVENT(oGun, Step_0) {
  const Real dt = global[dt_steady];
  const Value carrier = self[owner];
  if (!instance_exists(carrier)) {
    instance_destroy();
    return;
  }

  // Follow
  const Real angle = carrier[image_angle] + self[offset_angle_offset];
  const Real rest_x = carrier[x] + lengthdir_x(self[offset_distance], angle);
  const Real rest_y = carrier[y] + lengthdir_y(self[offset_distance], angle);
  const Real follows = self[follow_speed], closer = 1 - exp(-follows * dt);
  self[x] = lerp(self[x], rest_x, closer);
  self[y] = lerp(self[y], rest_y, closer);

  // Fire. Time overshooting below zero is discarded.
  self[fire_timer] -= dt;
  if (self[is_firing] && self[fire_timer] <= 0) {
    if (self[fireWeapon]()) getTarnCamera()[applyShake](kShakePixels, kShakeSeconds);
    self[fire_timer] = self[fire_rate];
  }
}

// A carried gun is seen in its rarity's colour; it is drawn upside up whichever way it points.
EVENT(oGun, Draw_0) {
  const Real aim = self[image_angle];
  const bool points_left = lengthdir_x(1, aim) < 0;
  draw_sprite_ext(sprGun, self[gun_picture], self[x], self[y], 1, points_left ? -1 : 1, aim, self[image_blend], 1);
  if (self[flash_time] > 0) {
    const KeptDrawState kept;
    draw_set_alpha(1);
    draw_set_colour(kFlashColour);
    draw_circle(self[x] + lengthdir_x(self[muzzle_distance], aim), self[y] + lengthdir_y(self[muzzle_distance], aim), kFlashRadius, false);
  }
}
