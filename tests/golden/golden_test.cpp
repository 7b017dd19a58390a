// What the game and the runtime did on the day that the files beside this one were written, they do again. The samples' run stands with
// the samples' tests.
#include <nlohmann/json.hpp>
#include <set>

#include "game/autoplayer/autoplayer.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/functions.h"
#include "runtime/program/names.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/access.h"
#include "tests/support/arguments.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

void set_global(const char* name, const RValue& value) { var_set(RValue::of_object(global_object()), variable_id(name), kNoIndex, value); }

class GoldenFight : public TestGame {
 protected:
  GoldenFight() : TestGame("rPrepare") {}
  autoplayer::ArenaPlayer player_;
  void play(int frames) {
    for (int i = 0; i < frames && !HasFatalFailure(); ++i) {
      player_.play();
      step();
    }
  }
  void play_until(const std::string& condition) {
    for (int i = 0; i < 6000 && eval(condition) != "true"; ++i) play(1);
    ASSERT_EQ(eval(condition), "true") << condition;
  }
};

// From the preparation room to the second wave, then with the clock put forward to the boss and the twelfth, a death and a new game.
TEST_F(GoldenFight, ToWaveTwelveADeathAndANewGame) {
  follow_golden_run("fight");
  play_until("instance_exists(oLevel1) && oLevel1.wave_count == 2");
  play(600);
  eval("oLevel1.wave_count = 9; oPlayer.hp = 100000");
  for (int wave = 10; wave <= 12; ++wave) {
    eval("oLevel1.wave_timer = min(oLevel1.wave_timer, 1)");
    play_until("oLevel1.wave_count == " + std::to_string(wave));
    play(1200);
  }
  eval("oPlayer.hp = 1; instance_create_layer(oPlayer.x, oPlayer.y, \"layMobs\", oEnemy)");
  for (int i = 0; i < 600 && eval("instance_exists(oDeathScreen)") != "true"; ++i) step();
  ASSERT_EQ(eval("instance_exists(oDeathScreen)"), "true");
  play_until("instance_exists(oLevel1) && oLevel1.wave_count == 0");
  play(600);
}

class GoldenReward : public ArenaGame {
 protected:
  void point_at(double x, double y) {
    ask({{"mouse", {x, y}}, {"gui", true}});
    step(10);
  }
  void click() {
    ask({{"button", 1}, {"down", true}});
    step();
    ask({{"button", 1}, {"down", false}});
    step(19);
  }
};

// Each card is looked at and taken, at every rarity.
TEST_F(GoldenReward, CardsOfEveryRarity) {
  follow_golden_run("reward");
  step(2);
  for (int wave = 1; wave <= 13; ++wave) {
    eval("oLevel1.wave_count = " + std::to_string(wave - 1) + "; oLevel1.wave_timer = 0");
    step();
    eval("with (oParentEnemy) { instance_destroy() } 1");
    step(8);
    ASSERT_EQ(eval("oLevel1.wave_pause"), "true") << wave;
    for (const int side : {-108, 108}) point_at(640 + side, 360);
    if (wave % 2 == 0) point_at(640 - 108, 360);
    click();
    ASSERT_EQ(eval("oLevel1.wave_pause"), "false") << wave;
    eval("with (oPickup) { x = oPlayer.x; y = oPlayer.y } 1");
    key('E', true);
    step(2);
    key('E', false);
    step(2);
  }
}

class GoldenOperators : public TestGame {
 protected:
  static std::vector<RValue> one_of_each_kind() {
    return {RValue(7.0),
            RValue(-0.75),
            RValue::of_bool(true),
            make_string("3"),
            make_string("text"),
            RValue::of_int32(5),
            RValue::of_int64(std::int64_t{1} << 53 | 1),
            RValue::of_ref(77, 2),
            RValue::of_pointer(reinterpret_cast<void*>(8)),
            make_array(1),
            RValue(),
            make_struct(),
            RValue::null(),
            RValue::unset()};
  }
  void keep_outcomes_of(const std::string& each) {
    eval("global.outcomes = []; global.messages = \"\"");
    const std::vector<RValue> kinds = one_of_each_kind();  // gone before the frame: natives keep nothing alive
    for (const RValue& left : kinds) {
      set_global("left", left);
      if (each == "!" || each == "minus") {
        keep_outcome_of((each == "!" ? "!" : "-") + std::string("global.left"));
        continue;
      }
      for (const RValue& right : kinds) {
        set_global("right", right);
        keep_outcome_of("global.left " + each + " global.right");
      }
    }
  }
  // The value goes to where the state's hash sees it, with its kind; of an error the message.
  void keep_outcome_of(const std::string& expression) {
    const auto reply = ask({{"eval", "array_push(global.outcomes, " + expression + ")"}});
    if (reply.contains("error")) set_global("messages", make_string(eval("global.messages") + reply["error"].get<std::string>() + "\n"));
  }
};

TEST_F(GoldenOperators, OverEveryPairOfKinds) {
  follow_golden_run("operators");
  for (const std::string each : {"+", "-", "*", "/", "%", "==", "!=", "<", "<=", ">", ">=", "&&", "||", "!", "minus"}) {
    SCOPED_TRACE(each);
    keep_outcomes_of(each);
    step(60);
  }
}

class GoldenBuiltins : public ArenaGame {
 protected:
  // The arguments of one of several calls: another one of those that fit for each parameter.
  static std::string arguments_of(const BuiltinRow& row, std::size_t variant) {
    std::string text;
    for (const Parameter& parameter : row.parameters()) {
      const std::vector<std::string> fitting = fitting_arguments(parameter.kind);
      text += (text.empty() ? "" : ", ") + fitting[variant++ % fitting.size()];
    }
    return text;
  }
  // Scripts may stumble over what a call left behind; their errors are part of what came of it.
  void step_over_errors() {
    const auto reply = step_once();
    if (!reply.contains("errors")) return;
    for (const auto& each : reply["errors"]) outcomes_ += each["error"].get<std::string>() + "\n";
  }
  void call(const BuiltinRow& row) {
    eval(kMakeArgumentHolders);
    for (std::size_t variant = 0; variant < 4; ++variant) {
      const std::string call = std::string(row.text) + "(" + arguments_of(row, variant) + ")";
      outcomes_ += call + " " + eval("with (oPlayer) { global.outcome = " + call + " } global.outcome") + "\n";
      world().ended = false;
    }
    step_over_errors();
    step_over_errors();
  }
  void begin_anew() {
    eval("game_restart()");
    step_over_errors();
    eval("room_goto(rArena)");
    step_over_errors();
    world().ended = false;
  }
  std::string outcomes_;  // of the calls for one line of the file
};

// Ten to a line of the file; after each the game is what it was at first.
TEST_F(GoldenBuiltins, EachWithArgumentsThatFit) {
  const std::set<std::string> not_here = {"frame_stage_times",                     // measures
                                          "randomize",                             // may take the clock
                                          "screen_save", "screen_save_numbered"};  // write files
  follow_golden_run("builtins");
  std::vector<const BuiltinRow*> rows;
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    if (!not_here.contains(builtin_at(i).name)) rows.push_back(builtin_at(i).row);
  }
  constexpr std::size_t kTogether = 10;
  for (std::size_t first = 0; first < rows.size(); first += kTogether) {
    const std::vector<const BuiltinRow*> some(rows.begin() + static_cast<std::ptrdiff_t>(first),
                                              rows.begin() + static_cast<std::ptrdiff_t>(std::min(first + kTogether, rows.size())));
    std::string names;
    for (const BuiltinRow* row : some) names += std::string(row->text) + " ";
    SCOPED_TRACE(names);
    outcomes_.clear();
    for (const BuiltinRow* row : some) {
      call(*row);
      begin_anew();
      set_global("outcomes", make_string(outcomes_));
      step(2);
    }
    step(6 * static_cast<int>(kTogether - some.size()));
  }
}

}  // namespace
}  // namespace arena::test
