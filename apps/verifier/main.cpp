// The program of a build that has neither window nor sound nor threads: it plays a recording to its end, or to the first frame that is
// another one.
#include <iostream>

#include "apps/game_description.h"
#include "apps/options.h"
#include "engine/console/console.h"
#include "engine/files/paths.h"
#include "engine/gpu/recorder/recorder.h"
#include "engine/host/game.h"
#include "engine/recording/replay.h"
#include "runtime/reports/report.h"

namespace arena::apps {
namespace {

enum ExitStatus { kFine = 0, kFailed = 1, kBadOption = 2, kScriptError = 3, kAnotherRun = 5 };

int fail(const std::string& problem, int status) {
  std::cerr << game_description().name << ": " << problem << "\n";
  return status;
}

int verify(host::Game& game, recording::Replay& replay, const recording::Recording& recorded) {
  std::unique_ptr<console::Console> console;
  if (recorded.beginning.has_console) console = std::make_unique<console::Console>(game);
  replay.set_console([&](const std::string& request) { console->answer(request); });
  while (!replay.is_at_end() || replay.finish()) {
    if (!replay.is_at_end()) replay.step(game);
    if (const std::vector<std::string> parts = replay.differences(); !parts.empty()) return fail(another_run(replay, parts), kAnotherRun);
  }
  std::cout << same_run(replay) << std::endl;
  return recorded.damage.empty() ? kFine : fail(recorded.damage, kFailed);
}

int run(const Options& options, const std::filesystem::path& folder) {
  std::string problem;
  recording::Recording recorded;
  if (!recording::open_recording(options.replay, recorded, problem)) return fail(problem, kFailed);
  const std::string data = options.data.empty() ? files::utf8_of(folder / (std::string(game_description().name) + ".dat")) : options.data;
  auto backend = std::make_unique<gpu::Recorder>();
  recording::Witness witness(*backend);
  recording::Replay replay(recorded);
  replay.set_witness(&witness);
  host::GameOptions game_options;
  game_options.data = data::open_data_file(data, problem);
  if (game_options.data == nullptr) return fail(problem, kFailed);
  problem = misfit(recorded.beginning, {game_description().name, game_description().version, game_options.data->hash(), "", false, 0});
  if (!problem.empty()) return fail(files::on_one_line(options.replay + ": " + problem), kFailed);
  game_options.backend = std::move(backend);
  replay.prepare(game_options);
  const host::Started started = host::Game::start(std::move(game_options));
  return started.game != nullptr ? verify(*started.game, replay, recorded) : fail(started.problem, kFailed);
}

}  // namespace
}  // namespace arena::apps

int main(int argc, char** argv) {
  using namespace arena;
  apps::Options options;
  std::string problem;
  if (!apps::parse_options({argv + 1, argv + argc}, options, problem)) return apps::fail(problem, apps::kBadOption);
  if (!options.verify) return apps::fail("this build plays recordings only: --replay FILE --verify", apps::kBadOption);
  try {
    return apps::run(options, std::filesystem::path(argv[0]).parent_path());
  } catch (const WBKSLException& error) {
    std::cerr << error.report();
    return apps::kScriptError;
  }
}
