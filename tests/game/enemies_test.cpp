// The boss, loot and pickups, with numbers worked out from the rules.
#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Enemies : public PlayedGame {
 protected:
  Enemies() { step(2); }
  void player(double x, double y) {
    eval("p = instance_create_layer(" + std::to_string(x) + ", " + std::to_string(y) + ", \"layPlayer\", oPlayer); 1");
  }
  void give(const char* weapon) { eval(std::string("p.takeGun(createGunPickup(p.x, p.y, global.weapons.") + weapon + ")); 1"); }
};

TEST_F(Enemies, TheBossCopiesTheGunOfItsTime) {
  player(1000, 1000);
  eval("a = instance_create_layer(500, 500, \"layMobs\", oEnemyBoss)");
  check({{"[a.hp, a.max_hp, a.gun.bullet_type, a.gun.faction, a.gun.friendly_fire, a.gun.base_damage]", "[1000,1000,-1,0,false,10]"}});
  give("smg");
  eval("b = instance_create_layer(600, 500, \"layMobs\", oEnemyBoss)");
  give("rail_gun");
  check({{"[b.gun.name, b.gun.base_damage, b.gun.faction, b.gun.friendly_fire, b.gun.owner == b.id]", "[\"SMG\",8,2,true,true]"},
         {"[b.blood_color, b.image_blend, b.shoot_timer]", "[255,4210752,0.50]"}});
  eval("gun = b.gun; b.takeDamage(5000, 0, 0, 0)");
  check({{"[global.statistics.kills, instance_exists(b)]", "[1,false]"}});
  step();
  check({{"instance_exists(gun)", "false"}});
}

TEST_F(Enemies, TheBossCirclesAtItsRange) {
  player(1000, 1000);
  eval("b = instance_create_layer(785, 1000, \"layMobs\", oEnemyBoss); dt = 0");
  step();
  const double dt = number("global.dt_steady");
  // 215 px away, in the dead band of 20 around 200: only across, at 350 px/s; the player is to the right, so +90 degrees is up.
  EXPECT_NEAR(number("b.x"), 785, 1e-6);
  EXPECT_NEAR(number("b.y"), 1000 - 350 * dt, 1e-4);
  eval("b.x = 779; b.y = 1000");
  step();
  EXPECT_NEAR(number("b.x"), 779 + 300 * dt, 1e-4) << "too far: it closes in";
  eval("b.x = 821; b.y = 1000");
  step();
  EXPECT_NEAR(number("b.x"), 821 - 300 * dt, 1e-4) << "too near: it backs off";
  EXPECT_NEAR(number("b.y"), 1000 - 350 * dt, 1e-4);
  eval("b.strafe_timer = 2.999; b.distance_timer = 3.999");
  step();
  check({{"[b.strafe_direction, b.strafe_timer, b.distance_timer]", "[-1,0,0]"},
         {"b.strafe_interval >= 2 && b.strafe_interval <= 8 && b.distance_interval >= 1 && b.distance_interval <= 6", "true"},
         {"b.target_distance >= 200 && b.target_distance <= 400", "true"}});
}

TEST_F(Enemies, TheBossPullsTheTriggerEverySixTenths) {
  player(1000, 1000);
  give("pistol");
  eval(
      "b = instance_create_layer(700, 1000, \"layMobs\", oEnemyBoss); p.invulnerable = true; p.invulnerable_timer = 100; b.gun.fire_timer "
      "= -1");
  int pulls = 0;
  std::vector<int> at;
  for (int frame = 1; frame <= 200; ++frame) {
    step(1, 0.02);
    if (eval("b.gun.is_firing") == "true") at.push_back(frame), ++pulls;
  }
  // From 0.5 down to -0.1 in steps of 0.02: thirty frames, then again. (The very first steps are of another length.)
  ASSERT_GE(pulls, 6);
  for (std::size_t i = 1; i < at.size(); ++i) EXPECT_EQ(at[i] - at[i - 1], 30);
  eval("b.x = p.x - 1700; b.y = p.y; b.shoot_timer = -1");
  step(1, 0.02);
  EXPECT_EQ(eval("b.gun.is_firing"), "false") << "out of sight";
}

TEST_F(Enemies, LootIsDrawnFromAllModifiers) {
  player(0, 0);
  eval("seen = {}");
  for (int i = 0; i < 400; ++i) eval("e = instance_create_layer(900, 900, \"layMobs\", oEnemy); e.takeDamage(100, 0, 0, 0)");
  check({{"global.statistics.kills", "400"}});
  const double dropped = number("instance_number(oModifierPickup)");
  EXPECT_GT(dropped, 20) << "one in ten, give or take three deviations";
  EXPECT_LT(dropped, 60);
  for (int i = 0; i < 120; ++i) eval("q = instance_create_layer(5, 5, \"layMobs\", oBullet); with (q) { createRandomPickup() } 1");
  eval("with (oModifierPickup) { variable_struct_set(global.seen, modifier.name, x) } 1");
  check({{"array_length(variable_struct_get_names(seen))", "10"}});
}

TEST_F(Enemies, ModifierPickupsGoIntoTheGunOrStay) {
  player(500, 500);
  eval("m = createModifierPickup(560, 500, global.modifiers.power)");
  const auto press_e = [&] {
    key('E', true);
    step();
    key('E', false);
    step();
  };
  press_e();
  check({{"instance_exists(m)", "true"}, {"m.pickup_hint", "Press E to pick up mod"}});  // no gun
  give("rusty_pistol");
  press_e();
  check({{"instance_exists(m)", "true"}, {"p.gun.bullet_damage", "8"}});  // its only slot is taken
  give("pistol");
  eval("with (oGunPickup) { instance_destroy() } 1");
  press_e();
  check({{"instance_exists(m)", "false"}, {"p.gun.bullet_damage", "22.50"}, {"p.gun.modifiers[1] == global.modifiers.power", "true"}});
  eval("m = createModifierPickup(560, 500, noone)");
  press_e();
  check({{"instance_exists(m)", "true"}});
  eval("m.modifier = global.modifiers.speed; p.takeMod(m)");
  check({{"instance_exists(m)", "false"}, {"p.gun.bullet_speed", "4550"}});
}

TEST_F(Enemies, PickupsAreHighlightedWithinTheirRange) {
  player(500, 500);
  eval(
      "m = createModifierPickup(628, 500, global.modifiers.beam); n = createGunPickup(500, 628.01, global.weapons.smg); "
      "o = instance_create_layer(500, 450, \"layPickups\", oPickup)");
  step();
  check({{"[m.is_highlighted, n.is_highlighted, o.is_highlighted]", "[true,false,true]"}});
  ask({{"log", true}});
  eval("o.onPickup()");
  EXPECT_EQ(ask({{"log", true}})["log"].dump(), "[\"ERROR: onPickup not implemented in oPickup\"]");
  int hints = 0, discs = 0;
  const auto draws = ask({{"draws", true}})["draws"];
  for (const auto& call : draws) {
    hints += call["call"] == "draw_text" && call["args"][2] == "Press E to pick up mod" && call["args"][1] == 470;
    discs += call["object"] == "oModifierPickup" && (call["call"] == "draw_circle_color" || call["call"] == "draw_circle");
  }
  EXPECT_EQ(hints, 1);
  EXPECT_EQ(discs, 2);
  eval("with (oPlayer) { instance_destroy() } 1");
  step();
  check({{"[m.is_highlighted, o.is_highlighted]", "[false,false]"}});
}

// What a frame sends with the hint and does not send without it: letters, centred over the pickup and standing on the line of 30 px above.
TEST_F(Enemies, AHintStandsOverItsPickup) {
  constexpr float kShown = 2.0F / 3, kLine = 470 * kShown;  // the room is shown at two thirds
  player(500, 500);
  eval("m = createModifierPickup(560, 500, global.modifiers.power)");
  recorder->keeps_vertices = true;
  const auto frame = [&](const std::string& hint) {
    eval("m.pickup_hint = \"" + hint + "\"");
    step();
    std::multiset<std::pair<float, float>> places;
    for (const gpu::RecordedDraw& draw : recorder->draws) {
      for (const gpu::Vertex& vertex : draw.vertices) {
        if (vertex.y < kLine + 9) places.emplace(vertex.x, vertex.y);  // what moves further down is the pickup's picture
      }
    }
    return places;
  };
  frame("");
  const auto without = frame(""), with = frame("HOOH");
  std::vector<std::pair<float, float>> letters;
  std::set_difference(with.begin(), with.end(), without.begin(), without.end(), std::back_inserter(letters));
  ASSERT_EQ(letters.size(), 4U * 6U);
  float left = 1e9F, right = -1e9F, top = 1e9F, bottom = -1e9F;
  for (const auto& [x, y] : letters)
    left = std::min(left, x), right = std::max(right, x), top = std::min(top, y), bottom = std::max(bottom, y);
  EXPECT_NEAR((left + right) / 2, 560 * kShown, 1);
  EXPECT_LE(bottom, kLine);
  EXPECT_GT(bottom, kLine - (bottom - top)) << "right over the line, not a line higher";
}

}  // namespace
}  // namespace arena::test
