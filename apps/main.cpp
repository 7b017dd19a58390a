// Start-up, the main loop and shut-down.
#include <algorithm>
#include <fstream>
#include <iostream>

#include "apps/autoplayer.h"
#include "apps/command_line.h"
#include "apps/options.h"
#include "apps/user_files.h"
#include "engine/audio/openal/openal.h"
#include "engine/console/console.h"
#include "engine/console/state_hash.h"
#include "engine/files/paths.h"
#include "engine/gpu/backend.h"
#include "engine/host/game.h"
#include "engine/platform/crash_reports.h"
#include "engine/platform/window.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/log.h"
#include "runtime/variables_calls/report.h"

namespace arena::apps {
namespace {

enum ExitStatus { kFine = 0, kBadData = 1, kBadOption = 2, kScriptError = 3 };

constexpr std::int64_t kFrame = 16667;           // microseconds of a frame without a screen to wait for
constexpr std::int64_t kLongestFrame = 1000000;  // a stall counts as at most this
constexpr std::int64_t kHashEvery = 600;         // frames
constexpr std::int64_t kScreenshotEvery = 240;   // frames of an off-screen show

std::string data_path(const Options& options) {
  return options.data.empty() ? files::utf8_of(files::program_file().parent_path() / "arena.dat") : options.data;
}

int fail(const std::string& problem, bool in_dialog, int status) {
  std::cerr << "arena: " << problem << "\n";
  if (in_dialog && platform::has_display()) platform::show_error_dialog("Arena", problem);
  return status;
}

void run_console(host::Game& game) {
  console::Console console(game);
  for (std::string line; !console.has_quit() && std::getline(std::cin, line);) std::cout << console.answer(line) << std::endl;
}

// Without a window: frames as fast as they come. False when the hashes could not be written.
bool run_headless(host::Game& game, const Options& options) {
  Autoplayer player;
  std::ofstream hashes;
  if (!options.hashes.empty()) hashes.open(files::path_of(options.hashes));
  for (std::int64_t frame = 0; !world().ended && frame != options.frames; ++frame) {
    if (options.demo) player.play();
    game.run_frame(kFrame);
    if (hashes.is_open() && (frame + 1) % kHashEvery == 0)
      hashes << frame + 1 << " " << std::hex << console::state_hash() << std::dec << "\n";
  }
  return options.hashes.empty() || hashes.flush().good();
}

void run_window(host::Game& game, platform::Window& window, const Options& options) {
  Autoplayer player;
  std::int64_t before = platform::steady_microseconds();
  for (std::int64_t frame = 0; window.poll() && !world().ended && frame != options.frames; ++frame) {
    int width = 0, height = 0;
    window.drawable_size(width, height);
    game.set_target_size(width, height);
    if (options.demo) player.play();
    std::int64_t now = platform::steady_microseconds();
    if (options.vsync && now - before < kFrame / 2) {  // no screen holds the loop back
      platform::sleep_microseconds(kFrame - (now - before));
      now = platform::steady_microseconds();
    }
    game.run_frame(std::clamp<std::int64_t>(now - before, 1, kLongestFrame));
    if (window.takes_screenshot()) game.take_screenshot();
    before = now;
  }
}

// For machines without a display: the same game, off-screen and by itself, with pictures of it.
void run_show(host::Game& game, const Options& options) {
  Autoplayer player;
  const std::string folder = screenshot_folder();
  for (std::int64_t frame = 1; !world().ended && frame <= options.frames; ++frame) {
    player.play();
    game.run_frame(kFrame);
    if (frame % kScreenshotEvery != 0) continue;
    const std::string path = folder + "/show-" + std::to_string(frame / kScreenshotEvery) + ".png";
    if (game.save_screenshot(path)) std::cerr << path << "\n";
  }
}

int run(const Options& options) {
  std::string problem, notes;
  const bool wants_window = !options.headless;
  const bool shows_offscreen = wants_window && !platform::has_display();
  host::GameOptions game_options;
  game_options.data = data::open_data_file(data_path(options), problem);
  if (game_options.data == nullptr) return fail(problem, wants_window, kBadData);
  game_options.room = options.room;
  game_options.has_seed = options.has_seed;
  game_options.seed = options.seed;
  game_options.screenshot_folder = screenshot_folder;

  std::unique_ptr<platform::Window> window;
  const bool draws_offscreen = shows_offscreen || (options.headless && !options.screenshot.empty());
  if (wants_window || draws_offscreen) {
    if (shows_offscreen) std::cerr << "arena: there is no display; the game plays itself off-screen and leaves pictures in Screenshots/\n";
    platform::WindowOptions window_options;
    window_options.fullscreen = options.fullscreen;
    window_options.vsync = options.vsync && !draws_offscreen;
    window_options.offscreen = draws_offscreen;
    window = platform::open_window(window_options, problem);
    if (window != nullptr) game_options.backend = window->create_backend(problem);
    if (game_options.backend == nullptr) return fail(problem, wants_window, kBadData);
    platform::use_window(window.get());
  }
  if (wants_window && !options.mute && !shows_offscreen) {
    std::string no_sound;
    game_options.audio_device = audio::open_openal(no_sound);
    if (game_options.audio_device == nullptr) log_message(no_sound);
  }

  const std::unique_ptr<host::Game> game = host::Game::start(std::move(game_options), notes, problem);
  if (game == nullptr)
    return fail(problem, wants_window, options.room.empty() || problem.find("there is no room") != 0 ? kBadData : kBadOption);
  std::cerr << notes;
  if (options.console) {
    run_console(*game);
  } else if (shows_offscreen) {
    Options show = options;
    if (show.frames < 0) show.frames = 20 * 60;
    run_show(*game, show);
  } else if (window != nullptr && wants_window) {
    run_window(*game, *window, options);
  } else {
    if (!run_headless(*game, options)) return fail(options.hashes + ": the hashes cannot be written", false, kBadData);
  }
  if (!options.screenshot.empty() && !game->save_screenshot(options.screenshot)) {
    return fail(options.screenshot + ": the picture cannot be written", false, kBadData);
  }
  return kFine;
}

}  // namespace
}  // namespace arena::apps

int main(int argc, char** argv) {
  using namespace arena::apps;
  Options options;
  std::string problem;
  if (!parse_options(command_line(argc, argv), options, problem)) return fail(problem, false, kBadOption);
  if (options.shows_help) return std::cout << help_text(), kFine;
  if (options.shows_version) return std::cout << "arena " ARENA_VERSION "\n", kFine;
  start_log();
  arena::platform::report_crashes(crash_report_file(), "arena " ARENA_VERSION " crashed",
                                  !options.headless && arena::platform::has_display());
  try {
    return run(options);
  } catch (const arena::WBKSLException& error) {
    const std::string path = write_crash_report(error.report());
    std::cerr << error.report() << (path.empty() ? "" : "The report was written to " + path + "\n");
    if (!options.headless && arena::platform::has_display()) arena::platform::show_error_dialog("Arena", error.report());
    return kScriptError;
  }
}
