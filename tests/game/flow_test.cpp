// From the preparation room through waves and rewards, by keys and pointer.
#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "engine/audio/audio.h"
#include "engine/host/state_hash.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/moments.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

constexpr int kKeyEscape = 27;

class Preparation : public PlayedGame {
 protected:
  Preparation() : PlayedGame("rPrepare") {}
  std::string room_after_a_frame() { return ask({{"step", 1}})["room"].get<std::string>(); }
};

TEST_F(Preparation, ThePlayerStandsArmedBesideTheFirstModifier) {
  check({{"[oPlayer.gun.name, oPlayer.gun.max_slots, oPlayer.gun.faction]", "[\"Pistol\",3,1]"},
         {"instance_number(oModifierPickup)", "1"},
         {"point_distance(oPlayer.x, oPlayer.y, oModifierPickup.x, oModifierPickup.y) <= 128", "true"},
         {"[oPrepare1.start_timer, oPrepare1.start_timer_on]", "[60,false]"}});
  step(10);
  check({{"[oPrepare1.start_timer, oPrepare1.start_timer_on]", "[60,false]"}});
  eval("m = oModifierPickup.modifier");
  key('E', true);
  step();  // taken, and being a key it opens the arena
  check({{"room_get_name(room)", "rArena"}, {"instance_exists(oPrepare1)", "false"}, {"oPlayer.gun", "-4"}, {"oPlayer.hp", "100"}});
}

TEST_F(Preparation, TheHelpShowsThePlayersLayout) {
  const auto label = [&](int code, const char* text) {
    InputEvent event;
    event.type = InputEvent::Type::kKeyLabel;
    event.code = code;
    event.text = text;
    push_input(event);
  };
  const auto texts = [&] {
    step();
    std::string all;
    const auto draws = ask({{"draws", true}})["draws"];
    for (const auto& call : draws) {
      if (call["call"] == "draw_text" || call["call"] == "draw_text_transformed") all += call["args"][2].get<std::string>() + "|";
    }
    return all;
  };
  eval("oModifierPickup.is_highlighted = true");
  EXPECT_NE(texts().find("|W A S D  move "), std::string::npos);
  label('W', "Ц");
  label('E', "У");
  const std::string changed = texts();  // while the game runs
  EXPECT_NE(changed.find("|Ц A S D  move "), std::string::npos) << changed;
  EXPECT_NE(changed.find("|У  pick up "), std::string::npos) << changed;
  EXPECT_NE(changed.find("Press У to pick up mod|"), std::string::npos) << changed;
  label('W', "");
  label('E', "");
  step();
}

TEST_F(Preparation, TheCountdownOpensTheArena) {
  eval("with (oModifierPickup) { instance_destroy() } 1");
  step();
  check({{"oPrepare1.start_timer_on", "true"}, {"oPrepare1.start_timer < 60", "true"}});
  eval("oPrepare1.start_timer = 0.05");
  ask({{"sounds", true}});
  step(4);
  check({{"room_get_name(room)", "rArena"}});
  bool jingle = false;
  const auto sounds = ask({{"sounds", true}})["sounds"];
  for (const auto& sound : sounds) jingle = jingle || (sound["sound"] == 0 && sound["gain"] == 0.25);
  EXPECT_TRUE(jingle);
}

TEST_F(Preparation, EscapeLeavesAndIsNoOtherKey) {
  key(kKeyEscape, true);
  const auto reply = ask({{"step", 1}});
  EXPECT_EQ(reply["ended"], true);
  EXPECT_EQ(reply["room"], "rPrepare");
}

class Waves : public PlayedGame {
 protected:
  Waves() : PlayedGame("rArena") { step(2); }
  void start_wave(int number) { eval("oLevel1.wave_count = " + std::to_string(number - 1) + "; oLevel1.wave_timer = 0"), step(); }
  void kill_all() { eval("with (oParentEnemy) { instance_destroy() } 1"); }
  // Clicks the middle of a GUI place.
  void click(double x, double y) {
    ask({{"mouse", {x, y}}, {"gui", true}});
    step();
    ask({{"button", 1}, {"down", true}});
    step();
    ask({{"button", 1}, {"down", false}});
    step();
  }
};

TEST_F(Waves, GrowByFourAndEveryTenthIsABoss) {
  check({{"[oLevel1.wave_count, oLevel1.wave_time, oLevel1.wave_pause, oLevel1.reward_screen]", "[0,60,false,-1]"},
         {"instance_number(oGunPickup) == 1 && oGunPickup.weapon_stats == global.weapons.omega_cannon", "true"},
         {"[oGunPickup.x - oPlayer.x, oGunPickup.y - oPlayer.y]", "[0,-100]"}});
  step(60 * 4 + 50);
  check({{"instance_number(oParentEnemy)", "0"}, {"oLevel1.reward_screen", "-1"}});  // no reward before the first wave
  step(15);
  check({{"[instance_number(oEnemy), oLevel1.wave_count, oLevel1.wave_time]", "[4,1,70]"}, {"oLevel1.wave_timer > 59.7", "true"}});
  const struct { int wave, mobs, bosses; } rows[] = {{2, 8, 0}, {9, 36, 0}, {10, 0, 1}, {11, 44, 0}, {20, 0, 1}};
  for (const auto& row : rows) {
    kill_all();
    start_wave(row.wave);
    EXPECT_EQ(number("instance_number(oEnemy)"), row.mobs) << "wave " << row.wave;
    EXPECT_EQ(number("instance_number(oEnemyBoss)"), row.bosses) << "wave " << row.wave;
  }
  kill_all();
  start_wave(30 + 9);
  eval("lo = 99999; hi = 0; with (oEnemy) { global.lo = min(global.lo, xstart, ystart); global.hi = max(global.hi, xstart, ystart) } 1");
  EXPECT_GE(number("lo"), 500);
  EXPECT_LE(number("hi"), 3572);
  EXPECT_LT(number("lo"), 600);
  EXPECT_GT(number("hi"), 3472) << "all of the room's width, also downwards";
}

TEST_F(Waves, HaveAnEndWhateverTheirNumber) {
  eval("oLevel1.wave_count = 1e12; oLevel1.wave_timer = 0");
  step();
  EXPECT_EQ(number("instance_number(oEnemy)"), 20000);
  kill_all();
  eval("oLevel1.wave_count = NaN; oLevel1.wave_timer = 0");
  step();
  eval("oLevel1.wave_count = -infinity; oLevel1.wave_timer = 0");
  step();
  EXPECT_EQ(number("instance_number(oEnemy)"), 0);
}

TEST_F(Waves, AClearedWaveOffersOneOfTwoCards) {
  start_wave(3);
  kill_all();
  step();
  check({{"[oLevel1.wave_pause, oLevel1.wave_timer]", "[true,5]"},
         {"s = oLevel1.reward_screen; [s.name, array_length(s.content)]", "[\"rewardScreen\",2]"},
         {"s.content[0].getData(\"gun\").rarity", "2"},  // ceil(3 / 2)
         {"array_length(s.content[0].content)", "4"},
         {"s.content[0].content[2].value", "________________________"},
         {"s.content[0].color == getColorByRarity(2)", "true"}});
  step(60);
  check({{"[oLevel1.wave_timer, oLevel1.wave_count]", "[5,3]"}});  // the clock stands still
  eval("gun = s.content[0].getData(\"gun\"); px = oPlayer.x; with (oGunPickup) { instance_destroy() } 1");
  click(640 - 108, 360);
  check({{"oLevel1.wave_pause", "false"},
         {"[instance_number(oGunPickup), oGunPickup.x == px, oGunPickup.weapon_stats == gun]", "[1,true,true]"},
         {"instance_number(oModifierPickup)", "0"}});
  step(60 * 5);
  check({{"oLevel1.wave_count", "4"}});
  kill_all();
  step();
  eval("mod = oLevel1.reward_screen.content[1].getData(\"mod\")");
  click(640 + 108, 360);
  check({{"[instance_number(oModifierPickup), oModifierPickup.modifier == mod]", "[1,true]"}});
}

TEST_F(Waves, DeathsAndRewardsAreMarked) {
  std::vector<std::string> marks;
  hear_moments([&](std::string_view text) { marks.emplace_back(text); });
  start_wave(9);
  kill_all();
  step(2);
  click(640 - 108, 360);
  start_wave(10);
  kill_all();
  step(2);
  click(640 + 108, 360);
  eval("oPlayer.takeDamage(1e9, 0, 0, 0)");
  EXPECT_EQ(marks, (std::vector<std::string>{"wave 9", "reward", "boss wave 10", "reward", "death"}));
  hear_moments({});
  check({{"moment_mark(\"nobody listens\")", "undefined"}});
}

TEST_F(Waves, TheWaitIsOnlyCutShortOnceAndTheScreenDoesNotStopEscape) {
  start_wave(9);
  kill_all();
  step();
  eval("first = oLevel1.reward_screen");
  step(5);
  check({{"oLevel1.reward_screen == first", "true"}});
  key(kKeyEscape, true);
  EXPECT_EQ(ask({{"step", 1}})["ended"], true);
}

TEST_F(Waves, TheHudShowsTheGunsSlots) {
  check({{"array_length(global.ui_weapon.content)", "0"}});
  eval("oPlayer.takeGun(oGunPickup)");
  check({{"array_length(global.ui_weapon.content)", "7"},  // the picture and six slots
         {"array_length(global.ui_weapon.content[1].content)", "1"},
         {"array_length(global.ui_weapon.content[2].content)", "0"},
         {"global.ui_weapon.content[1].content[0].value", "24"},
         {"w = global.ui_weapon.content; [w[0].widget_type, w[1].widget_type, w[6].widget_type]", "[\"TuiImage\",\"TuiBox\",\"TuiBox\"]"}});
  step();
  const double slot_x = number("w[6].rect_x"), slot_y = number("w[6].rect_y");
  bool is_seen = false;  // an empty slot, too
  const auto draws = ask({{"draws", true}})["draws"];
  for (const auto& call : draws)
    is_seen = is_seen || (call["call"] == "draw_sprite_nineslice" && call["args"][2] == slot_x && call["args"][3] == slot_y);
  EXPECT_TRUE(is_seen);
  eval("oPlayer.gun.addModifier(global.modifiers.power); oControl.updateWeaponUI()");
  check({{"array_length(global.ui_weapon.content[2].content)", "1"}});
  eval("oPlayer.dropGun()");
  check({{"array_length(global.ui_weapon.content)", "0"}});
  eval("with (oPlayer) { instance_destroy() } 1");
  check({{"oControl.updateWeaponUI()", "undefined"}});
}

TEST_F(Waves, TheGunFiresAcrossTheWeaponPanel) {
  eval("oPlayer.takeGun(oGunPickup)");
  step();
  const double x = number("global.ui_weapon.rect_x + 40"), y = number("global.ui_weapon.rect_y + 30");
  const auto fires = [&](double at_x, double at_y) {
    ask({{"mouse", {at_x, at_y}}, {"gui", true}});
    step();
    return eval("oPlayer.gun.is_firing");
  };
  for (const bool begins_on_panel : {false, true}) {
    EXPECT_EQ(fires(640, begins_on_panel ? y : 500), "false");
    ask({{"button", 1}, {"down", true}});
    EXPECT_EQ(fires(begins_on_panel ? x : 640, begins_on_panel ? y : 500), "true");
    EXPECT_EQ(fires(x, y), "true");
    EXPECT_EQ(fires(640, 500), "true");
    ask({{"button", 1}, {"down", false}});
    EXPECT_EQ(fires(640, 500), "false");
  }
  // A card of the reward keeps the click to itself, from its first frame on.
  start_wave(3);
  kill_all();
  step(2);
  ask({{"button", 1}, {"down", true}});
  EXPECT_EQ(fires(640 - 108, 360), "false");
  EXPECT_EQ(fires(640 - 108, 360), "false");
}

TEST_F(Waves, TheCamerasOverlayIsDrawnWhenItIsOn) {
  const auto calls = [&] {
    step();
    std::string seen;
    const auto draws = ask({{"draws", true}})["draws"];
    for (const auto& call : draws) {
      if (call["object"] == "oControl" && call["event"] == "Draw_73") seen += call["call"].get<std::string>() + " ";
    }
    return seen;
  };
  EXPECT_EQ(calls(), "");
  eval("c = getTarnCamera(); c.toggleDebugMode()");
  const std::string seen = calls();
  for (const char* call : {"draw_rectangle", "draw_circle", "draw_line", "draw_text"})
    EXPECT_NE(seen.find(call), std::string::npos) << call;
  check(
      {{"draw_set_colour(77); draw_set_alpha(0.5); draw_set_font(3); draw_set_halign(2); draw_set_valign(1); c.drawDebug(); "
        "[draw_get_colour(), draw_get_alpha(), draw_get_font(), draw_get_halign(), draw_get_valign()]",
        "[77,0.50,3,2,1]"}});
  eval("c.setTarget(noone); c.toggleDebugMode()");
  EXPECT_EQ(calls(), "");
}

// The game itself in windows of all sizes, from the preparation room to the reward.
TEST_F(Preparation, FitsEveryWindow) {
  struct Size {
    int width, height;
    double scale;
  };
  for (const Size& size :
       {Size{1280, 720, 1}, {2560, 1440, 2}, {640, 480, 0}, {3440, 1440, 2}, {1366, 768, 1}, {1024, 768, 0}, {800, 1200, 0}}) {
    SCOPED_TRACE(std::to_string(size.width) + " x " + std::to_string(size.height));
    InputEvent event;
    event.type = InputEvent::Type::kWindowSize;
    event.code = size.width;
    event.value = size.height;
    push_input(event);
    step();
    const double aspect = static_cast<double>(size.width) / size.height;
    // The room keeps its form and is seen whole, in the middle.
    eval("c = view_camera[0]; w = camera_get_view_width(c); h = camera_get_view_height(c)");
    EXPECT_NEAR(number("w / h"), aspect, 1e-9);
    check({{"[w >= room_width - 0.001, h >= room_height - 0.001, min(w - room_width, h - room_height) < 0.001]", "[true,true,true]"}});
    EXPECT_NEAR(number("camera_get_view_x(c) * 2 + w"), 1280, 1e-9);
    if (size.scale > 0) {
      EXPECT_NEAR(number("window_get_width() / display_get_gui_width()"), size.scale, 0.01);
    }
    // Texts, too, stay within it.
    const auto draws = ask({{"draws", true}})["draws"];
    for (const auto& call : draws) {
      if (call["call"] != "draw_text_transformed") continue;
      eval("draw_set_font(" + std::string(call["args"][3] == 4 ? "3" : "2") + ")");
      const double scale = call["args"][3], wide = number("string_width(" + call["args"][2].dump() + ")") * scale;
      EXPECT_LE(wide, number("display_get_gui_width()")) << call.dump();
    }
    eval("room_goto(rArena)");
    step(2);
    if (size.scale > 0) {
      EXPECT_NEAR(number("window_get_width() / display_get_gui_width()"), size.scale, 0.01);
    }
    eval("oPlayer.takeGun(oGunPickup); oLevel1.createReward()");
    step();
    const int widgets = static_cast<int>(number("array_length(global.game_ui.order)"));
    EXPECT_GT(widgets, 30);
    for (int i = 0; i < widgets; ++i) {
      eval("w = global.game_ui.order[" + std::to_string(i) + "]; 1");
      EXPECT_EQ(eval("[w.rect_x >= 0, w.rect_y >= 0, w.rect_x + w.rect_width <= display_get_gui_width(), w.rect_y + w.rect_height <= "
                     "display_get_gui_height()]"),
                "[true,true,true,true]")
          << eval("[w.widget_type, w.value, w.rect_x, w.rect_y, w.rect_width, w.rect_height]");
    }
    check({{"p = global.ui_weapon; b = global.ui_player_hud; [b.rect_width, p.rect_width]", "[256,512]"}});
    eval("game_restart()");
    step();
  }
}

TEST_F(Waves, DeathShowsTheKills) {
  eval("global.statistics.kills = 12; oPlayer.takeGun(oGunPickup); oPlayer.takeDamage(150, 0, 0)");
  check({{"oDeathScreen.text", "You are dead!\nKills: 12\nPress SPACE to restart!"},
         {"[oPlayer.is_dead, oPlayer.gun, instance_number(oGunPickup)]", "[true,-4,1]"}});
  step();
  bool drawn = false;
  const auto draws = ask({{"draws", true}})["draws"];
  for (const auto& call : draws) {
    drawn = drawn || (call["call"] == "draw_text_transformed" && call["args"][0] == 640 && call["args"][1] == 360 && call["args"][3] == 2);
  }
  EXPECT_TRUE(drawn);
  key(32, true);
  step();
  check({{"instance_exists(oDeathScreen)", "false"}, {"global.statistics.kills", "0"}});
}

// Line by line, so that a failure names the values that differ.
void expect_same_state(const std::string& first, const std::string& again, const std::string& when) {
  std::istringstream one(first), two(again);
  std::string left, right, before;
  for (int line = 1; std::getline(one, left) && std::getline(two, right); before = left, ++line) {
    if (left != right) {
      ADD_FAILURE() << when << ", line " << line << " after '" << before << "': " << left << ", but after the restart " << right;
      return;
    }
  }
  EXPECT_EQ(first.size(), again.size()) << when;
}

// From both rooms, after a fight with frames of another length, and by Space on the death screen as well as by the built-in.
TEST(Restart, LeadsToTheStateOfAFirstStart) {
  struct Played : TestGame {
    explicit Played(const char* room) : TestGame(room) {}
    void TestBody() override {}
    using TestGame::eval, TestGame::key, TestGame::step, TestGame::ask;
    // At the start of a run, and after some of its frames.
    std::vector<std::string> run() {
      std::vector<std::string> states{described()};
      for (const int frames : {1, 2, 400}) step(frames), states.push_back(described());
      return states;
    }
    // Without the input: where the pointer is, and what was pressed last, is the player's.
    static std::string described() {
      std::string state = host::describe_state();
      const std::size_t input = state.find("-- input\n");
      return state.erase(input, state.find("-- ", input + 1) - input);
    }
    void fight() {
      key('D', true);
      ask({{"mouse", {900, 500}}});
      ask({{"button", 1}, {"down", true}});
      eval("layer_create(5, \"mine\"); random(5); global.another = {a: [1]}; ds_list_create(); audio_play_sound(1, 1, true)");
      eval("if_any = instance_exists(oLevel1); with (oLevel1) { wave_count = 6; wave_timer = 0 } 1");
      eval("with (oPlayer) { takeGun(createGunPickup(x, y, global.weapons.shotgun)) } 1");
      step(150, 0.02);
      eval("with (oEnemy) { takeDamage(500, 0, 0, 50) } 1");
      step(100, 0.02);
    }
  };
  for (const char* room : {"rPrepare", "rArena"}) {
    Played game(room);
    const std::vector<std::string> first = game.run();
    for (const bool by_space : {false, true}) {
      game.fight();
      game.ask({{"mouse", {0, 0}}, {"gui", true}});
      if (by_space) {
        game.eval("with (oPlayer) { invulnerable = false; takeDamage(1000, 0, 0) } 1");
        game.step(1, 0.02);
        game.key(32, true);
      } else {
        game.eval("game_restart()");
      }
      game.step(1, 0.02);
      const std::vector<std::string> again = game.run();
      for (std::size_t i = 0; i < first.size(); ++i) {
        expect_same_state(first[i], again[i], std::string(room) + (by_space ? ", Space" : "") + ", moment " + std::to_string(i));
      }
    }
  }
}

// A device that takes note of what it should play.
class Listener final : public audio::Device {
 public:
  explicit Listener(std::size_t& most) : most_(most) {}
  void load(const std::vector<audio::Clip>&) override {}
  void forget() override {}
  void follow(const std::vector<audio::Voice>& voices, const audio::Device::Listener&, audio::Falloff, double) override {
    most_ = std::max(most_, voices.size());
  }

 private:
  std::size_t& most_;
};

TEST(SoundDevice, TheSameGameWithAndWithoutADevice) {
  std::size_t most = 0;
  std::string hashes[2];
  for (int with_device = 0; with_device < 2; ++with_device) {
    std::string problem;
    host::GameOptions options;
    options.data = data::open_data_file(data_file_path(), problem);
    options.room = "rArena";
    options.extra_objects = probe_objects();
    options.has_seed = true;
    options.seed = 4;
    if (with_device == 1) options.audio_device = std::make_unique<Listener>(most);
    const host::Started started = host::Game::start(std::move(options));
    ASSERT_NE(started.game, nullptr) << started.problem;
    console::Console console(*started.game);
    console.answer(R"({"step": 5})");
    console.answer(
        R"x({"eval": "oPlayer.takeGun(createGunPickup(0, 0, global.weapons.shotgun)); oLevel1.wave_count = 8; oLevel1.wave_timer = 0"})x");
    console.answer(R"({"button": 1, "down": true})");
    console.answer(R"({"step": 400})");
    console.answer(R"x({"eval": "with (oEnemy) { takeDamage(60, x, y - 9, 50) } 1"})x");
    console.answer(R"({"step": 200})");
    hashes[with_device] = console.answer(R"({"hash": true})");
  }
  EXPECT_EQ(hashes[0], hashes[1]);
  EXPECT_GT(most, 3u);
}

TEST_F(Waves, SoundsOfOneAssetShareAVoiceForAMoment) {
  audio::Audio& model = audio::audio();
  const auto groups = [&](int sound) {
    int count = 0;
    for (const audio::Voice& voice : model.sounding()) count += voice.sound == sound;
    return count;
  };
  eval("a = playSoundAt(1, oPlayer.x + 1900, oPlayer.y)");
  step(2);  // 33 ms
  eval("b = playSoundAt(1, oPlayer.x, oPlayer.y); c = audio_play_sound(1, 1, false)");
  EXPECT_EQ(groups(1), 2) << "those with a place, and the one without";
  for (const audio::Voice& voice : model.sounding()) {
    if (voice.sound != 1 || !voice.is_positional) continue;
    EXPECT_EQ(voice.x, number("oPlayer.x")) << "the loudest is heard";
  }
  eval("audio_sound_pitch(b, 0.5)");
  check({{"a != b && audio_exists(a) && audio_exists(b) && audio_is_playing(b)", "true"},
         {"[audio_sound_get_pitch(a), audio_sound_get_pitch(b)]", "[1,0.50]"},
         {"audio_stop_sound(a); [audio_is_playing(a), audio_is_playing(b)]", "[false,true]"}});
  EXPECT_EQ(groups(1), 2);
  step(2);
  eval("d = playSoundAt(1, oPlayer.x, oPlayer.y)");
  EXPECT_EQ(groups(1), 3) << "67 ms after the first";
  for (int i = 0; i < 300; ++i) eval("audio_play_sound(0, 0, true); 1");
  EXPECT_EQ(groups(0), 300) << "loops keep to themselves";
  check({{"audio_exists(audio_play_sound(5, 0, false))", "true"}});
}

// Preparation, waves, loot, rewards, death and the next run, with nobody at the keys.
TEST(Demo, PlaysWithoutAnError) {
#ifdef ARENA_STRESS
  const std::string frames = "900";
#else
  const std::string frames = "21600";
#endif
  EXPECT_EQ(run_program("--headless --demo --seed 2 --frames " + frames), 0);
}

}  // namespace
}  // namespace arena::test
