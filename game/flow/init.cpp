// Start-up: the globals and the two definition tables that every other object reads. Runs before all others.
#include "game/combat/weapon.h"
#include "toolkit/support/music.h"
#include "toolkit/ui/ui.h"

namespace game {
namespace {

const Variable volume{"volume"}, load{"load"};
constexpr int kLinearDistanceClamped = 4;
constexpr Real kMusicVolume = 0.25;

using Fields = std::initializer_list<FieldLiteral>;

struct ModifierRow {
  const char* key;
  const char* title;
  const char* category;
  Fields stats;
};

// Damage in hit points, speed in pixels/s, fire rate in seconds between shots, angles in degrees. An empty slot is noone.
struct WeaponRow {
  const char* key;
  const char* title;
  int level;
  Real shot_damage, shot_speed, shot_interval, shot_spread;
  int slots;
  const char* kind;  // the modifier in the first slot
  bool is_shotgun;   // two bullets in a fan of 12 degrees, Multishot in the second slot
  const char* text;
};

constexpr WeaponRow kWeapons[] = {
    {"rusty_pistol", "Rusty Pistol", 0, 8, 2500, 0.5, 8, 1, "projectile", false, "A worn-out sidearm. Better than nothing."},
    {"makeshift_blaster", "Makeshift Blaster", 1, 12, 2000, 0.6, 12, 2, "beam", false, "Crude but functional energy weapon."},
    {"rusty_shotgun", "Rusty Shotgun", 1, 8, 3000, 1.0, 20, 2, "projectile", true, "Devastating at close range but slow"},
    {"pistol", "Pistol", 2, 15, 3500, 0.35, 5, 3, "projectile", false, "Standard military sidearm."},
    {"shotgun", "Shotgun", 2, 10, 3000, 0.8, 15, 3, "projectile", true, "Devastating at close range."},
    {"scrap_cannon", "Scrap Cannon", 2, 25, 2500, 0.9, 10, 3, "grenade", false, "Heavy weapon made from salvaged parts."},
    {"smg", "SMG", 3, 8, 4000, 0.12, 10, 4, "projectile", false, "High rate of fire submachine gun."},
    {"assault_rifle", "Assault Rifle", 3, 18, 4500, 0.2, 6, 4, "projectile", false, "Versatile automatic rifle."},
    {"rail_gun", "Rail Gun", 3, 35, 8000, 0.7, 0, 4, "beam", false, "Electromagnetic accelerator with pinpoint accuracy."},
    {"heavy_repeater", "Heavy Repeater", 4, 22, 5000, 0.15, 8, 5, "beam", false, "Devastating rapid-fire heavy weapon."},
    {"plasma_rifle", "Plasma Rifle", 4, 30, 6000, 0.25, 4, 5, "beam", false, "Advanced energy weapon system."},
    {"tactical_launcher", "Tactical Launcher", 4, 40, 7000, 1.2, 5, 5, "grenade", false, "Precision grenade delivery system."},
    {"experimental_prototype", "Experimental Prototype", 5, 35, 5500, 0.18, 6, 6, "projectile", false,
     "Unstable but powerful prototype weapon."},
    {"omega_cannon", "Omega Cannon", 5, 45, 7000, 0.22, 3, 6, "grenade", false, "The pinnacle of weapons engineering."},
    {"singularity_driver", "Singularity Driver", 5, 50, 6500, 0.3, 2, 6, "grenade", false, "Weapon that harnesses gravitational forces."},
};

Value build_modifiers() {
  const ModifierRow rows[] = {
      {"power", "Power", "passive", {{damage_mult, 1.5}, {description, "+50% damage"}}},
      {"speed", "Speed", "passive", {{speed_mult, 1.3}, {description, "+30% bullet speed"}}},
      {"rapid", "Rapid Fire", "passive", {{fire_rate_mult, 0.7}, {description, "+30% fire rate"}}},
      {"accuracy", "Accuracy", "passive", {{spread_add, -3}, {description, "Better accuracy"}}},
      {"beam", "Beam", "active", {{bullet_type_override, kBeam}, {description, "Shoot laser beam"}}},
      {"projectile",
       "Projectile",
       "active",
       {{icon, sprModProjectile}, {bullet_type_override, kProjectile}, {description, "Shoot projectiles"}}},
      {"grenade", "Grenade", "active", {{icon, sprModGrenade}, {bullet_type_override, kGrenade}, {description, "Explosive grenades"}}},
      {"multishot",
       "Multishot",
       "passive",
       {{icon, sprModMultishot}, {multishot_add, 1}, {multishot_angle, 10}, {description, "+1 bullet per shot"}}},
      {"knockback", "Knockback", "passive", {{knockback_force, 200}, {description, "Pushes enemies back"}}},
      {"heavy_hit", "Heavy Hit", "passive", {{knockback_force, 600}, {damage_mult, 0.8}, {description, "Strong knockback, -20% damage"}}},
  };
  const Value table = struct_of({});
  for (const ModifierRow& row : rows) variable_struct_set(table, row.key, Modifier.make(row.title, row.category, struct_of(row.stats)));
  return table;
}

Value build_weapons() {
  const Value table = struct_of({}), parts = global[modifiers];
  for (const WeaponRow& row : kWeapons) {
    Value slots = array_create(row.slots, noone);
    slots[0] = variable_struct_get(parts, row.kind);
    if (row.is_shotgun) slots[1] = variable_struct_get(parts, "multishot");
    const Value stats = struct_of({{rarity, row.level},
                                   {description, row.text},
                                   {base_damage, row.shot_damage},
                                   {base_speed, row.shot_speed},
                                   {base_fire_rate, row.shot_interval},
                                   {base_spread, row.shot_spread}});
    if (row.is_shotgun) {
      stats[base_bullet_count] = 2;
      stats[base_multishot_angle] = 12;
    }
    stats[max_slots] = row.slots;
    stats[modifiers] = slots;
    variable_struct_set(table, row.key, Weapon.make(row.title, stats));
  }
  return table;
}

}  // namespace
}  // namespace game

EVENT(oInit, Create_0) {
  randomize();
  global[statistics] = struct_of({{kills, 0}});
  global[music_player] = VoliMusic.make();
  global[music_player][volume](kMusicVolume);
  global[music_player][load](array_of(musFirstBlood, musColdSteel));
  global[snd_Ref] = 500;
  global[snd_Max] = 2000;
  audio_listener_orientation(0, 0, 1000, 0, -1, 0);
  audio_falloff_set_model(kLinearDistanceClamped);
  global[game_ui_style] = TuiStyle.make();
  const Value look = global[game_ui_style];
  look[setMinSize](20, 20);
  look[setSprites](sprPanel, sprPanel);
  look[setSpriteProgressBar](sprBarBack, sprBarFill);
  look[setFonts](fntUi, fntUi, fntTitle);
  global[modifiers] = build_modifiers();
  global[weapons] = build_weapons();
}
