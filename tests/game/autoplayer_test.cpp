// The autoplayer picks up what makes its gun better, and leaves the rest.
#include "game/autoplayer/autoplayer.h"

#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class AutoplayerTest : public PlayedGame {
 protected:
  AutoplayerTest() {
    step(2);
    eval(
        "p = instance_create_layer(1000, 1000, \"layPlayer\", oPlayer); shot = global.modifiers.projectile; lob = "
        "global.modifiers.grenade; 1");
  }
};

TEST_F(AutoplayerTest, TakesWhatIsBetter) {
  // One shot a second, its only slot filled: a damage of 10 a second, and one of 0.2 * 10 for grenades.
  const auto weapon = [](const std::string& damage, const std::string& modifier) {
    return "new Weapon(\"w\", {base_damage: " + damage + ", base_fire_rate: 1, base_bullet_count: 1, max_slots: 1, modifiers: [" +
           modifier + "]})";
  };
  const auto gun = [&](const std::string& damage, const std::string& modifier) {
    return "createGunPickup(700, 1000, " + weapon(damage, modifier) + ")";
  };
  const std::string modifier = "createModifierPickup(700, 1000, global.modifiers.power)";
  const struct {
    const char* label;
    std::string held, lies_there;
    bool is_taken;
  } rows[] = {
      {"any weapon is better than none", "", gun("0.1", "shot"), true},
      {"one that cannot shoot is not", "", gun("50", "noone"), false},
      {"a little better", weapon("10", "shot"), gun("10.4", "shot"), false},
      {"better", weapon("10", "shot"), gun("10.6", "shot"), true},
      {"grenades mostly miss", weapon("10", "shot"), gun("52", "lob"), false},
      {"unless they are mighty", weapon("10", "shot"), gun("53", "lob"), true},
      {"no slot for a modifier", weapon("10", "shot"), modifier, false},
      {"a slot for it", "global.weapons.pistol", modifier, true},
  };
  autoplayer::ArenaPlayer player;
  for (const auto& row : rows) {
    eval("p.x = 1000; p.y = 1000; p.gun = noone; 1");
    if (!row.held.empty()) eval("p.takeGun(createGunPickup(p.x, p.y, " + row.held + ")); 1");
    eval("there = " + row.lies_there);
    for (int i = 0; i < 240 && eval("instance_exists(there)") == "true"; ++i) {
      player.play();
      step();
    }
    EXPECT_EQ(eval("instance_exists(there)"), row.is_taken ? "false" : "true") << row.label;
    eval("with (oGunPickup) { instance_destroy() } with (oModifierPickup) { instance_destroy() } 1");
  }
}

}  // namespace
}  // namespace arena::test
