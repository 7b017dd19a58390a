#include "apps/modes.h"

#include <algorithm>
#include <fstream>
#include <iostream>

#include "apps/autoplayer.h"
#include "apps/user_files.h"
#include "engine/console/console.h"
#include "engine/console/state_hash.h"
#include "engine/files/paths.h"
#include "engine/host/game.h"
#include "engine/platform/end_requests.h"
#include "engine/platform/standard_streams.h"
#include "engine/platform/window.h"
#include "runtime/instances_loop/world.h"

namespace arena::apps {
namespace {

constexpr std::int64_t kFrame = 16667;           // microseconds of a frame without a screen to wait for
constexpr std::int64_t kLongestFrame = 1000000;  // a stall counts as at most this
constexpr std::int64_t kHashEvery = 600;         // frames
constexpr std::int64_t kScreenshotEvery = 240;   // frames of an off-screen show
constexpr std::int64_t kShowFrames = 20 * 60;    // unless told otherwise

bool must_end() { return platform::end_request() != 0; }
bool goes_on(std::int64_t frame, std::int64_t frames) { return !must_end() && !world().ended && frame != frames; }

}  // namespace

std::string run_console(host::Game& game, const Options& options) {
  using Lines = platform::InputLines;
  Autoplayer player;
  console::StepHooks hooks;
  hooks.must_end = must_end;
  if (options.demo) hooks.before_frame = [&player] { player.play(); };
  console::Console console(game, hooks);
  Lines lines(console::kLongestRequest);
  for (std::string line; !console.has_quit();) {
    const Lines::Result result = lines.next(line);
    if (result == Lines::Result::kFailed) return "standard input cannot be read";
    if (result != Lines::Result::kLine) break;
    if (!platform::write_output(console.answer(line) + "\n")) return "the reply cannot be written";
  }
  return "";
}

std::string run_headless(host::Game& game, const Options& options) {
  Autoplayer player;
  const bool writes_hashes = !options.hashes.empty();
  const std::string unwritable = files::on_one_line(options.hashes) + ": the hashes cannot be written";
  std::ofstream hashes;
  if (writes_hashes) hashes.open(files::path_of(options.hashes));
  if (!hashes) return unwritable;
  for (std::int64_t frame = 0; goes_on(frame, options.frames); ++frame) {
    if (options.demo) player.play();
    game.run_frame(kFrame);
    if (!writes_hashes || (frame + 1) % kHashEvery != 0) continue;
    hashes << frame + 1 << " " << std::hex << console::state_hash() << std::dec << std::endl;
    if (!hashes) return unwritable;
  }
  return "";
}

void run_window(host::Game& game, platform::Window& window, const Options& options) {
  Autoplayer player;
  std::int64_t before = platform::steady_microseconds();
  for (std::int64_t frame = 0; window.poll() && goes_on(frame, options.frames); ++frame) {
    int width = 0, height = 0;
    window.drawable_size(width, height);
    game.set_target_size(width, height);
    if (options.demo) player.play();
    std::int64_t now = platform::steady_microseconds();
    if (options.vsync && now - before < kFrame / 2) {  // no screen holds the loop back
      platform::sleep_microseconds(kFrame - (now - before));
      now = platform::steady_microseconds();
    }
    if (window.takes_screenshot()) game.take_screenshot();
    game.run_frame(std::clamp<std::int64_t>(now - before, 1, kLongestFrame));
    before = now;
  }
}

void run_show(host::Game& game, const Options& options) {
  Autoplayer player;
  const std::string folder = screenshot_folder();
  const std::int64_t frames = options.frames < 0 ? kShowFrames : options.frames;
  for (std::int64_t frame = 0; goes_on(frame, frames);) {
    player.play();
    game.run_frame(kFrame);
    if (++frame % kScreenshotEvery != 0) continue;
    const std::string path = folder + "/show-" + std::to_string(frame / kScreenshotEvery) + ".png";
    if (game.save_screenshot(path)) std::cerr << path << "\n";
  }
}

}  // namespace arena::apps
