// Gamepads: whose is which, what their sticks say, and what becomes of nonsense.
#include "runtime/input/gamepads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "engine/host/state_hash.h"
#include "runtime/instances_loop/random.h"
#include "runtime/reports/log.h"
#include "tests/support/long_runs.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

PadDescription make(const std::string& guid, const std::string& serial) {
  return {guid, serial, "Pad " + guid + serial, "letters", "vibration light"};
}

// Eight players, a pad each, of three makes. Pads go and come in any order, one at a time, some at once, all at once in the same frame, or
// in the middle of a frame of other input; the system counts them anew each time.
TEST(Gamepads, AreNeverSwapped) {
  RandomGenerator chance(from_environment("ARENA_SEED", 11));
  const auto below = [&](int count) { return static_cast<int>(chance.integer(0, count - 1)); };
  struct Owned {
    PadDescription pad;
    std::int32_t device = -1;
    int place = -1;
  };
  std::vector<Owned> all;
  for (int i = 0; i < kPads; ++i) all.push_back({make("guid" + std::to_string(i % 3), std::to_string(i))});
  std::int32_t next_device = 0;
  const auto plug = [&](Owned& each) { push_pad(each.device = next_device++, each.pad); };
  const auto unplug = [&](Owned& each) { push_pad_gone(std::exchange(each.device, -1)); };
  for (Owned& each : all) plug(each);
  begin_input_frame();
  const auto place_of = [&](const Owned& of) {
    for (int place = 0; place < kPads; ++place) {
      const Pad& pad = gamepads().at(static_cast<std::size_t>(place));
      if (pad.is_connected && pad.name == of.pad.name) return place;
    }
    return -1;
  };
  for (Owned& each : all) each.place = place_of(each);
  const int rounds = 10000 * longer();
  for (int round = 0; round < rounds; ++round) {
    if (below(20) == 0) {  // all leave, and come in another order
      for (Owned& each : all) {
        if (each.device >= 0) unplug(each);
      }
      std::vector<int> order = {0, 1, 2, 3, 4, 5, 6, 7};
      for (std::size_t i = order.size() - 1; i > 0; --i)
        std::swap(order[i], order[static_cast<std::size_t>(below(static_cast<int>(i) + 1))]);
      for (const int each : order) plug(all[static_cast<std::size_t>(each)]);
    } else {
      Owned& each = all[static_cast<std::size_t>(below(kPads))];
      each.device >= 0 ? unplug(each) : plug(each);
    }
    if (below(50) == 0) {  // two players change places
      const int first = below(kPads), second = below(kPads);
      begin_input_frame();
      if (first != second) swap_gamepads(first, second);
      for (Owned& each : all) each.place = each.place == first ? second : each.place == second ? first : each.place;
    }
    const int pressed = below(kPads);
    const Owned& player = all[static_cast<std::size_t>(pressed)];
    if (player.device >= 0) push_pad_button(player.device, 0, round % 2 == 0);
    if (below(3) != 0) continue;
    begin_input_frame();
    for (const Owned& each : all) ASSERT_EQ(place_of(each), each.device >= 0 ? each.place : -1) << round << " " << each.pad.name;
  }
}

// Pads of one make that have no number of their own: one after the other goes and comes back.
TEST(Gamepads, ThatAreAlikeComeBackToTheirPlaces) {
  for (std::int32_t device = 0; device < kPads; ++device) push_pad(device, make("same", ""));
  push_pad(8, make("one", "too many"));
  push_pad_button(8, 0, true);
  begin_input_frame();
  EXPECT_EQ(take_log(), std::vector<std::string>{"WARNING: there are 8 gamepads already: Pad onetoo many takes no part"});
  for (const int place : {3, 0, 7, 3}) {
    push_pad_gone(gamepads().at(static_cast<std::size_t>(place)).device);
    begin_input_frame();
    EXPECT_TRUE(gamepads().at(static_cast<std::size_t>(place)).was_unplugged);
    push_pad(100 + place, make("same", ""));
    begin_input_frame();
    EXPECT_TRUE(gamepads().at(static_cast<std::size_t>(place)).was_plugged);
    EXPECT_EQ(gamepads().at(static_cast<std::size_t>(place)).device, 100 + place);
    push_pad_gone(100 + place);
    push_pad(place, make("same", ""));
    begin_input_frame();
  }
  push_pad_gone(-1);
  begin_input_frame();
  EXPECT_TRUE(std::none_of(gamepads().begin(), gamepads().end(), [](const Pad& pad) { return pad.is_connected; }));
}

class PadGame : public TestGame {
 protected:
  PadGame() {
    take_log();
    push_pad(5, make("g", "s"));
    step();
  }
  // What two axes give, in thousandths.
  std::string axes(int first, int second) {
    const auto thousandths = [](int axis) { return "round(1000 * gamepad_get_axis(0, " + std::to_string(axis) + "))"; };
    return eval("[" + thousandths(first) + ", " + thousandths(second) + "]");
  }
};

TEST_F(PadGame, AnAxisHasFourThresholdsAndACurve) {
  check({{"gamepad_get_thresholds(0, 0)", "[0.50,0.40,0.20,0.95]"},
         {"gamepad_set_thresholds(0, 0, 0.8, 0.6, 0.25, 0.75)", "undefined"},
         {"gamepad_get_thresholds(0, 0)", "[0.80,0.60,0.25,0.75]"},
         {"gamepad_get_thresholds(0, 1)", "[0.50,0.40,0.25,0.75]"},
         {"gamepad_get_thresholds(0, 2)", "[0.50,0.40,0.20,0.95]"}});
  struct Case {
    double position;
    const char* expected;  // to the right: p pressed, r released, d down
  };
  // The button: down from 0.8 on, up below 0.6.
  for (const Case& each :
       {Case{0.79, "---"}, {0.8, "p-d"}, {0.6, "--d"}, {0.7, "--d"}, {0.59, "-r-"}, {0.79, "---"}, {1, "p-d"}, {-1, "-r-"}}) {
    push_pad_axis(5, 0, each.position);
    step();
    const Switch& now = gamepads()[0].buttons[24];
    EXPECT_EQ(std::string(now.pressed ? "p" : "-") + (now.released ? "r" : "-") + (now.down ? "d" : "-"), each.expected) << each.position;
  }
  EXPECT_EQ(eval("gamepad_check_button(0, 23)"), "true") << "far to the left";
  // There and back between two frames.
  for (const double position : {1.0, 0.0}) push_pad_axis(5, 0, position);
  step();
  check(
      {{"[gamepad_check_button(0, 24), gamepad_check_button_pressed(0, 24), gamepad_check_button_released(0, 24), "
        "gamepad_check_button_released(0, 23)]",
        "[false,true,true,true]"}});

  // The stick: 0 inside of the inner circle, 1 outside of the outer one, straight ahead everywhere.
  const auto stick = [&](double x, double y) {
    push_pad_axis(5, 0, x);
    push_pad_axis(5, 1, y);
    step();
    return axes(0, 1);
  };
  EXPECT_EQ(stick(0.25, 0), "[0,0]");
  EXPECT_EQ(stick(0.15, 0.2), "[0,0]");
  EXPECT_EQ(stick(0.5, 0), "[500,0]");
  EXPECT_EQ(stick(0, -0.5), "[0,-500]");
  EXPECT_EQ(stick(0.3, 0.4), "[300,400]") << "half way: the distance is 0.5";
  EXPECT_EQ(stick(0.75, 0), "[1000,0]");
  EXPECT_EQ(stick(-1, 0), "[-1000,0]");
  EXPECT_EQ(stick(1, 1), "[707,707]") << "a corner is no further than the edge";
  eval("gamepad_set_curve(0, 1, 2)");
  EXPECT_EQ(stick(0.5, 0), "[250,0]");
  EXPECT_EQ(stick(-0.3, 0.4), "[-150,200]");
  push_pad_axis(5, 4, 0.5);
  push_pad_axis(5, 5, -0.5);
  step();
  EXPECT_EQ(axes(4, 5), "[500,0]");
  check({{"[gamepad_get_axis_raw(0, 4), gamepad_get_axis_raw(0, 5), gamepad_check_button(0, 21), gamepad_check_button(0, 22)]",
          "[0.50,0,true,false]"},
         {"gamepad_get_curve(0, 0)", "2"}});
}

TEST_F(PadGame, APadThatIsPulledOutLetsGoOfEverything) {
  push_pad_button(5, 0, true);
  push_pad_axis(5, 0, -1);
  step();
  check({{"[gamepad_is_connected(0), gamepad_number(), gamepad_get_last(), gamepad_check_button(0, 0), gamepad_check_button(-1, 23), "
          "gamepad_get_axis(0, 0)]",
          "[true,1,0,true,true,-1]"},
         {"gamepad_vibrate(0, 1, 1, 9); gamepad_is_vibrating(0)", "true"}});
  push_pad_gone(5);
  step();
  check(
      {{"[gamepad_is_connected(0), gamepad_number(), gamepad_check_unplugged(0), gamepad_check_unplugged(-1), gamepad_check_unplugged(1)]",
        "[false,0,true,true,false]"},
       {"[gamepad_check_button(0, 0), gamepad_check_button_released(0, 0), gamepad_check_button_released(-1, 23), gamepad_get_axis(0, 0)]",
        "[false,true,true,0]"},
       {"[gamepad_is_vibrating(0), gamepad_get_name(0), gamepad_get_last()]", "[false,\"Pad gs\",-1]"}});
  push_pad_button(5, 0, true);
  push_pad(6, make("g", "s"));
  push_pad_button(6, 0, true);
  step();
  check({{"[gamepad_check_plugged(0), gamepad_check_unplugged(0), gamepad_check_button_pressed(0, 0)]", "[true,false,true]"}});
  EXPECT_EQ(take_log(), std::vector<std::string>{"WARNING: gamepad number 5 sends, but was not plugged in; that is ignored"});
}

TEST_F(PadGame, WithoutTheFocusNothingIsHeld) {
  push_pad_button(5, 0, true);
  push_pad_axis(5, 0, 1);
  step();
  InputEvent focus;
  focus.type = InputEvent::Type::kFocus;
  push_input(focus);
  step();
  check({{"[gamepad_check_button(0, 0), gamepad_check_button_released(0, 0), gamepad_check_button_released(0, 24), gamepad_get_axis(0, 0)]",
          "[false,true,true,0]"}});
}

TEST_F(PadGame, VibratesForSoLongInTheGamesTime) {
  check({{"gamepad_vibrate(0, 0.5, 7, 0.1); gamepad_vibrate_triggers(0, NaN, 1, 0.05); gamepad_is_vibrating(0)", "true"}});
  EXPECT_EQ(gamepads()[0].body.first, 0.5);
  EXPECT_EQ(gamepads()[0].body.second, 1);
  EXPECT_EQ(gamepads()[0].triggers.first, 0);
  Snapshot before;
  game->take_snapshot(before);
  step(1, 0.06);
  EXPECT_EQ(gamepads()[0].triggers.second, 0);
  EXPECT_EQ(gamepads()[0].body.first, 0.5);
  step(1, 0.06);
  EXPECT_EQ(eval("gamepad_is_vibrating(0)"), "false");
  game->restore(before);
  EXPECT_EQ(eval("gamepad_is_vibrating(0)"), "true");
  check({{"gamepad_vibrate_stop(0); gamepad_is_vibrating(0)", "false"},
         {"gamepad_vibrate(0, 1, 1, 0); gamepad_is_vibrating(0)", "false"},
         {"gamepad_vibrate(3, 1, 1, 1); gamepad_is_vibrating(3)", "false"}});
}

// Sentences, each once; what is sound among it arrives.
TEST_F(PadGame, NonsenseIsSaidOnceAndIgnored) {
  const double nowhere = std::numeric_limits<double>::quiet_NaN(), endless = std::numeric_limits<double>::infinity();
  const std::string before = eval("gamepad_get_axis_raw(0, 0)");
  for (int again = 0; again < 3; ++again) {
    push_pad_axis(5, 0, nowhere);
    push_pad_axis(5, 4, endless);
    push_pad_axis(5, 6, 1);
    push_pad_axis(5, -1, 1);
    push_pad_button(5, 21, true);
    push_pad_button(5, -5, true);
    push_pad_sensor(5, 77, 1);
    push_pad_axis(5, 1, 12);
    push_pad_axis(99, 1, 1);
    push_pad(5, make("another", "with the same number"));
    push_pad_gone(98);
    step();
  }
  EXPECT_EQ(eval("gamepad_get_axis_raw(0, 0)"), before);
  EXPECT_EQ(eval("[gamepad_get_axis_raw(0, 1), gamepad_get_name(0), gamepad_number(), gamepad_check_button(0, 21)]"),
            "[1,\"Pad gs\",1,false]");
  const std::vector<std::string> expected = {
      "WARNING: gamepad 0 (Pad gs) sends no number for left stick across; that is ignored",
      "WARNING: gamepad 0 (Pad gs) sends axis 6, which no gamepad has; that is ignored",
      "WARNING: gamepad 0 (Pad gs) sends button 21, which no gamepad has; that is ignored",
      "WARNING: gamepad 0 (Pad gs) sends sensor 77, which no gamepad has; that is ignored",
      "WARNING: gamepad 0 (Pad gs) sends more than there can be for left stick down; that counts as the most",
      "WARNING: gamepad number 99 sends, but was not plugged in; that is ignored"};
  EXPECT_EQ(take_log(), expected);
}

// Whatever a driver sends: no crash, everything stays in its range, and at most a few sentences.
TEST_F(PadGame, AnythingMayBeSent) {
  RandomGenerator chance(from_environment("ARENA_SEED", 3));
  const auto any = [&](int below) { return static_cast<std::int32_t>(chance.integer(-2, below)); };
  const double odd[] = {0, 1, -1, 0.5, -1e300, std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity(), 1e-310};
  for (int i = 0; i < 30000 * longer(); ++i) {
    InputEvent event;
    event.type = static_cast<InputEvent::Type>(chance.integer(8, 15));
    event.code = chance.integer(0, 9) == 0 ? static_cast<std::int32_t>(chance.next()) : any(12);
    event.value = chance.integer(0, 9) == 0 ? static_cast<std::int32_t>(chance.next()) : any(33);
    event.x = chance.integer(0, 1) == 0 ? odd[chance.integer(0, 7)] : chance.unit() * 2.2 - 1.1;
    event.y = odd[chance.integer(0, 7)];
    for (std::int64_t left = chance.integer(0, 12); left > 0; --left)
      event.text += static_cast<char>(chance.integer(0, 3) == 0 ? '\n' : chance.integer(0, 255));
    push_input(event);
    if (chance.integer(0, 20) == 0) begin_input_frame();
    for (const Pad& pad : gamepads()) {
      for (int axis = 0; axis < kPadAxes; ++axis) ASSERT_TRUE(pad_axis(pad, axis) >= -1 && pad_axis(pad, axis) <= 1) << i;
    }
  }
  step();
  for (int place = 0; place < kPads; ++place) eval("gamepad_get_name(" + std::to_string(place) + ")");  // whatever bytes it has
}

TEST_F(PadGame, WhatIsWrongIsReported) {
  check(
      {{"gamepad_check_button(8, 0)", "! gamepad_check_button argument 1 invalid reference to (gamepad) - requested 8 max is 8"},
       {"gamepad_check_button(0, 31)", "! gamepad_check_button argument 2 invalid reference to (gamepad button) - requested 31 max is 31"},
       {"gamepad_get_axis(-1, 0)", "! gamepad_get_axis argument 1 invalid reference to (gamepad) - requested -1 max is 8"},
       {"gamepad_get_axis(0, 6)", "! gamepad_get_axis argument 2 invalid reference to (gamepad axis) - requested 6 max is 6"},
       {"gamepad_swap(0, 9)", "! gamepad_swap argument 2 invalid reference to (gamepad) - requested 9 max is 8"},
       {"gamepad_set_thresholds(0, 0, 0.4, 0.5, 0, 1)",
        "! gamepad_set_thresholds: thresholds must be 0 < release <= press <= 1 and 0 <= inner < outer <= 1"},
       {"gamepad_set_thresholds(0, 0, 0.5, 0.4, 0.5, NaN)",
        "! gamepad_set_thresholds: thresholds must be 0 < release <= press <= 1 and 0 <= inner < outer <= 1"},
       {"gamepad_set_curve(0, 0, 0)", "! gamepad_set_curve: the exponent of a curve must be from 0.1 to 10"},
       {"gamepad_get_thresholds(0, 0)", "[0.50,0.40,0.20,0.95]"}});
}

TEST_F(PadGame, TheConsolePlaysOneToo) {
  const auto ok = nlohmann::ordered_json{{"ok", true}};
  EXPECT_EQ(ask({{"pad", 9}, {"plugged", true}, {"name", "Mine"}, {"labels", "shapes"}}), ok);
  EXPECT_EQ(ask({{"pad", 9}, {"axis", 1}, {"at", -1}}), ok);
  EXPECT_EQ(ask({{"pad", 9}, {"button", 0}, {"down", true}}), ok);
  step();
  check({{"[gamepad_get_name(1), gamepad_get_axis(1, 1), gamepad_check_button_pressed(1, 0), gamepad_button_name(1, 0)]",
          "[\"Mine\",-1,true,\"Cross\"]"}});
  EXPECT_EQ(ask({{"pad", 9}, {"axis", 1}, {"at", 2}}).contains("error"), true);
  EXPECT_EQ(ask({{"pad", 9}, {"plugged", false}}), ok);
  step();
  EXPECT_EQ(eval("gamepad_number()"), "1");
}

TEST_F(PadGame, TellsWhatItIs) {
  check({{"[gamepad_get_name(0), gamepad_get_guid(0), gamepad_get_labels(0), gamepad_get_name(1)]", "[\"Pad gs\",\"g\",\"letters\",\"\"]"},
         {"[gamepad_has(0, \"vibration\"), gamepad_has(0, \"light\"), gamepad_has(0, \"motion\"), gamepad_has(0, \"vib\"), gamepad_has(1, "
          "\"light\"), gamepad_has(0, \"\")]",
          "[true,true,false,false,false,false]"},
         {"[gamepad_button_name(0, 0), gamepad_button_name(0, 21), gamepad_button_name(0, 11), gamepad_button_name(1, 0)]",
          "[\"A\",\"LT\",\"up\",\"south\"]"},
         {"gamepad_set_light(0, 255); gamepad_set_player(0, 3); [gamepad_get_light(0), gamepad_get_player(0), gamepad_get_player(4)]",
          "[255,3,4]"}});
  push_pad_sensor(5, 1, -90);
  push_pad_sensor(5, 4, 1);
  step();
  check({{"[gamepad_get_gyro(0, 1), gamepad_get_acceleration(0, 1), gamepad_get_gyro(0, 0)]", "[-90,1,0]"}});
  eval("gamepad_set_thresholds(6, 4, 1, 1, 0, 1); gamepad_set_player(6, 5); gamepad_swap(0, 6)");
  check(
      {{"[gamepad_get_thresholds(6, 4), gamepad_get_player(6), gamepad_get_player(0), gamepad_get_light(6)]", "[[1,1,0,1],5,3,255]"},
       {"[gamepad_is_connected(0), gamepad_is_connected(6), gamepad_get_name(6), gamepad_get_gyro(6, 1)]", "[false,true,\"Pad gs\",-90]"}});
  eval("game_restart()");
  step();
  check({{"[gamepad_is_connected(6), gamepad_get_light(6), gamepad_get_player(6)]", "[true,-1,6]"}});
}

}  // namespace
}  // namespace arena::test
