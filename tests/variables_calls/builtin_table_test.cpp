// The rows of the built-in functions: what stands in the documents and in the console's help is what the program has.
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "runtime/builtins/describe.h"
#include "runtime/program/functions.h"
#include "runtime/script.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using namespace script;

// What game code may write: no fewer arguments than are wanted, no more than are taken, and results of known kinds.
template <const auto& row, class... Given>
constexpr bool can_be_called = requires(Given... given) {
  row(given...);
};
static_assert(can_be_called<instance_number, Value> && !can_be_called<instance_number> && !can_be_called<instance_number, Value, Value>);
static_assert(can_be_called<instance_destroy> && can_be_called<instance_destroy, Value, bool>);
static_assert(!can_be_called<instance_destroy, Value, bool, Value>);
static_assert(can_be_called<audio_play_sound, Real, Real, bool> && can_be_called<audio_play_sound, Real, Real, bool, Real, Real, Real>);
static_assert(!can_be_called<audio_play_sound, Real, Real>);
static_assert(can_be_called<string_join, const char*> && can_be_called<string_join, const char*, Real, Value, Real, Real>);
static_assert(!can_be_called<string_join> && can_be_called<checked::choose> && !can_be_called<game_end, Value>);
static_assert(std::is_same_v<decltype(instance_number(noone)), Real> && std::is_same_v<decltype(keyboard_check(1)), bool>);
static_assert(std::is_same_v<decltype(keyboard_text()), Value> && std::is_void_v<decltype(draw_self())>);

class Builtins : public TestGame {};

TEST_F(Builtins, AreDescribedInTheDocuments) {
  std::ostringstream documented;
  documented << std::ifstream(ARENA_SOURCE "/docs/builtins.md").rdbuf();
  EXPECT_EQ(documented.str(), builtins_document()) << "write docs/builtins.md anew: build/test/arena --builtins > docs/builtins.md";
}

TEST_F(Builtins, AreWrittenDownInWholeSentences) {
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    const BuiltinRow& row = *builtin_at(i).row;
    EXPECT_EQ(row.slot, i) << row.text;
    const std::string_view sentence = row.sentence;
    EXPECT_TRUE(sentence.size() > 3 && sentence.ends_with('.') && sentence.find('|') == std::string_view::npos) << row.text;
    bool may_be_left_out = false;
    for (const Parameter& parameter : row.parameters()) {
      EXPECT_FALSE(parameter.name.empty()) << row.text;
      EXPECT_LE(parameter.kind.low, parameter.kind.high) << row.text;
      EXPECT_FALSE(may_be_left_out && !parameter.kind.may_be_left_out) << row.text << ": only the last ones may be left out";
      may_be_left_out = parameter.kind.may_be_left_out;
    }
  }
}

TEST_F(Builtins, AreShownByTheConsole) {
  const auto names = [&](const char* pattern) {
    std::string all;
    const auto reply = ask({{"help", pattern}});
    for (const auto& row : reply["help"]) all += row["name"].get<std::string>() + " ";
    return all;
  };
  EXPECT_EQ(names("ds_list_*e"), "ds_list_create ds_list_delete ds_list_find_value ds_list_shuffle ds_list_size ");
  EXPECT_EQ(names("draw_set_?align"), "draw_set_halign draw_set_valign ");
  EXPECT_EQ(names("sin"), "sin ");
  EXPECT_EQ(names("*exists*layer*"), "");
  EXPECT_EQ(ask({{"help", "*"}})["help"].size(), static_cast<std::size_t>(builtin_count()));
  EXPECT_EQ(ask({{"help", "instance_destroy"}})["help"].dump(),
            R"([{"name":"instance_destroy","parameters":[{"name":"target","kind":"instance or object","optional":true},)"
            R"({"name":"runs_event","kind":"bool","optional":true,"default":true}],"result":"","sentence":)"
            R"("Ends an instance, all of an object, or without a target the caller; its Destroy event may run."}])");
  EXPECT_EQ(ask({{"help", "gpu_set_*"}})["help"][0]["parameters"].dump(), R"([{"name":"mode","kind":"whole number","range":[0.0,3.0]}])");
  EXPECT_TRUE(ask({{"help", 5}}).contains("error"));
}

}  // namespace
}  // namespace arena::test
