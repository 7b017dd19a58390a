#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/recording/replay.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {
constexpr std::size_t kMostFrames = 6000;  // a fight takes longer
}

recording::Recording golden_recording(const std::string& name) {
  recording::Recording made;
  std::string problem;
  EXPECT_TRUE(recording::open_recording(std::string(ARENA_SOURCE) + "/tests/golden/" + name + ".txt", made, problem)) << problem;
  EXPECT_EQ(made.damage, "");
  EXPECT_FALSE(made.breaks_off());
  return made;
}

void expect_the_golden_run(const std::string& name) {
  const recording::Recording recorded = golden_recording(name);
  auto backend = std::make_unique<gpu::Recorder>();
  recording::Witness witness(*backend);
  recording::Replay replay(recorded);
  replay.set_witness(&witness);
  host::GameOptions options;
  std::string problem;
  options.data = data::open_data_file(data_file_path(), problem);
  ASSERT_NE(options.data, nullptr) << problem;
  options.backend = std::move(backend);
  replay.prepare(options);
  const host::Started started = host::Game::start(std::move(options));
  ASSERT_NE(started.game, nullptr) << started.problem;
  std::unique_ptr<console::Console> console;
  if (recorded.beginning.has_console) {
    console = std::make_unique<console::Console>(*started.game);
    replay.set_console([&](const std::string& request) { console->answer(request); });
  }
  while (replay.frame() < kMostFrames && (!replay.is_at_end() || replay.finish())) {
    if (!replay.is_at_end()) replay.step(*started.game);
    ASSERT_EQ(broken_invariant(), "") << name << ", frame " << replay.frame();
    ASSERT_EQ(replay.differences(), std::vector<std::string>())
        << name << " is another run, by frame " << replay.frame() << "; this is what differs."
        << "\nIf that is wanted: tests/golden/write, and a commit of its own with the reason.";
  }
  EXPECT_GE(replay.checkpoints_passed(), std::min(recorded.checkpoints.size(), kMostFrames / 60));
}

}  // namespace arena::test
