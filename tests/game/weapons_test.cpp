// Guns, their modifiers, and the three kinds of bullets, with numbers worked out from the rules.
#include <cmath>
#include <nlohmann/json.hpp>

#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Weapons : public PlayedGame {
 protected:
  Weapons() {
    step(2);  // a steady frame time
    eval("holder = instance_create_layer(500, 500, \"layMobs\", oBullet); g = instance_create_layer(500, 500, \"layPickups\", oGun)");
    eval("g.owner = holder; g.faction = 1; g.follow_speed = 0");
  }
  // A gun that shoots straight to the right with one bullet of a kind.
  void arm(int kind) {
    eval("g.base_spread = 0; g.base_bullet_count = 1; g.base_damage = 100; g.base_speed = 500; g.base_bullet_type = " +
         std::to_string(kind));
  }
  void enemy(double x, double y) {
    eval("e = instance_create_layer(" + std::to_string(x) + ", " + std::to_string(y) + ", \"layMobs\", oParentEnemy); 1");
  }
  std::string health() { return eval("hps = []; with (oParentEnemy) { array_push(global.hps, hp) } hps"); }
};

TEST_F(Weapons, ModifiersCombineInOrderOfTheirSlots) {
  check({
      {"g.bullet_type", "-1"},
      {"[g.base_fire_rate, g.base_spread, g.base_explosion_radius, g.max_slots]", "[0.15,5,80,1]"},
      {"g.setStats(global.weapons.pistol); [g.bullet_damage, g.bullet_speed, g.fire_rate, g.bullet_spread]", "[15,3500,0.35,5]"},
      {"[g.bullet_type, g.knockback, array_length(g.modifiers)]", "[0,100,3]"},  // every modifier pushes, by 100 unless it says otherwise
      {"g.addModifier(global.modifiers.power)", "true"},
      {"[g.bullet_damage, g.knockback]", "[22.50,200]"},
      {"g.addModifier(global.modifiers.heavy_hit)", "true"},
      {"[g.bullet_damage == 15 * 1.5 * 0.8, g.knockback]", "[true,800]"},
      {"g.addModifier(global.modifiers.rapid)", "false"},
      {"g.removeModifier(1); [g.bullet_damage, g.modifiers[1]]", "[12,-4]"},
      {"g.removeModifier(7); g.removeModifier(-1); array_length(g.modifiers)", "3"},
      {"g.addModifier(global.modifiers.beam); g.bullet_type", "1"},  // into the free slot, before heavy_hit, after projectile
      {"g.clearModifiers(); [g.bullet_type, g.knockback, g.bullet_damage]", "[-1,0,15]"},
      {"g.setStats(global.weapons.shotgun); [g.bullet_count, g.multishot_angle, g.knockback]", "[3,10,200]"},
      {"g.setStats(global.weapons.rail_gun); g.bullet_spread", "0"},
      {"s = g.getStats(); [s.name, s.rarity, s.max_slots, s.modifiers[0] == global.modifiers.beam, s.faction]",
       "[\"Rail Gun\",3,4,true,1]"},
      {"s.modifiers[1] = 5; g.modifiers[1]", "-4"},  // a fresh array
      {"g.setStats({rarity: 1, base_damage: 1, base_speed: 1, base_fire_rate: 1, base_spread: 1, base_bullet_type: 0, base_bullet_count: "
       "1, "
       "base_multishot_angle: 1, base_grenade_lifetime: 1, base_explosion_radius: 1, base_explosion_damage: 1, max_slots: 1, "
       "modifiers: [global.modifiers.power, global.modifiers.speed]}); [array_length(g.modifiers), g.bullet_damage, g.name]",
       "[1,1.50,\"Rail Gun\"]"},
      // As many slots are told as there are, whatever stands in the list.
      {"g.max_slots = 3; g.getStats().modifiers[1]", "-4"},
      {"g.modifiers = [noone, noone, noone]; g.max_slots = 1; array_length(g.getStats().modifiers)", "1"},
  });
}

TEST_F(Weapons, AFanIsCentredOnTheAim) {
  arm(0);
  eval("g.base_bullet_count = 3; g.image_angle = 90; fired = g.fireWeapon()");
  check({{"fired", "true"}, {"a = []; with (oBulletProjectile) { array_push(global.a, image_angle) } a", "[80,90,100]"}});
  EXPECT_NEAR(number("oBulletProjectile.y"), 470, 1e-9) << "the muzzle lies 30 ahead";
  EXPECT_NEAR(number("oBulletProjectile.v_speed"), -500 * std::sin(80 * 3.14159265358979 / 180), 1e-6);
  check({{"[oBulletProjectile.damage, oBulletProjectile.lifetime, oBulletProjectile.owner == holder, oBulletProjectile.faction]",
          "[100,2,true,1]"}});
  eval("g.base_bullet_type = -1");
  check({{"g.fireWeapon()", "false"}, {"instance_number(oBulletProjectile)", "3"}});
}

TEST_F(Weapons, TheTriggerFiresAtTheInterval) {
  arm(0);
  eval("g.base_fire_rate = 0.11; g.image_angle = 90; g.is_firing = true");
  ask({{"sounds", true}});
  step(121, 0.02);  // time below zero is discarded: a shot every sixth frame, which makes 21 instead of 22
  const auto sounds = ask({{"sounds", true}})["sounds"];
  EXPECT_EQ(sounds.size(), 21u);
  EXPECT_EQ(sounds[0]["sound"], 6);
  EXPECT_GE(sounds[0]["pitch"].get<double>(), 0.8);
  EXPECT_LE(sounds[0]["pitch"].get<double>(), 1.2);
  eval("g.owner = noone");
  step();
  check({{"instance_exists(g)", "false"}});
}

TEST_F(Weapons, ABeamHitsEverythingAlongItOnceAndLess) {
  arm(1);
  for (const double x : {900.0, 700.0, 800.0}) enemy(x, 500);
  enemy(700, 600);
  eval("g.base_damage = 10; g.image_angle = 0; g.fireWeapon()");
  EXPECT_EQ(health(), "[100,100,100,100]") << "it hits in its first Step, a frame later";
  check({{"[oBulletBeam.start_x, oBulletBeam.end_x, oBulletBeam.direction]", "[530,1500,0]"}});
  step();
  // The nearest takes 10, each further one four fifths of the one before.
  EXPECT_EQ(health(), "[93.60,90,92,100]");
  check({{"instance_number(oBulletBeam)", "0"}});
  eval("p = instance_create_layer(600, 500, \"layPlayer\", oPlayer); g.fireWeapon()");
  step();
  check({{"p.hp", "100"}});
  eval("g.friendly_fire = true; g.fireWeapon()");
  step();
  check({{"p.hp", "90"}});
}

TEST_F(Weapons, AGrenadeSlidesStopsAndExplodes) {
  arm(2);
  eval("g.image_angle = 0; g.base_explosion_damage = 40; g.base_explosion_radius = 60; g.fireWeapon()");
  check({{"[oBulletGrenade.h_speed, oBulletGrenade.x, oBulletGrenade.explosion_radius]", "[125,530,60]"},
         {"oBulletGrenade.friction >= 2.5 && oBulletGrenade.friction <= 5", "true"}});
  step(90);
  check({{"[oBulletGrenade.has_stopped, oBulletGrenade.h_speed]", "[true,0]"}});
  const double travelled =
      number("oBulletGrenade.x") - 530;  // at most (125 - 10) / 2.5, at least (125 - 10) / 5, and a little for the steps
  EXPECT_GT(travelled, 20);
  EXPECT_LT(travelled, 47);
  eval("gx = oBulletGrenade.x");
  eval(
      "near = instance_create_layer(gx + 50, 500, \"layMobs\", oParentEnemy); far = instance_create_layer(gx + 100, 500, \"layMobs\", "
      "oParentEnemy)");
  eval("p = instance_create_layer(gx, 520, \"layPlayer\", oPlayer)");
  step(32);
  check({{"instance_number(oBulletGrenade)", "0"},
         {"[near.hp, far.hp, p.hp]", "[60,100,100]"},
         {"near.knockback_x == 0", "true"},
         {"[oExplosion.max_radius, oExplosion.radius]", "[80,60]"}});
}

TEST_F(Weapons, AnExplosionHitsOnceAndItsFlashFades) {
  enemy(540, 500);
  eval("b = instance_create_layer(500, 500, \"layBullets\", oExplosion)");
  step();
  EXPECT_EQ(health(), "[100]") << "nobody told it to";
  eval("b.knockback = 200; b.faction = 2; b.explode()");
  EXPECT_EQ(health(), "[100]") << "its own side";
  eval("b.has_exploded = false; b.friendly_fire = true; b.explode(); b.explode()");
  EXPECT_EQ(health(), "[70]");
  EXPECT_NEAR(number("point_distance(0, 0, e.knockback_x, e.knockback_y)"), 200, 1e-9);
  EXPECT_GT(number("e.knockback_x"), 190) << "away from the centre, within 15 degrees";
  const auto draws = ask({{"draws", true}})["draws"];
  int circles = 0;
  for (const auto& call : draws) circles += call["object"] == "oExplosion" && call["call"] == "draw_circle";
  EXPECT_EQ(circles, 2);
  eval("b.life_timer = 0.15 - global.dt_steady");
  step();
  EXPECT_NEAR(number("b.current_radius"), 40, 1e-6);
  step(10);
  check({{"instance_exists(b)", "false"}});
}

TEST_F(Weapons, NoShotHitsItsShooterAndNoneTunnels) {
  eval(
      "p = instance_create_layer(1000, 1000, \"layPlayer\", oPlayer); pick = createGunPickup(1000, 1000, global.weapons.rail_gun); "
      "p.takeGun(pick); g = p.gun; g.base_bullet_type = 0; g.clearModifiers(); g.addModifier(global.modifiers.speed)");
  eval("p.move_speed = 0");
  for (int angle = 0; angle < 360; angle += 15) {
    eval("p.image_angle = " + std::to_string(angle) + "; with (oParentEnemy) { instance_destroy() } 1");
    eval("g.x = p.x + lengthdir_x(40, p.image_angle - 70); g.y = p.y + lengthdir_y(40, p.image_angle - 70); g.image_angle = p.image_angle");
    // The fastest shot of all flies 173 px a frame. A row of three enemies stands in its way.
    for (const int away : {260, 330, 420}) {
      eval("e = instance_create_layer(g.x + lengthdir_x(" + std::to_string(away) + ", g.image_angle), g.y + lengthdir_y(" +
           std::to_string(away) + ", g.image_angle), \"layMobs\", oParentEnemy); e.hp = 1000");
    }
    eval("g.fireWeapon()");
    step(4);
    EXPECT_EQ(eval("p.hp"), "100") << "at " << angle;
    EXPECT_EQ(health(), "[965,1000,1000]") << "at " << angle;
    eval("with (oBulletProjectile) { instance_destroy() } 1");
  }
}

TEST_F(Weapons, ChanceOffersWhatWasAskedFor) {
  eval("seen = {}; mods = {}");
  for (int i = 0; i < 80; ++i) {
    check({{"randomWeapon(4).rarity", "4"}, {"randomModifierOf(\"active\").type", "active"}});
    eval("variable_struct_set(seen, randomWeapon(9).name, 1); variable_struct_set(seen, randomWeapon().name, 1)");
    eval("variable_struct_set(mods, randomModifier().name, 1); variable_struct_set(mods, randomModifierOf(\"none such\").name, 1)");
  }
  // 160 draws out of 15 and of 10: that one is missing happens once in some 4,000 runs, and the seed is fixed.
  check({{"array_length(variable_struct_get_names(seen))", "15"}, {"array_length(variable_struct_get_names(mods))", "10"}});
  check({{"m = new Modifier(\"x\", \"y\", {damage_mult: 2, foo: 1}); [m.damage_mult, m.foo, m.speed_mult, m.icon, m.knockback_force]",
          "[2,1,1,7,100]"},
         {"getColorByRarity(0) == 8421504 && getColorByRarity(7) == 8421504 && getColorByRarity(int64(2)) == 65310", "true"}});
}

TEST_F(Weapons, NumbersWithoutMeasureHaveAnEnd) {
  const auto warnings = [&] {
    int count = 0;
    const auto log = ask({{"log", true}})["log"];
    for (const auto& line : log) count += line.get<std::string>().starts_with("WARNING: ");
    return count;
  };
  warnings();
  arm(0);
  eval("g.base_bullet_count = 1e12");
  check({{"g.fireWeapon()", "true"}, {"g.fireWeapon()", "true"}, {"instance_number(oBulletProjectile)", "2000"}});
  EXPECT_EQ(warnings(), 1);
  enemy(540, 500);
  eval("e.hp = 1e15; with (oBullet) { instance_destroy() } 1");
  for (int hit = 0; hit < 3; ++hit) eval("e.takeDamage(1e12, 0, 0, 5)");
  EXPECT_EQ(number("instance_number(oBlood)"), 20000);
  EXPECT_EQ(warnings(), 1);
  eval("instance_destroy(oBlood); p = instance_create_layer(900, 900, \"layPlayer\", oPlayer); p.hp = 1e15; p.takeDamage(1e12, 0, 0)");
  EXPECT_EQ(number("instance_number(oBlood)"), 20000);
  step(2);
}

// A hit of any strength, in a frame of any length: the world stays whole.
TEST_F(Weapons, HitsOfNoMeasureBreakNothing) {
  eval("p = instance_create_layer(900, 900, \"layPlayer\", oPlayer); p.takeGun(createGunPickup(0, 0, global.weapons.omega_cannon))");
  const char* const odd[] = {"NaN", "infinity", "-infinity", "-1e12", "0", "1e300"};
  for (const char* amount : odd) {
    for (const char* push : odd) {
      enemy(540, 500);
      const std::string call = std::string("takeDamage(") + amount + ", " + push + ", 0, " + push + ")";
      EXPECT_EQ(eval("e." + call), "undefined") << call;
      EXPECT_EQ(eval("p.invulnerable = false; p." + call), "undefined") << call;
      eval("instance_destroy(oBlood); instance_destroy(oDeathScreen)");
    }
  }
  eval("b = instance_create_layer(900, 900, \"layMobs\", oEnemyBoss); instance_create_layer(540, 500, \"layMobs\", oEnemy)");
  eval("w = instance_create_layer(900, 900, \"layBullets\", oExplosion); w.radius = NaN; w.explode()");
  for (const double seconds : {0.0, 3600.0, 3600.0, 1e-6, 0.0}) step(1, seconds);
  eval("p.is_dead = false; p.hp = 100; p.invulnerable = false");
  for (const double seconds : {0.0, 3600.0, 3600.0, 1e-6, 0.0}) step(1, seconds);
}

}  // namespace
}  // namespace arena::test
