#include "tests/support/recorded_fight.h"

#include <gtest/gtest.h>

#include "engine/recording/recorder.h"
#include "runtime/instances_loop/random.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {

std::unique_ptr<host::Game> start_recorded(host::GameOptions options) {
  std::string problem;
  options.data = data::open_data_file(data_file_path(), problem);
  options.extra_objects = probe_objects();
  host::Started started = host::Game::start(std::move(options));
  EXPECT_EQ(started.problem, "");
  return std::move(started.game);
}

std::string record_a_fight() {
  const std::string path = temporary_path("fight.rec");
  recording::Recorder recorder(path, {"arena", "1", 5, "rArena", false, 0});
  host::GameOptions options;
  options.listener = &recorder;
  options.room = "rArena";
  const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
  RandomGenerator hand(11);
  for (int frame = 0; frame < 600; ++frame) {
    for (const int key : {87, 65, 83, 68, 69, 81, 16}) {  // W A S D E Q, Shift
      if (hand.integer(0, 20) == 0) push_key(key, hand.integer(0, 1) == 0);
    }
    push_pointer(PointerSpace::kWindow, static_cast<double>(hand.integer(0, 1280)), static_cast<double>(hand.integer(0, 720)));
    if (frame % 90 == 0) push_button(1, frame % 180 == 0);
    game->run_frame(hand.integer(8000, 33000));
  }
  recorder.end();
  return path;
}

recording::Recording read_fight(const std::string& path) {
  recording::Recording made;
  std::string problem;
  EXPECT_TRUE(recording::open_recording(path, made, problem)) << problem;
  return made;
}

}  // namespace arena::test
