// Weapon definitions: plain bags of statistics that travel through pickups.
#include "game/combat/weapon.h"

namespace game {

namespace {

// The frames of sprGun and sprCardWeapon, in this order.
constexpr const char* kPictures[] = {"Rusty Pistol",
                                     "Makeshift Blaster",
                                     "Rusty Shotgun",
                                     "Pistol",
                                     "Shotgun",
                                     "Scrap Cannon",
                                     "SMG",
                                     "Assault Rifle",
                                     "Rail Gun",
                                     "Heavy Repeater",
                                     "Plasma Rifle",
                                     "Tactical Launcher",
                                     "Experimental Prototype",
                                     "Omega Cannon",
                                     "Singularity Driver"};
constexpr int kPlainPistol = 3;

}  // namespace

int weapon_picture(const Value& definition) {
  if (definition == noone) return kPlainPistol;
  for (std::size_t i = 0; i < std::size(kPictures); ++i) {
    if (variable_struct_get(definition, "name") == kPictures[i]) return static_cast<int>(i);
  }
  return kPlainPistol;
}

void copy_fields(const Value& from, ObjectSelf to) {
  const Value names = variable_struct_get_names(from);
  for (const Value& field : elements(names)) variable_struct_set(to, field, variable_struct_get(from, field));
}

}  // namespace game

CONSTRUCTOR(Weapon, Value label, Value stats) {
  self[name] = label;
  self[description] = "";
  self[icon] = -1;
  self[rarity] = 1;
  self[base_damage] = 10;
  self[base_speed] = 500;
  self[base_fire_rate] = 0.4;
  self[base_spread] = 10;
  self[base_bullet_type] = -1;
  self[base_bullet_count] = 1;
  self[base_multishot_angle] = 10;
  self[base_grenade_lifetime] = 2;
  self[base_explosion_radius] = 100;
  self[base_explosion_damage] = 30;
  self[max_slots] = 3;
  self[modifiers] = array_create(0);
  copy_fields(stats, self);
}

SCRIPT(randomWeapon, Value wanted_rarity) {
  const Value rarity_wanted = is_undefined(wanted_rarity) ? Value(-1) : wanted_rarity;
  const Value all = global[weapons];
  const Value names = variable_struct_get_names(all);
  Value candidates = array_create(0);
  for (const Value& key : elements(names)) {
    const Value weapon = variable_struct_get(all, key);
    if (rarity_wanted == -1 || weapon[rarity] == rarity_wanted) array_push(candidates, weapon);
  }
  if (array_length(candidates) == 0) {
    for (const Value& key : elements(names)) array_push(candidates, variable_struct_get(all, key));
  }
  return candidates[irandom(array_length(candidates) - 1)];
}
