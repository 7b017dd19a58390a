// Actions: several inputs each, per player, changed while the game runs, kept as text, and what is said to press.
#include "runtime/input/actions.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "runtime/input/gamepads.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/random.h"
#include "tests/support/long_runs.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class ActionGame : public TestGame {
 protected:
  ActionGame() {
    push_pad(1, {"g", "1", "One", "shapes", ""});
    push_pad(2, {"g", "2", "Two", "", ""});
    step();
    for (const char* const bound : {"0, \"fire\", \"mouse left\"", "0, \"fire\", \"key F\"", "0, \"fire\", \"pad right trigger\"",
                                    "0, \"zoom\", \"wheel up\"", "0, \"move\", \"key A\", \"left\"", "0, \"move\", \"key D\", \"right\"",
                                    "0, \"move\", \"key W\", \"up\"", "0, \"move\", \"key S\", \"down\"", "0, \"move\", \"pad left stick\"",
                                    "1, \"fire\", \"pad south\"", "1, \"move\", \"pad up\", \"up\""})
      EXPECT_EQ(eval(std::string("action_bind(") + bound + ")"), "undefined");
  }
  std::string fire(int player = 0) {
    const std::string of = "(" + std::to_string(player) + ", \"fire\")";
    std::string text;
    for (const char* const each : {"action_check_pressed", "action_check_released", "action_check"})
      text += eval(each + of) == "true" ? "prd"[text.size()] : '-';
    return text;
  }
  static void wheel(int steps) {
    InputEvent event;
    event.type = InputEvent::Type::kWheel;
    event.code = steps;
    push_input(event);
  }
};

TEST_F(ActionGame, AreDownWhenAnyOfTheirInputsIs) {
  const auto after = [&](auto... turns) {
    (turns(), ...);
    step();
    return fire();
  };
  const auto mouse = [](bool down) { return [=] { push_button(1, down); }; };
  const auto f = [](bool down) { return [=] { push_key('F', down); }; };
  const auto trigger = [](double position) { return [=] { push_pad_axis(1, 5, position); }; };
  EXPECT_EQ(after(), "---");
  EXPECT_EQ(after(mouse(true)), "p-d");
  EXPECT_EQ(after(), "--d");
  EXPECT_EQ(after(f(true)), "--d") << "it was down already";
  EXPECT_EQ(after(mouse(false)), "--d") << "the key holds it";
  EXPECT_EQ(after(f(false)), "-r-");
  EXPECT_EQ(after(f(true), f(false)), "pr-") << "within one frame";
  EXPECT_EQ(after(trigger(0.5)), "p-d");
  EXPECT_NEAR(number("action_get_value(0, \"fire\")"), 0.5, 1e-9);
  EXPECT_EQ(after(trigger(0.2)), "--d") << "above where it is let go";
  EXPECT_EQ(after(trigger(0)), "-r-");
  push_pad_button(2, 0, true);
  step();
  EXPECT_EQ(fire() + fire(1), "---p-d") << "the other player's";
  wheel(3);
  step();
  check({{"[action_check_pressed(0, \"zoom\"), action_get_value(0, \"zoom\"), action_check(0, \"zoom\")]", "[true,3,false]"},
         {"[action_check(0, \"jump\"), action_exists(0, \"jump\"), action_exists(0, \"fire\")]", "[false,false,true]"}});
}

TEST_F(ActionGame, HaveTwoAxes) {
  const auto move = [&] {
    step();
    return eval("[action_get_x(0, \"move\"), action_get_y(0, \"move\")]");
  };
  key('A', true);
  key('W', true);
  EXPECT_EQ(move(), "[-1,-1]");
  key('D', true);
  EXPECT_EQ(move(), "[0,-1]") << "left and right at once";
  for (const char each : {'A', 'D', 'W'}) key(each, false);
  push_pad_axis(1, 1, 0.575);
  EXPECT_EQ(move(), "[0,0.50]");
  key('S', true);
  EXPECT_EQ(move(), "[0,1]") << "together they are no faster";
}

TEST_F(ActionGame, SayWhatToPressOnTheDeviceUsedLast) {
  const auto prompt = [&](const char* action) {
    return eval("action_get_device(0)") + ": " + eval(std::string("action_prompt(0, \"") + action + "\")") + ", " +
           eval(std::string("action_prompt_picture(0, \"") + action + "\")");
  };
  EXPECT_EQ(prompt("fire"), "keyboard: Mouse left, mouse_left");
  push_pad_button(1, 3, true);
  step();
  EXPECT_EQ(prompt("fire"), "pad: R2, pad_shapes_right_trigger");
  EXPECT_EQ(prompt("move"), "pad: left stick, pad_shapes_left_stick");
  EXPECT_EQ(prompt("zoom"), "pad: , ");
  push_pad_button(2, 3, true);
  step();
  EXPECT_EQ(prompt("fire"), "pad: R2, pad_shapes_right_trigger");
  InputEvent label;
  label.type = InputEvent::Type::kKeyLabel;
  label.code = 'A';
  label.text = "Q";
  push_input(label);
  key('L', true);
  step();
  EXPECT_EQ(prompt("move"), "keyboard: Q D W S, key_A");
  check({{"action_prompt(1, \"fire\")", "south"}, {"action_set_pad(0, 1); [action_get_pad(0), action_get_pad(1)]", "[1,1]"}});
  push_pad_button(2, 3, false);
  push_pad_button(2, 0, true);
  step();
  EXPECT_EQ(prompt("fire"), "pad: right trigger, pad_right_trigger");
  check({{"action_set_pad(0, -1); action_get_device(0)", "keyboard"}});
}

TEST_F(ActionGame, AreBoundAnewByListening) {
  check({{"action_listen()", ""},
         {"action_get_inputs(0, \"fire\")", "[\"mouse left\",\"key F\",\"pad right trigger\"]"},
         {"action_get_inputs(0, \"move\")", "[\"key A > left\",\"key D > right\",\"key W > up\",\"key S > down\",\"pad left stick\"]"}});
  push_pad_axis(2, 2, -1);
  step();
  check({{"[action_listen(), action_listen(0), action_listen(1)]", "[\"pad right stick left\",\"\",\"pad right stick left\"]"}});
  key(112, true);
  step();
  check({{"action_listen()", "key F1"}});
  push_pad_button(1, 7, true);
  step();
  check({{"action_listen(0)", "pad left stick pressed"},
         {"action_bind(0, \"fire\", action_listen(0)); action_unbind(0, \"fire\", \"mouse left\"); action_unbind(0, \"fire\", \"key B\"); "
          "action_get_inputs(0, \"fire\")",
          "[\"key F\",\"pad right trigger\",\"pad left stick pressed\"]"},
         {"[action_check(0, \"fire\"), action_get_names(0), action_get_names(7)]", "[true,[\"fire\",\"move\",\"zoom\"],[]]"},
         {"action_bind(0, \"fire\", \"key F\"); array_length(action_get_inputs(0, \"fire\"))", "3"},
         {"action_unbind(0, \"zoom\", \"wheel up\"); action_unbind(0, \"fire\"); action_unbind(0, \"none\"); action_get_names(0)",
          "[\"move\"]"}});
}

TEST_F(ActionGame, WhatIsWrongIsReported) {
  check(
      {{"action_bind(8, \"a\", \"key A\")", "! action_bind argument 1 invalid reference to (player) - requested 8 max is 8"},
       {"action_bind(0, \"a\", \"key Ä\")", "! action_bind argument 3 names no input: \"key Ä\""},
       {"action_bind(0, \"a\", \"key #999\")", "! action_bind argument 3 names no input: \"key #999\""},
       {"action_bind(0, \"a\", \"mouse \")", "! action_bind argument 3 names no input: \"mouse \""},
       {"action_bind(0, \"a\", \"\")", "! action_bind argument 3 names no input: \"\""},
       {"action_bind(0, \"a\", \"key A\", \"north\")", "! action_bind argument 4 names no direction: \"north\""},
       {"action_bind(0, \"\", \"key A\")", "! action_bind argument 2: the name of an action has 1 to 64 bytes and no tab or line end"},
       {"action_bind(0, \"a\tb\", \"key A\")", "! action_bind argument 2: the name of an action has 1 to 64 bytes and no tab or line end"},
       {"action_set_pad(0, 8)", "! action_set_pad argument 2 invalid reference to (gamepad) - requested 8 max is 8"}});
  for (std::size_t i = 0; i < kMostInputs; ++i) action_tables()[2].inputs["a" + std::to_string(i % 9)].emplace_back();
  EXPECT_EQ(eval("action_bind(2, \"last\", \"key A\")"), "! action_bind: a player has at most 1024 inputs for actions");
}

// What was written is read again, byte for byte, whatever is bound.
TEST_F(ActionGame, SurviveAsText) {
  const std::string first = eval("action_get_text()");
  EXPECT_EQ(first.substr(0, first.find('\n')), "0\tfire\tmouse left");
  EXPECT_NE(first.find("0\tmove\tkey A\tleft\n"), std::string::npos);
  RandomGenerator chance(from_environment("ARENA_SEED", 8));
  const auto below = [&](int count) { return static_cast<int>(chance.integer(0, count - 1)); };
  for (int round = 0; round < 300 * longer(); ++round) {
    for (PlayerActions& player : action_tables()) player.inputs.clear();
    for (int left = below(40); left > 0; --left) {
      ActionInput input;
      input.device = static_cast<InputDevice>(below(5));
      const int counts[] = {kKeys - 2, kButtons - 1, 4, kPadButtons, 2}, lowest[] = {2, 1, 0, 0, 0};
      const std::size_t device = static_cast<std::size_t>(input.device);
      input.code = lowest[device] + below(counts[device]);
      input.way = static_cast<Way>(below(5));
      action_tables()[static_cast<std::size_t>(below(kPlayers))]
          .inputs[below(2) == 0 ? "go \"ä\" 1" : "x" + std::to_string(below(9))]
          .push_back(input);
    }
    const std::string written = actions_text();
    const ActionTables before = action_tables();
    std::string problem;
    ASSERT_TRUE(set_actions_text(written, problem)) << problem << "\n" << written;
    for (std::size_t player = 0; player < before.size(); ++player)
      ASSERT_EQ(action_tables()[player].inputs, before[player].inputs) << written;
    ASSERT_EQ(actions_text(), written);
  }
}

TEST_F(ActionGame, AWrongTextChangesNothingAndSaysWhere) {
  const std::string before = eval("action_get_text()");
  struct Case {
    const char *text, *expected;
  };
  const Case cases[] = {{"0\\tfire", "line 1 of the actions: there are less than three columns"},
                        {"\\n\\r\\n0\\tfire\\tkey A\\n8\\tfire\\tkey A", "line 4 of the actions: the player is none from 0 to 7"},
                        {"0\\tfire\\tkey", "line 1 of the actions: the input is none"},
                        {"0\\tfire\\tkey A\\tnorth", "line 1 of the actions: the direction is none"},
                        {"0\\tfire\\tkey A\\tleft\\t", "line 1 of the actions: there are more than four columns"},
                        {"0\\t\\tkey A", "line 1 of the actions: the action has no name, or one that is too long"}};
  for (const Case& each : cases) {
    EXPECT_EQ(eval(std::string("action_set_text(\"") + each.text + "\")"), each.expected) << each.text;
    EXPECT_EQ(eval("action_get_text()"), before) << each.text;
  }
  check({{"action_set_text(\"1\\tgo\\tkey A\\r\\n\")", ""},
         {"action_get_text()", "1\tgo\tkey A\n"},
         {"action_set_text(\"\")", ""},
         {"action_get_text()", ""}});
  // Damage of any kind: a sentence, or another table that is sound.
  RandomGenerator chance(from_environment("ARENA_SEED", 4));
  for (int round = 0; round < 20000 * longer(); ++round) {
    std::string text = before, problem;
    for (std::int64_t changes = chance.integer(1, 4); changes > 0; --changes) {
      const std::size_t at = static_cast<std::size_t>(chance.integer(0, static_cast<std::int64_t>(text.size()) - 1));
      if (chance.integer(0, 2) == 0)
        text.erase(at, 3);
      else
        text[at] = static_cast<char>(chance.integer(0, 3) == 0 ? "\t\n 09"[chance.integer(0, 4)] : chance.integer(0, 255));
    }
    if (!set_actions_text(text, problem)) {
      ASSERT_EQ(problem.rfind("line ", 0), 0u) << problem;
      continue;
    }
    const std::string written = actions_text();
    ASSERT_TRUE(set_actions_text(written, problem)) << problem;
    ASSERT_EQ(actions_text(), written);
  }
}

}  // namespace
}  // namespace arena::test
