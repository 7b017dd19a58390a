#pragma once
// Names of guns, bullets and the player.
#include "game/names.h"

namespace game {

// A gun's statistics: what its definition gives, and what the modifiers make of it.
inline const Variable base_damage{"base_damage"}, base_speed{"base_speed"}, base_fire_rate{"base_fire_rate"}, base_spread{"base_spread"};
inline const Variable base_bullet_type{"base_bullet_type"}, base_knockback{"base_knockback"}, base_bullet_count{"base_bullet_count"};
inline const Variable base_multishot_angle{"base_multishot_angle"}, base_grenade_lifetime{"base_grenade_lifetime"};
inline const Variable base_explosion_radius{"base_explosion_radius"}, base_explosion_damage{"base_explosion_damage"};
inline const Variable bullet_damage{"bullet_damage"}, bullet_speed{"bullet_speed"}, fire_rate{"fire_rate"}, bullet_spread{"bullet_spread"};
inline const Variable bullet_type{"bullet_type"}, bullet_count{"bullet_count"}, multishot_angle{"multishot_angle"};
inline const Variable grenade_lifetime{"grenade_lifetime"}, explosion_radius{"explosion_radius"}, explosion_damage{"explosion_damage"};
inline const Variable max_slots{"max_slots"};

inline const Variable gun_picture{"gun_picture"};  // the frame of sprGun that a gun looks like
inline const Variable is_firing{"is_firing"}, fire_timer{"fire_timer"}, bullet_lifetime{"bullet_lifetime"}, beam_length{"beam_length"};
inline const Variable explode{"explode"};
inline const Variable fireWeapon{"fireWeapon"}, createMuzzleFlash{"createMuzzleFlash"}, applyModifiers{"applyModifiers"};
inline const Variable addModifier{"addModifier"}, removeModifier{"removeModifier"}, clearModifiers{"clearModifiers"};
inline const Variable getStats{"getStats"}, setStats{"setStats"};

// What a modifier changes.
inline const Variable type{"type"}, damage_mult{"damage_mult"}, speed_mult{"speed_mult"}, fire_rate_mult{"fire_rate_mult"};
inline const Variable spread_add{"spread_add"}, bullet_type_override{"bullet_type_override"}, multishot_add{"multishot_add"};
inline const Variable grenade_lifetime_mult{"grenade_lifetime_mult"}, explosion_radius_mult{"explosion_radius_mult"};
inline const Variable explosion_damage_mult{"explosion_damage_mult"}, knockback_force{"knockback_force"};

// Bullet kinds.
inline constexpr int kProjectile = 0, kBeam = 1, kGrenade = 2;

// Factions: the player's side, the enemies', and what anybody may hurt.
inline const Value kPlayerFaction = int64(1), kEnemyFaction = int64(2), kNeutralFaction = int64(0);
inline constexpr int kVulnerableFaction = 3;

extern const Constructor Weapon;
extern const Constructor Modifier;

}  // namespace game
