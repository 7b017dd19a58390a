#include "bench/seeking.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "engine/host/game.h"
#include "engine/recording/recorder.h"
#include "engine/recording/timeline.h"
#include "game/autoplayer/autoplayer.h"
#include "runtime/instances_loop/random.h"

namespace bench {
namespace {

using namespace arena;
using Clock = std::chrono::steady_clock;

constexpr int kFrames = 5 * 60 * 60;  // five minutes of the autoplayer's fight: waves, a boss, decals that grow many
constexpr int kSeeks = 200;

double milliseconds_since(Clock::time_point start) { return std::chrono::duration<double, std::milli>(Clock::now() - start).count(); }

std::unique_ptr<host::Game> start(const char* data_file, host::GameOptions options) {
  std::string problem;
  options.data = data::open_data_file(data_file, problem);
  options.shows_frames = false;
  return host::Game::start(std::move(options)).game;
}

bool record(const char* data_file, recording::Recording& into) {
  const std::filesystem::path file = std::filesystem::temp_directory_path() / "arena_bench.rec";
  std::string problem;
  {
    recording::Recorder recorder(file, {"arena", "bench", 0, "rPrepare", true, 5});
    host::GameOptions options;
    options.room = "rPrepare";
    options.has_seed = true;
    options.seed = 5;
    options.listener = &recorder;
    const std::unique_ptr<host::Game> game = start(data_file, std::move(options));
    autoplayer::ArenaPlayer player;
    for (int frame = 0; frame < kFrames; ++frame) {
      player.play();
      game->run_frame(16667);
    }
    recorder.end();
  }
  const bool is_read = recording::open_recording(file.string(), into, problem);
  std::error_code ignored;
  std::filesystem::remove(file, ignored);
  return is_read;
}

}  // namespace

void run_seeking(const char* data_file) {
  const SessionScope scope(session());
  recording::Recording recorded;
  if (!record(data_file, recorded)) {
    std::printf("\nno recording could be made\n");
    return;
  }
  recording::Replay replay(recorded);
  host::GameOptions options;
  replay.prepare(options);
  const std::unique_ptr<host::Game> game = start(data_file, std::move(options));
  Clock::time_point before = Clock::now();
  recording::Timeline line(*game, replay);
  while (!line.build(1'000'000)) {
  }
  const double pass = milliseconds_since(before);
  Snapshot alone;
  game->take_snapshot(alone);
  std::vector<double> times;
  RandomGenerator chance(1);
  for (int i = 0; i < kSeeks; ++i) {
    const auto frame = static_cast<std::size_t>(chance.integer(0, kFrames));
    before = Clock::now();
    line.seek(frame);
    times.push_back(milliseconds_since(before));
  }
  std::sort(times.begin(), times.end());
  const std::size_t each = line.bytes() / line.snapshots();
  std::printf("\n%-44s %10s %10s\n", "seeking in five minutes of a fight", "", "required");
  std::printf("%-44s %10.0f\n", "first pass, ms", pass);
  std::printf("%-44s %10zu\n", "snapshots", line.snapshots());
  std::printf("%-44s %10zu\n", "  bytes of each, sharing", each);
  std::printf("%-44s %10zu\n", "  bytes of the last frame's, alone", alone.bytes());
  std::printf("%-44s %10.1f %10d\n", "  all together, MB", static_cast<double>(line.bytes()) / (1 << 20), 64);
  std::printf("%-44s %10.1f\n", "a seek, median ms", times[kSeeks / 2]);
  std::printf("%-44s %10.1f %10d\n", "  the longest of 200", times.back(), 250);
}

}  // namespace bench
