#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "engine/recording/replay.h"
#include "tests/support/probes.h"
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

namespace {

// At most so many frames, in a game with these objects besides.
void play_again(const recording::Recording& recorded, std::size_t most_frames, const std::string& name, const std::string& advice,
                const std::set<std::string>& passed_over, host::GameOptions options) {
  auto backend = std::make_unique<gpu::Recorder>();
  recording::Witness witness(*backend);
  recording::Replay replay(recorded);
  replay.set_witness(&witness);
  std::string problem;
  options.data = data::open_data_file(data_file_path(), problem);
  ASSERT_NE(options.data, nullptr) << problem;
  options.backend = std::move(backend);
  options.extra_objects = probe_objects();  // the tests have code for them; the run does not meet them
  replay.prepare(options);
  const host::Started started = host::Game::start(std::move(options));
  ASSERT_NE(started.game, nullptr) << started.problem;
  std::unique_ptr<console::Console> console;
  if (recorded.beginning.has_console) {
    console = std::make_unique<console::Console>(*started.game);
    replay.set_console([&](const std::string& request) { console->answer(request); });
  }
  while (replay.frame() < most_frames && (!replay.is_at_end() || replay.finish())) {
    if (!replay.is_at_end()) {
      replay.step(*started.game);
      ASSERT_EQ(broken_invariant(), "") << name << ", frame " << replay.frame();
    }
    std::vector<std::string> different = replay.differences();
    std::erase_if(different, [&](const std::string& each) { return passed_over.contains(each); });
    ASSERT_EQ(different, std::vector<std::string>())
        << name << " is another run, by frame " << replay.frame() << "; this is what differs." << advice;
  }
  EXPECT_GE(replay.checkpoints_passed(), std::min(recorded.checkpoints.size(), most_frames / 60));
}

}  // namespace

// The tests' own scripts have statics and numbers: what these change the programs alone can compare (tests/golden/verify).
void expect_the_golden_run(const std::string& name) {
  play_again(golden_recording(name), kMostFrames, name, "\nIf that is wanted: tests/golden/write, and a commit of its own with the reason.",
             {"statics", "state", "replies", "globals", "oGallery"}, {});
}

void expect_the_same_run(const recording::Recording& recorded, const std::string& name) {
  host::GameOptions options;
  options.extra_objects = probe_objects();
  play_again(recorded, recorded.frames.size() + 1, name, "", {}, std::move(options));
}

}  // namespace arena::test
