// A modifier: multipliers and additions that change how a gun fires; and the pickup through which it reaches the gun.
#include "game/loot/modifier.h"

#include "game/combat/weapon.h"
#include "game/loot/pickups.h"
#include "toolkit/support/motion.h"

namespace game {
namespace {

// The frames of the default picture, which the modifiers without one of their own share. The first is for whoever is not listed.
constexpr const char* kPictures[] = {"", "Power", "Speed", "Rapid Fire", "Accuracy", "Beam", "Knockback", "Heavy Hit"};

// One of the definitions that are accepted; undefined when none is.
template <class Accepts>
Value random_definition(Accepts accepts) {
  const Value all = global[modifiers];
  const Value names = variable_struct_get_names(all);
  const Value candidates = array_create(0);
  for (const Value& key : elements(names)) {
    const Value each = variable_struct_get(all, key);
    if (accepts(each)) array_push(candidates, each);
  }
  if (array_length(candidates) == 0) return undefined;
  return candidates[irandom(array_length(candidates) - 1)];
}

}  // namespace

int modifier_picture(const Value& definition) {
  for (std::size_t i = 1; i < std::size(kPictures); ++i) {
    if (definition[name] == kPictures[i]) return static_cast<int>(i);
  }
  return 0;
}

}  // namespace game

CONSTRUCTOR(Modifier, Value label, Value category, Value overrides) {
  self[name] = label;
  self[type] = category;
  self[description] = "";
  self[icon] = sprModDefault;
  self[damage_mult] = 1;
  self[speed_mult] = 1;
  self[fire_rate_mult] = 1;
  self[spread_add] = 0;
  self[bullet_type_override] = -1;
  self[grenade_lifetime_mult] = 1;
  self[explosion_radius_mult] = 1;
  self[explosion_damage_mult] = 1;
  self[multishot_add] = 0;
  self[multishot_angle] = 10;
  self[knockback_force] = 100;
  copy_fields(overrides, self);
}

SCRIPT(randomModifier) {
  return random_definition([](const Value&) { return true; });
}

SCRIPT(randomModifierOf, Value category) {
  const Value found = random_definition([&](const Value& each) { return each[type] == category; });
  return is_undefined(found) ? randomModifier() : found;
}

SCRIPT(createModifierPickup, Value at_x, Value at_y, Value carried) {
  const Value made = instance_create_layer(at_x, at_y, "layPickups", oModifierPickup);
  made[modifier] = carried;
  return made;
}

// Taken by the player, who is the caller.
METHOD(void, oModifierPickup, onPickup) {
  if (self[modifier] == noone || !instance_exists(other[gun])) return;
  if (other[gun][addModifier](self[modifier])) instance_destroy();
  refresh_weapon_ui();
}

EVENT(oModifierPickup, Create_0) {
  event_inherited();
  self[modifier] = noone;
  self[bob_timer] = 0;
  self[bob_speed] = 4;
  self[bob_height] = 4;
  self[image_y_offset] = 0;
  self[pickup_hint] = "Press E to pick up mod";
  self[onPickup] = bind(self, oModifierPickup_onPickup);
}

EVENT(oModifierPickup, Step_0) {
  event_inherited();
  bob(self, global[dt_steady], self[bob_speed], self[bob_height]);
}

EVENT(oModifierPickup, Draw_0) {
  draw_pickup(self, [&] {
    const Value carried = self[modifier];
    const bool is_known = carried != noone;
    draw_sprite_ext(is_known ? Value(carried[icon]) : Value(self[sprite_index]), is_known ? modifier_picture(carried) : 0, self[x],
                    self[y] + self[image_y_offset], self[image_xscale], self[image_yscale], self[image_angle], self[image_blend],
                    self[image_alpha]);
  });
}
