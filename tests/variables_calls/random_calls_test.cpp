// Every built-in function and every script, called with anything: whatever comes in, the answer is a value or an error, and the game
// goes on.
#include <nlohmann/json.hpp>
#include <random>
#include <set>

#include "runtime/instances_loop/world.h"
#include "runtime/program/functions.h"
#include "tests/support/arguments.h"
#include "tests/support/long_runs.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class RandomCalls : public ArenaGame {
 protected:
  std::string any() { return kValues[random_() % std::size(kValues)]; }
  // Arguments of any kind, or every other time those that the row asks for, with some of the last ones left out.
  std::string arguments_for(const BuiltinRow* row) {
    std::vector<std::string> arguments;
    if (row != nullptr && random_() % 2 == 0) {
      for (const Parameter& parameter : row->parameters()) {
        if (parameter.kind.may_be_left_out && random_() % 3 == 0) break;
        const std::vector<std::string> fitting = fitting_arguments(parameter.kind);
        for (std::uint64_t left = parameter.kind.takes_the_rest ? random_() % 4 : 1; left > 0; --left)
          arguments.push_back(fitting[random_() % fitting.size()]);
      }
    } else {
      for (std::uint64_t left = random_() % 9; left > 0; --left) arguments.push_back(any());
    }
    std::string text;
    for (const std::string& each : arguments) text += (text.empty() ? "" : ", ") + each;
    return text;
  }
  void call_often(const std::string& name, const BuiltinRow* row = nullptr) {
    eval(kMakeArgumentHolders);
    for (int round = 0; round < rounds_; ++round) {
      const std::string call = name + "(" + arguments_for(row) + ")";
      SCOPED_TRACE(call);
      if (eval("instance_exists(oPlayer)") == "false") eval("instance_create_depth(0, 0, 0, oPlayer)");
      const auto reply = ask({{"eval", call}, {"self", static_cast<int>(number("oPlayer.id"))}});
      EXPECT_TRUE(reply.contains("text") || reply.contains("error")) << reply.dump();
      world().ended = false;
    }
    ask({{"step", 1}});
    ASSERT_EQ(broken_invariant(), "") << name;
    // As at start again, whatever was done to the tables and the interface.
    eval("game_restart()");
    ask({{"step", 1}});
    eval("room_goto(rArena)");
    ask({{"step", 1}});
    world().ended = false;
    ASSERT_EQ(eval("[global.weapons.pistol.name, instance_number(oPlayer), instance_number(oControl)]"), "[\"Pistol\",1,1]") << name;
  }
  static std::string short_name(const CompiledFunction& script) {
    const std::string name = script.name, prefix = "ksl_Script_";
    return name.rfind(prefix, 0) == 0 ? name.substr(prefix.size()) : name;
  }
  // Values of every kind, small, huge and odd; what was made before is used again.
  static constexpr const char* kValues[] = {"0",
                                            "1",
                                            "-1",
                                            "2",
                                            "0.5",
                                            "-4",
                                            "57",
                                            "100003",
                                            "1e9",
                                            "-1e18",
                                            "NaN",
                                            "infinity",
                                            "int64(7)",
                                            "true",
                                            "undefined",
                                            "\"\"",
                                            "\"text\"",
                                            "\"añ€\"",
                                            "\"12.5\"",
                                            "[]",
                                            "[1, 2, 3]",
                                            "[\"b\", []]",
                                            "{}",
                                            "{a: 1}",
                                            "oPlayer",
                                            "oEnemy",
                                            "noone",
                                            "all",
                                            "global.kept",
                                            "oPlayer.id",
                                            "global.game_ui",
                                            "global.weapons.pistol",
                                            "method(undefined, Approach)",
                                            "\"hp\"",
                                            "\"layMobs\"",
                                            "global.grid",
                                            "global.list",
                                            "global.map"};
  const int rounds_ = 25 * longer();
  std::mt19937_64 random_{from_environment("ARENA_SEED", 2024)};
};

TEST_F(RandomCalls, OfBuiltInFunctions) {
  const std::set<std::string> not_here = {"screen_save", "screen_save_numbered"};  // they write files
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    if (!not_here.contains(builtin_at(i).name)) call_often(builtin_at(i).name, builtin_at(i).row);
    if (HasFatalFailure()) return;
  }
}

// Methods are called as if they belonged to the player: they need not know it.
TEST_F(RandomCalls, OfScriptsMethodsAndConstructors) {
  for (std::int32_t i = 0; i < script_count(); ++i) {
    const CompiledFunction& script = script_at(i);
    call_often(script.is_constructor ? "new " + short_name(script) : short_name(script));
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace arena::test
