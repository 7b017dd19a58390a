// The game's rules, with numbers worked out by hand from them.
#include <cmath>
#include <nlohmann/json.hpp>

#include "runtime/values/elementary.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

constexpr double kFrame = 1.0 / 60;

class Rules : public PlayedGame {
 protected:
  Rules() { eval("global.snd_Ref = 500; global.snd_Max = 2000; global.statistics = {kills: 0}; global.dt_steady = 1 / 60"); }
  // Whole-program definitions without the arena around them.
  void define() { eval("instance_create_layer(0, 0, \"layUI\", oInit); 1"); }
  void player(double x, double y) {
    eval("instance_create_layer(" + std::to_string(x) + ", " + std::to_string(y) + ", \"layPlayer\", oPlayer); 1");
  }
};

TEST_F(Rules, MotionHelpers) {
  check({
      {"Approach(0, 10, 3)", "3"},
      {"Approach(10, 0, 3)", "7"},
      {"Approach(9, 10, 3)", "10"},
      {"SmoothApproach(0, 10, 4)", "2.50"},
      {"SmoothApproach(0, 0.005, 4) == 0.005", "true"},
      {"Range(5, 0, 10, 100, 200)", "150"},
      {"Range(20, 0, 10, 100, 200)", "300"},
      {"Range(1, 2, 2, 0, 1)", "-inf"},
      {"StringZeroes(7, 3)", "007"},
      {"StringZeroes(1234, 3)", "1234"},
      {"Chance(0)", "false"},
      {"Chance(undefined)", "false"},
      {"ArrayShuffle(5)", "undefined"},
      {"a = [1, 2, 3]; ArrayShuffle(a); array_length(a)", "3"},
      {"clamp(5, 10, 1)", "1"},
      // Arguments that are missing or no plain numbers meet the operators and built-in functions themselves.
      {"SmoothApproach(0, 0.005) == 0.005", "true"},
      {"SmoothApproachDelta(1, 1.005) == 1.005", "true"},
      {"SmoothApproach(0, 5)", "! REAL argument incorrect type undefined"},
      {"SmoothApproach(0, 10, \"4\")", "2.50"},
      {"Approach(\"5\", 10, 3)", "! unable to add a number to string"},
      {"Approach(5, \"10\", 3)", "! invalid type for -= lhs=10 (type=1), rhs=5 (type=0)"},
      {"Approach()", "! invalid type for -= lhs=undefined (type=5), rhs=undefined (type=5)"},
      {"typeof(Approach(int64(5), 10, 3))", "number"},
      {"Approach(int64(5), int32(10), true)", "6"},
      {"ApproachDelta(\"5\", 10, 3)", "! unable to add a number to string"},
      {"Range(\"5\", 0, 10, 100, 200)", "! invalid type for -= lhs=5 (type=1), rhs=0 (type=0)"},
      {"Range(5, \"0\", 10, 100, 200)", "150"},
      {"Range(5, 0, 10, 100)", "! invalid type for -= lhs=undefined (type=5), rhs=100 (type=0)"},
      {"Wave(0, \"1\", 1, 0)", "! invalid type for -= lhs=1 (type=1), rhs=0 (type=0)"},
      {"StringZeroes(7)", "! invalid type for -= lhs=undefined (type=5), rhs=1 (type=0)"},
      {"is_array(grid_get_nearby(\"80\", 80))", "true"},
      {"grid_get_nearby(80)", "! invalid type for /= lhs=undefined (type=5), rhs=40 (type=0)"},
      {"createBlood(\"5\", 0, 0, 0)", "! instance_create_layer argument 1 incorrect type (string) expecting a Number (WBGR)"},
      {"playSoundAt(5, undefined, 0)", "! audio_play_sound_at argument 2 incorrect type (undefined) expecting a Number (WBGR)"},
      {"new VoliMusic().volume(\"1\")", "! clamp argument 1 incorrect type (string) expecting a Number (WBGR)"},
      {"string_has_length(\"abc\", undefined, 5)", "false"},
  });
  EXPECT_NEAR(number("SmoothApproachDelta(0, 10, 1 / 60)"), 5, 1e-12) << "halves in `amount` seconds";
  eval("a = []; i = 0");
  for (int i = 0; i < 40; ++i) eval("array_push(a, array_length(a))");
  eval("ArrayShuffle(a); sum = 0");
  for (int i = 0; i < 40; ++i) eval("sum += a[" + std::to_string(i) + "]");
  EXPECT_EQ(eval("sum"), "780");
}

TEST_F(Rules, IntervalsFireOnTime) {
  const int fader = static_cast<int>(number("instance_create_layer(0, 0, \"layUI\", oBullet)"));
  eval("global.count = 0; global.dt_steady = 1 / 60");
  int fired_at = 0;
  for (int call = 1; call <= 60 && fired_at == 0; ++call) {
    ask({{"eval", "IntervalUpdateFunction(\"tick\", 0.5, initDebug)"}, {"self", fader}});
    const double left = ask({{"eval", "tick_interval"}, {"self", fader}})["value"].get<double>();
    if (left < 0.4 && call > 25) fired_at = call;
  }
  EXPECT_EQ(fired_at, 30);
  EXPECT_EQ(ask({{"eval", "tick_interval_lenght"}, {"self", fader}})["value"].get<double>(), 0.5);
}

TEST_F(Rules, FrameTimeIsFiltered) {
  eval("instance_create_layer(0, 0, \"layUI\", oSteadyDeltaTime)");
  step(3, kFrame);
  EXPECT_NEAR(number("global.dt_steady"), kFrame, 1e-6);
  step(1, 0.2);
  EXPECT_NEAR(number("global.dt_steady"), kFrame, 1e-6) << "the first slow frame repeats the one before";
  EXPECT_NEAR(number("global.dt_unsteady"), 0.2, 1e-9);
  step(1, 0.2);
  EXPECT_NEAR(number("global.dt_steady"), 1.0 / 15, 1e-9);
  step(1, kFrame);
  EXPECT_EQ(eval("oSteadyDeltaTime.dtRestored"), "false");
  eval("with (oSteadyDeltaTime) { scale = 0.25 } 1");
  step(2, kFrame);
  EXPECT_NEAR(number("global.dt_steady"), kFrame / 4, 1e-6) << "both run slower alike";
  EXPECT_NEAR(number("global.dt_unsteady"), kFrame / 4, 1e-6);
}

TEST_F(Rules, TheGridFindsNeighboursAsCoarselyAsItShould) {
  const auto enemy = [&](double x, double y) {
    return std::to_string(
        static_cast<int>(number("instance_create_layer(" + std::to_string(x) + ", " + std::to_string(y) + ", \"layMobs\", oBullet)")));
  };
  const std::string a = enemy(39, 39), b = enemy(41, 41), outside = enemy(-1, 5), far = enemy(4001, 10), c = enemy(41, 500),
                    d = enemy(99, 500), e = enemy(39, 900), f = enemy(97, 900);
  eval("grid_clear(); with (oBullet) { grid_insert(id) }");
  EXPECT_EQ(eval("grid_get_nearby(39, 39)"), "[" + a + "," + b + "]");
  EXPECT_EQ(eval("grid_get_nearby(-1, 5)"), "[" + a + "]");
  EXPECT_EQ(eval("grid_get_nearby(4001, 10)"), "[]");
  EXPECT_EQ(eval("grid_get_nearby(41, 500)"), "[" + c + "," + d + "]");
  EXPECT_EQ(eval("grid_get_nearby(39, 900)"), "[" + e + "]");
  EXPECT_EQ(eval("grid_clear(); grid_get_nearby(39, 39)"), "[]");
}

TEST_F(Rules, TheCameraFollowsWithALeash) {
  eval("c = getTarnCamera(); c.init(); c.setSmoothness(0.1)");
  player(1000, 1000);
  eval("c.init(oPlayer); c.setPosition(1000, 1000); oPlayer.x = 3000; c.update()");
  EXPECT_NEAR(number("c.x"), 3000 - 512, 1e-9);
  EXPECT_NEAR(number("c.y"), 1000, 1e-9);
  check({
      {"c.applyShake(10, 0.2); c.applyShake(6, 0.1); [c.shake, c.shake_length_max]", "[10,0.20]"},
      {"c.camera_zoom_smoothness = 0; c.camera_zoom_target = 5; c.update(); c.camera_zoom", "2"},
      {"c.camera_zoom_target = 0; c.update(); c.camera_zoom", "0.10"},
      {"getTarnCamera() == c", "true"},
      {"c.shake_length < 0.2", "true"},
  });
}

TEST_F(Rules, TheCameraZoomsTurnsAndShakes) {
  eval("c = getTarnCamera(); c.init(); global.dt_steady = 1 / 60");
  check({
      {"c.setZoomSmoothness(0); c.camera_zoom_target = 5; c.update(); c.camera_zoom", "2"},
      {"[camera_get_view_width(c.camera_view), camera_get_view_height(c.camera_view), c.x2 - c.x1]", "[960,540,960]"},
      {"c.camera_zoom_target = 0; c.update(); c.camera_zoom", "0.10"},
      {"c.init(); c.update(); c.zoomIn(); c.zoomIn(); [c.camera_zoom_target == 1.2, c.camera_zoom]", "[true,1]"},
      // An amount of 0.1 halves what is left every tenth of a second: after 0.1 s half the way to 2.
      {"c.init(); c.setZoomSmoothness(0.1); c.camera_zoom_target = 2; global.dt_steady = 0.1; c.update(); c.camera_zoom", "1.50"},
      {"c.setAngle(90); c.update(); camera_get_view_angle(c.camera_view)", "45"},
      {"c.setAngleSmoothness(0); c.update(); camera_get_view_angle(c.camera_view)", "90"},
      {"c.init(); c.applyShake(10, 1); c.applyShake(6, 0.1); [c.shake, c.shake_length]", "[10,1]"},
      {"c.setPosition(500, 500); c.update(); [abs(c.x - 500) <= 10, c.shake, c.shake_length]", "[true,10,0.90]"},
      {"c.update(); c.shake", "9"},
      {"global.dt_steady = 5; c.update(); c.update(); c.shake", "0"},
      {"c.setPosition(700, 600); c.update(); [c.x, c.y, camera_get_view_x(c.camera_view)]", "[700,600,-260]"},
      {"c.setViewSize(1000, 500); [c.getViewSize(), camera_get_view_height(c.camera_view)]", "[{width:1000,height:500},500]"},
      {"c.toggleDebugMode(); c.update(); c.debug_x2 - c.debug_x1 == camera_get_view_width(c.camera_view)", "true"},
  });
}

// The offset is beside what the camera follows: the smoothing does not chase it.
TEST_F(Rules, TheCamerasViewRestsByItsOffsetFromTheTarget) {
  eval("c = getTarnCamera(); c.init(); global.dt_steady = 1 / 60");
  player(1000, 1000);
  eval("c.init(oPlayer); c.setSmoothness(0.1); c.setPosition(1000, 1000); c.setOffset(100, -40)");
  const char* const beside =
      "w = camera_get_view_width(c.camera_view); h = camera_get_view_height(c.camera_view); [camera_get_view_x(c.camera_view) + w / 2 - "
      "c.x, camera_get_view_y(c.camera_view) + h / 2 - c.y, c.x1 + w / 2 - c.x]";
  for (int frame = 0; frame < 5; ++frame) {
    eval("c.update()");
    check({{"[c.x, c.y]", "[1000,1000]"}, {beside, "[100,-40,100]"}});
  }
  eval("c.setSmoothness(0); oPlayer.x = 1500; c.update()");
  check({{"c.x", "1500"}, {beside, "[100,-40,100]"}, {"c.init(); [c.x_offset, c.y_offset]", "[0,0]"}});
}

TEST_F(Rules, Definitions) {
  define();
  check({
      {"variable_struct_names_count(global.weapons)", "15"},
      {"variable_struct_names_count(global.modifiers)", "10"},
      {"global.weapons.rusty_pistol.modifiers[0] == global.modifiers.projectile", "true"},
      {"array_length(global.weapons.omega_cannon.modifiers)", "6"},
      {"global.weapons.rail_gun.base_spread", "0"},
      {"global.weapons.shotgun.modifiers[1] == global.modifiers.multishot", "true"},
      {"global.weapons.rusty_shotgun.description", "Devastating at close range but slow"},
      {"global.modifiers.rapid.fire_rate_mult", "0.70"},
      {"global.modifiers.power.knockback_force", "100"},
      {"global.modifiers.grenade.icon", "24"},
      {"global.modifiers.power.icon", "7"},
      {"new Modifier(\"x\", \"y\", {}).multishot_angle", "10"},
      {"randomWeapon(4).rarity", "4"},
      {"randomWeapon(17).rarity < 6", "true"},
      {"w = new Weapon(\"n\", {}); [w.base_fire_rate, w.max_slots, w.icon]", "[0.40,3,-1]"},
  });
}

TEST_F(Rules, GunsApplyTheirModifiers) {
  define();
  eval("g = instance_create_layer(0, 0, \"layPickups\", oGun); m = global.modifiers");
  check({
      {"[g.base_damage, g.fire_rate, g.bullet_spread, g.max_slots, g.rarity]", "[10,0.15,5,1,-1]"},
      {"g.fireWeapon()", "false"},
      {"s = g.getStats(); [s.name, s.description, s.icon]", "[\"\",\"\",-1]"},
      {"g.setStats(global.weapons.pistol); g.bullet_type", "0"},
      {"[g.addModifier(m.power), g.addModifier(m.knockback), g.addModifier(m.speed)]", "[true,true,false]"},
      {"[g.bullet_damage, g.knockback]", "[22.50,400]"},
      {"g.removeModifier(0); g.bullet_type", "-1"},
      {"g.removeModifier(9); array_length(g.modifiers)", "3"},
      {"g.clearModifiers(); [g.bullet_damage, g.knockback]", "[15,0]"},
      {"global.weapons.pistol.modifiers[1]", "-4"},
      {"g.setStats({rarity: 1, base_damage: 1, base_speed: 1, base_fire_rate: 1, base_spread: 0, base_bullet_type: 0, base_bullet_count: "
       "3, "
       "base_multishot_angle: 10, base_grenade_lifetime: 1, base_explosion_radius: 1, base_explosion_damage: 1, max_slots: 2, modifiers: "
       "[noone, noone, m.power]}); "
       "array_length(g.modifiers)",
       "2"},
      {"g.image_angle = 90; g.base_spread = 0; g.fireWeapon(); global.a = []; with (oBulletProjectile) { array_push(global.a, image_angle) "
       "} global.a",
       "[80,90,100]"},
  });
}

TEST_F(Rules, PlayerDamageBloodAndDeath) {
  player(1000, 1000);
  const auto blood = [&] { return number("n = instance_number(oBlood); instance_destroy(oBlood); n"); };
  eval("oPlayer.takeDamage(1, 0, 0)");
  EXPECT_EQ(blood(), 1);
  eval("oPlayer.takeDamage(50, 0, 0)");
  EXPECT_EQ(eval("oPlayer.hp"), "99") << "invulnerable after a hit";
  eval("oPlayer.invulnerable = false; oPlayer.hp = 100; oPlayer.takeDamage(5, 0, 0, 300)");
  EXPECT_EQ(blood(), 2);
  EXPECT_NEAR(number("point_distance(0, 0, oPlayer.knockback_x, oPlayer.knockback_y)"), 300, 1e-9);
  check({{"[oPlayer.image_blend, oPlayer.alarm[0], oPlayer.invulnerable_timer]", "[255,5,0.50]"}});
  eval("oPlayer.invulnerable = false; oPlayer.hp = 100; oPlayer.takeDamage(40, 0, 0)");
  EXPECT_EQ(blood(), 6);
  eval("oPlayer.invulnerable = false; oPlayer.takeDamage(1000, 0, 0)");
  check({{"oPlayer.is_dead", "true"}, {"oDeathScreen.text", "You are dead!\nKills: 0\nPress SPACE to restart!"}});
}

TEST_F(Rules, TheDashCostsEnergyAndShields) {
  player(1000, 1000);
  ask({{"mouse", {1500, 1000}}});
  step();
  eval("oPlayer.dash_energy = 29");
  key(16, true);
  step();
  EXPECT_EQ(eval("oPlayer.is_dashing"), "false");
  key(16, false);
  eval("oPlayer.dash_energy = 30; oPlayer.startDash()");
  check({{"[oPlayer.dash_energy, oPlayer.dash_dir_x, oPlayer.invulnerable, oPlayer.image_alpha]", "[0,1,true,0.50]"}});
  EXPECT_NEAR(number("oPlayer.invulnerable_timer"), 4.0 / 12, 1e-12);
  const double before = number("oPlayer.x");
  step();
  EXPECT_NEAR(number("oPlayer.x") - before, 900 * kFrame, 1e-3);
  EXPECT_EQ(number("instance_number(oFader)"), 1);
  step(8);
  EXPECT_EQ(eval("oPlayer.is_dashing"), "false");
}

TEST_F(Rules, DiagonalsAreNoFaster) {
  double speeds[2];
  for (int diagonal = 0; diagonal < 2; ++diagonal) {
    eval("instance_destroy(oPlayer)");
    player(1000, 1000);
    key(87, true);
    key(68, diagonal == 1);
    step(120);
    speeds[diagonal] = number("point_distance(0, 0, oPlayer.h_speed, oPlayer.v_speed)");
    key(87, false);
    key(68, false);
    step();
  }
  EXPECT_NEAR(speeds[0], speeds[1], 1e-9);
  // The fixed point of v = (v + a dt) exp(-f dt).
  const double kept = std::exp(-8 * kFrame);
  EXPECT_NEAR(speeds[0], 5000 * kFrame * kept / (1 - kept), 0.01);
}

TEST_F(Rules, ThePlayerIsPushedAndTheDashFollowsTheWalk) {
  player(1000, 1000);
  ask({{"mouse", {1000, 500}}});  // the pointer is elsewhere
  step();
  // The push is measured first, decays, and then moves by what is left.
  eval("oPlayer.knockback_x = 600; oPlayer.x = 1000");
  const double friction = number("oPlayer.knockback_friction"), kept = std::exp(-friction * kFrame);
  step();
  EXPECT_NEAR(number("oPlayer.x"), 1000 + 600 * kept * kFrame, 1e-3);
  eval("oPlayer.knockback_x = 0.9; oPlayer.knockback_y = 0.3");
  step();
  check({{"[oPlayer.knockback_x, oPlayer.knockback_y]", "[0,0]"}});
  // Thrown faster than it walks it is held to its speed; in a dash it goes where it walked, not where it aims.
  eval("oPlayer.h_speed = 9000; oPlayer.v_speed = 0");
  step();
  EXPECT_NEAR(number("oPlayer.h_speed"), number("oPlayer.move_speed"), 1e-9);
  eval("oPlayer.h_speed = -30; oPlayer.v_speed = 40; oPlayer.dash_energy = 100; oPlayer.startDash()");
  check({{"[oPlayer.dash_dir_x * 10, oPlayer.dash_dir_y * 10]", "[-6,8]"}, {"oPlayer.startDash(); oPlayer.dash_energy", "70"}});
}

TEST_F(Rules, EnemiesTakeDamageByFaction) {
  player(0, 0);
  eval("e = instance_create_layer(500, 500, \"layMobs\", oEnemy)");
  const auto blood = [&] { return number("n = instance_number(oBlood); instance_destroy(oBlood); n"); };
  check({{"[e.hp, e.image_blend, e.blood_color, e.faction]", "[100,32768,32768,2]"}, {"e.takeDamage(40, 0, 0); e.hp", "60"}});
  EXPECT_EQ(blood(), 20);
  eval("e.hp = 6; e.takeDamage(40, 0, 0, 0)");
  EXPECT_EQ(blood(), 6);
  check({
      {"instance_exists(e)", "false"},
      {"global.statistics.kills", "1"},
      {"canDamageTarget(2, 2, false)", "false"},
      {"canDamageTarget(2, 2, true)", "true"},
      {"canDamageTarget(2, 3, false)", "true"},
      {"canDamageTarget(1, 2, false)", "true"},
      {"getColorByRarity(2.0)", "65310"},
      {"getColorByRarity(int64(2))", "65310"},
      {"getColorByRarity(0)", "8421504"},
      {"getColorByRarity(7)", "8421504"},
      {"getColorByRarity(6)", "4210943"},
  });
}

TEST_F(Rules, EnemiesChaseAndKeepApart) {
  player(1000, 1000);
  eval("a = instance_create_layer(100, 1000, \"layMobs\", oEnemy); grid_clear()");
  step();
  EXPECT_NEAR(number("a.x"), 100 + 100 * kFrame, 1e-3);
  eval(
      "a.x = 100; a.y = 200; b = instance_create_layer(132, 200, \"layMobs\", oEnemy); oPlayer.x = 100; oPlayer.y = 100000; grid_clear(); "
      "grid_insert(a); grid_insert(b)");
  eval("oPlayer.is_dead = true");
  step();
  EXPECT_NEAR(number("a.x"), 100 - 500 * kFrame, 0.02) << "32 px apart: 500 px/s each";
  EXPECT_NEAR(number("a.y"), 200 + 100 * kFrame, 0.02);
}

TEST_F(Rules, ShotsNeverHitTheirShooterAndNeverTunnel) {
  define();
  player(1000, 1000);
  eval("oPlayer.is_dead = false; createGunPickup(1000, 1000, global.weapons.experimental_prototype)");
  key(69, true);
  step();
  key(69, false);
  eval(
      "oPlayer.gun.addModifier(global.modifiers.speed); oPlayer.gun.base_spread = 0; oPlayer.gun.base_fire_rate = 0.01; "
      "oPlayer.gun.bullet_lifetime = 0.2");
  ask({{"button", 1}, {"down", true}});
  for (int angle = 0; angle < 360; angle += 5) {
    const double radians = angle * elementary::kPi / 180;
    ask({{"mouse", {1000 + 3000 * elementary::cos(radians), 1000 - 3000 * elementary::sin(radians)}}});
    step(4);
    ASSERT_EQ(eval("oPlayer.hp"), "100") << "shot himself at " << angle;
  }
  // Rows of enemies at all distances: the first in the line of fire is always hit.
  ask({{"button", 1}, {"down", false}});
  step(60);
  for (int distance = 60; distance < 700; distance += 37) {
    eval("instance_destroy(oBulletProjectile); instance_destroy(oEnemy); g = oPlayer.gun; g.fire_timer = 0");
    const double gun_x = number("g.x"), gun_y = number("g.y");
    eval("e = instance_create_layer(" + std::to_string(gun_x) + ", " + std::to_string(gun_y - distance) + ", \"layMobs\", oEnemy)");
    eval("e.max_hp = 100000; e.hp = 100000; grid_clear()");
    ask({{"mouse", {gun_x, gun_y - 5000}}});
    ask({{"button", 1}, {"down", true}});
    step(1);
    ask({{"button", 1}, {"down", false}});
    step(12);
    EXPECT_LT(number("e.hp"), 100000) << "tunnelled at " << distance;
  }
}

TEST_F(Rules, GunsAreTakenSwappedAndDropped) {
  define();
  player(1000, 1000);
  eval("createGunPickup(1100, 1000, global.weapons.smg); createGunPickup(1128.02, 1000, global.weapons.pistol)");
  step();
  check({{"p = instance_find(oGunPickup, 0); p.is_highlighted", "true"}, {"instance_find(oGunPickup, 1).is_highlighted", "false"}});
  key(69, true);
  step();
  key(69, false);
  check({{"oPlayer.gun.name", "SMG"},
         {"instance_number(oGunPickup)", "1"},
         {"oPlayer.gun.owner == oPlayer.id", "true"},
         {"[oPlayer.gun.faction, oPlayer.gun.friendly_fire, oPlayer.gun.image_blend]", "[1,true,14512128]"}});
  eval("oPlayer.x = 1100");
  step();
  key(69, true);
  step();
  key(69, false);
  check({{"oPlayer.gun.name", "Pistol"}, {"oGunPickup.weapon_stats.name", "SMG"}, {"oGunPickup.rarity", "3"}});
  key(81, true);
  step();
  check({{"instance_exists(oPlayer.gun)", "false"}, {"instance_number(oGun)", "0"}, {"instance_number(oGunPickup)", "2"}});
  eval("plain = instance_create_layer(0, 0, \"layPickups\", oPickup); plain.onPickup()");
  EXPECT_EQ(ask({{"log", true}})["log"].back(), "ERROR: onPickup not implemented in oPickup");
}

TEST_F(Rules, BloodSettlesOnItsLastFrame) {
  eval("createBlood(100, 100, 0, 0)");
  check({{"[oBlood.image_blend, oBlood.friction, oBlood.image_speed]", "[255,4,0]"}});
  step(14, kFrame);
  EXPECT_EQ(eval("instance_exists(oBlood)"), "true");
  step(8, kFrame);
  EXPECT_EQ(eval("instance_exists(oBlood)"), "false") << "five changes of 0.05 s";
  const auto sounds = ask({{"sounds", true}})["sounds"];
  ASSERT_EQ(sounds.size(), 1u);
  EXPECT_TRUE(sounds[0]["sound"] == 7 || sounds[0]["sound"] == 8);
  EXPECT_GE(number("playSoundAt(5, 99999, 0)"), 300000) << "a handle also beyond hearing";
}

class Arena : public PlayedGame {
 protected:
  Arena() : PlayedGame("rArena") {}
};

TEST_F(Arena, ARunEndsInDeathAndSpaceStartsAnew) {
  step(60 * 6);
  EXPECT_EQ(number("instance_number(oEnemy)"), 4);
  eval("oPlayer.takeDamage(1000, 0, 0)");
  step();
  EXPECT_EQ(eval("instance_exists(oDeathScreen)"), "true");
  eval("global.statistics.kills = 7");
  key(32, true);
  step();
  check({{"global.statistics.kills", "0"},
         {"oPlayer.hp", "100"},
         {"instance_number(oSteadyDeltaTime)", "1"},
         {"instance_exists(oDeathScreen)", "false"}});
  key(27, true);
  EXPECT_EQ(ask({{"step", 1}})["ended"], true);
}

}  // namespace
}  // namespace arena::test
