#include "game/loot/pickups.h"

#include "game/combat/weapon.h"
#include "toolkit/support/drawing.h"
#include "toolkit/support/motion.h"

namespace game {
namespace {

const Variable pickup_range{"pickup_range"}, is_highlighted{"is_highlighted"}, rotation_speed{"rotation_speed"};
// The keys of global.modifiers, in the order in which loot is drawn.
const Variable power_field{"power"}, speed_field{"speed"}, beam_field{"beam"}, grenade_field{"grenade"}, projectile_field{"projectile"};
const Variable rapid_field{"rapid"}, accuracy_field{"accuracy"}, multishot_field{"multishot"}, knockback_field{"knockback"};
const Variable heavy_hit_field{"heavy_hit"};

constexpr Real kDiscRadius = 20, kHaloRadius = 24;                                       // pixels
constexpr Real kHintHeight = 30;                                                         // pixels above the pickup
constexpr int kRarityColours[] = {11842740, 65310, 14512128, 15611299, 33023, 4210943};  // rarity 1 to 6
constexpr int kGrey = 8421504;

}  // namespace

void draw_pickup(Instance self, const std::function<void()>& picture) {
  if (!self[is_highlighted]) return picture();
  draw_set_colour(c_white);
  const Real pulse = (sin(current_time * 0.005) + 1) * 0.5;
  draw_circle_color(self[x], self[y], kDiscRadius, c_white, c_white, false);
  draw_set_alpha(0.3 + pulse * 0.3);
  draw_circle(self[x], self[y], kHaloRadius, false);
  draw_set_alpha(1);
  picture();
  const KeptDrawState kept;
  draw_set_font(fntUi);
  draw_set_halign(fa_center);
  draw_set_valign(fa_bottom);
  // The hint names E by its place; the player reads what stands there.
  draw_text(self[x], self[y] - kHintHeight, string_replace(self[pickup_hint], "Press E ", "Press " + keyboard_key_name('E') + " "));
}

void hand_over_gun(Instance taker, Instance pickup) {
  if (instance_exists(taker[gun])) taker[dropGun]();
  const Value definition = pickup[weapon_stats];
  taker[gun] = instance_create_layer(pickup[x], pickup[y], "layPickups", oGun);
  const Instance carried = taker[gun];
  carried[owner] = taker[id];
  carried[setStats](definition);
  carried[image_blend] = getColorByRarity(definition[rarity]);
  carried[faction] = kPlayerFaction;
  carried[friendly_fire] = true;
}

void refresh_weapon_ui() {
  if (!instance_exists(oControl) || !variable_instance_exists(oControl, "updateWeaponUI")) return;
  oControl[updateWeaponUI]();
}

}  // namespace game

SCRIPT(getColorByRarity, Value level) {
  for (int at = 0; at < 6; ++at) {
    if (level == at + 1) return kRarityColours[at];
  }
  return kGrey;
}

SCRIPT(createGunPickup, Value at_x, Value at_y, Value definition) {
  const Value made = instance_create_layer(at_x, at_y, "layPickups", oGunPickup);
  const Instance pickup = made;
  pickup[weapon_stats] = definition;
  pickup[rarity] = definition[rarity];
  pickup[image_blend] = getColorByRarity(definition[rarity]);
  return made;
}

SCRIPT(createRandomPickup) {
  const Value all = global[modifiers];
  const Value found = choose(all[power_field], all[speed_field], all[beam_field], all[grenade_field], all[projectile_field],
                             all[rapid_field], all[accuracy_field], all[multishot_field], all[knockback_field], all[heavy_hit_field]);
  return createModifierPickup(self[x], self[y], found);
}

METHOD(void, oPickup, onPickup) { show_debug_message("ERROR: onPickup not implemented in " + object_get_name(self[object_index])); }

EVENT(oPickup, Create_0) {
  self[pickup_hint] = "Press E to pick up";
  self[pickup_range] = 128;
  self[is_highlighted] = false;
  self[onPickup] = bind(self, oPickup_onPickup);
}

EVENT(oPickup, Step_0) {
  self[is_highlighted] = instance_exists(oPlayer) && point_distance(self[x], self[y], oPlayer[x], oPlayer[y]) <= self[pickup_range];
}

EVENT(oPickup, Draw_0) {
  draw_pickup(self, [] { draw_self(); });
}

// Taken by the player, who is the caller.
METHOD(void, oGunPickup, onPickup) {
  if (self[weapon_stats] == noone) return;
  hand_over_gun(Value(other), self);
  refresh_weapon_ui();
  instance_destroy();
}

EVENT(oGunPickup, Create_0) {
  event_inherited();
  self[weapon_stats] = noone;
  self[rarity] = -1;
  self[move_speed] = 1200;
  self[h_speed] = 0;
  self[v_speed] = 0;
  self[friction] = 4;
  self[bob_timer] = 0;
  self[bob_speed] = 2;
  self[bob_height] = 4;
  self[image_y_offset] = 0;
  self[rotation_speed] = choose(-1, 1) * 5;
  self[pickup_hint] = "Press E to pick up gun";
  self[onPickup] = bind(self, oGunPickup_onPickup);
}

// The parent's Step first: the highlight.
EVENT(oGunPickup, Step_0) {
  event_inherited();
  const Real dt = global[dt_steady];
  bob(self, dt, self[bob_speed], self[bob_height]);
  const Real decay = exp(-self[friction] * dt);
  self[h_speed] *= decay;
  self[v_speed] *= decay;
  const Real spd = point_distance(0, 0, self[h_speed], self[v_speed]);
  if (spd > self[move_speed]) {
    self[h_speed] = self[h_speed] / spd * self[move_speed];
    self[v_speed] = self[v_speed] / spd * self[move_speed];
  }
  self[x] += self[h_speed] * dt;
  self[y] += self[v_speed] * dt;
  self[image_angle] += self[rotation_speed] * spd * dt;
}

EVENT(oGunPickup, Draw_0) {
  draw_pickup(self, [&] {
    draw_sprite_ext(sprGun, weapon_picture(self[weapon_stats]), self[x], self[y] + self[image_y_offset], self[image_xscale],
                    self[image_yscale], self[image_angle], self[image_blend], self[image_alpha]);
  });
}
