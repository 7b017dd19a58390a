// What the game and the runtime did on the day that the recordings beside this file were made, they do again, and after each frame all
// holds that must. The programs play them to their ends (tests/golden/verify). That of the samples is played with the samples' tests.
#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "runtime/program/builtin_row.h"
#include "runtime/program/functions.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class GoldenRecordings : public ::testing::TestWithParam<const char*> {};

TEST_P(GoldenRecordings, AreTheSameRun) { expect_the_golden_run(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Of, GoldenRecordings, ::testing::Values("fight", "reward", "operators", "builtins"),
                         [](const auto& each) { return std::string(each.param); });

// A new one asks for a new recording.
TEST(GoldenTour, CallsEveryBuiltin) {
  const std::set<std::string_view> not_here = {"frame_stage_times", "game_end", "screen_save", "screen_save_numbered"};
  std::string requests;
  for (const recording::Frame& frame : golden_recording("builtins").frames) {
    for (const std::string& request : frame.requests) requests += request;
  }
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    const std::string name = builtin_at(i).row->text;
    EXPECT_EQ(requests.find(" " + name + "(") == std::string::npos, not_here.contains(name)) << name << ": tests/golden/write builtins";
  }
}

}  // namespace
}  // namespace arena::test
