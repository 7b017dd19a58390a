// A modifier: multipliers and additions that change how a gun fires.
#include "game/combat/weapon.h"

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
