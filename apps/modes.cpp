#include "apps/modes.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>

#include "apps/game_description.h"
#include "apps/user_files.h"
#include "engine/console/console.h"
#include "engine/files/paths.h"
#include "engine/host/game.h"
#include "engine/host/state_hash.h"
#include "engine/platform/end_requests.h"
#include "engine/platform/pacer.h"
#include "engine/platform/standard_streams.h"
#include "engine/platform/window.h"
#include "engine/recording/replay.h"
#include "runtime/instances_loop/world.h"

namespace arena::apps {
namespace {

using platform::NextTick;

constexpr std::int64_t kFrame = 16667;                       // microseconds of a frame without a screen to wait for
constexpr std::int64_t kLongestFrame = 1000000;              // a stall counts as at most this
constexpr std::int64_t kHashEvery = 600;                     // frames
constexpr std::int64_t kScreenshotEvery = 240;               // frames of an off-screen show
constexpr std::int64_t kShowFrames = 20 * std::int64_t{60};  // unless told otherwise

bool must_end() { return platform::end_request() != 0; }

// Null when nobody plays.
std::unique_ptr<Autoplayer> autoplayer(bool wanted) {
  return wanted && game_description().make_autoplayer != nullptr ? game_description().make_autoplayer() : nullptr;
}

// A console beside a window: its requests are answered between two frames.
class WindowConsole {
 public:
  explicit WindowConsole(host::Game& game) : console_(game, {nullptr, must_end}), lines_(console::kLongestRequest) {}

  bool holds_clock() const { return console_.holds_clock(); }
  // False when somebody quit. When nobody speaks any more the game goes on by the clock.
  bool answer() {
    using Result = platform::InputLines::Result;
    while (is_open_ && !console_.has_quit()) {
      const Result result = lines_.next_if_there(line_);
      if (result == Result::kNothing) break;
      is_open_ = result == Result::kLine && platform::write_output(console_.answer(line_) + "\n");
      if (!is_open_) console_.answer("{\"run\": true}");
    }
    return !console_.has_quit();
  }

 private:
  console::Console console_;
  platform::InputLines lines_;
  std::string line_;
  bool is_open_ = true;
};

class ConsoleMode final : public Mode {
 public:
  ConsoleMode(host::Game& game, const Options& options)
      : player_(autoplayer(options.demo)), console_(game, hooks()), lines_(console::kLongestRequest) {}

  NextTick tick() override {
    using Lines = platform::InputLines;
    const Lines::Result result = lines_.next(line_);
    if (result == Lines::Result::kFailed) return fail("standard input cannot be read");
    if (result != Lines::Result::kLine) return NextTick::kNever;
    if (!platform::write_output(console_.answer(line_) + "\n")) return fail("the reply cannot be written");
    return console_.has_quit() ? NextTick::kNever : NextTick::kAtOnce;
  }

 private:
  console::StepHooks hooks() const {
    console::StepHooks hooks;
    hooks.must_end = must_end;
    if (player_ != nullptr) hooks.before_frame = [player = player_.get()] { player->play(); };
    return hooks;
  }
  std::unique_ptr<Autoplayer> player_;
  console::Console console_;
  platform::InputLines lines_;
  std::string line_;
};

// Ends with the game, or after so many frames (never when negative).
class FrameMode : public Mode {
 public:
  FrameMode(host::Game& game, std::int64_t frames, bool plays) : game_(game), player_(autoplayer(plays)), frames_(frames) {}

 protected:
  bool goes_on() const { return !must_end() && !world().ended && frame_ != frames_; }
  void run_frame(std::int64_t microseconds) {
    if (player_ != nullptr) player_->play();
    game_.run_frame(microseconds);
    ++frame_;
  }
  std::int64_t frame() const { return frame_; }  // how many have run
  host::Game& game_;

 private:
  std::unique_ptr<Autoplayer> player_;
  std::int64_t frames_, frame_ = 0;
};

// Where --hashes goes.
class HashLines {
 public:
  explicit HashLines(const std::string& path) : path_(path) {
    if (is_wanted() && !is_output()) file_.open(files::path_of(path), std::ios::binary);  // the same bytes on every system
    is_good_ = is_output() || file_.good();
  }
  bool is_wanted() const { return !path_.empty(); }
  bool is_good() const { return is_good_; }
  std::string problem() const { return (is_output() ? "standard output" : files::on_one_line(path_)) + ": the hashes cannot be written"; }
  void write(const std::string& line) {
    is_good_ = is_output() ? platform::write_output(line + "\n") : (file_ << line << std::endl).good();
  }

 private:
  bool is_output() const { return path_ == "-"; }
  std::string path_;
  std::ofstream file_;
  bool is_good_ = false;
};

class HeadlessMode final : public FrameMode {
 public:
  HeadlessMode(host::Game& game, const Options& options) : FrameMode(game, options.frames, options.demo), hashes_(options.hashes) {}

  NextTick tick() override {
    if (!hashes_.is_good()) return fail(hashes_.problem());
    if (!goes_on()) return NextTick::kNever;
    run_frame(kFrame);
    if (hashes_.is_wanted() && frame() % kHashEvery == 0) hashes_.write(hash_line(static_cast<std::size_t>(frame())));
    return NextTick::kAtOnce;
  }

 private:
  HashLines hashes_;
};

class WindowMode final : public FrameMode {
 public:
  WindowMode(host::Game& game, platform::Window& window, const Options& options)
      : FrameMode(game, options.frames, options.demo), window_(window), next_(options.vsync ? NextTick::kWithScreen : NextTick::kAtOnce) {
    if (options.console) console_ = std::make_unique<WindowConsole>(game);
  }

  NextTick tick() override {
    const bool stands_still = console_ != nullptr && console_->holds_clock();
    window_.leave_closing_to_game(!stands_still);
    if (!window_.poll() || !goes_on() || (console_ != nullptr && !console_->answer())) return NextTick::kNever;
    const platform::FramePace pace = platform::frame_pace();
    if (pace.frames_per_second > 0) pacer_.wait(pace);
    int width = 0, height = 0;
    window_.drawable_size(width, height);
    game_.set_target_size(width, height);
    const std::int64_t now = platform::steady_microseconds();
    if (window_.takes_screenshot()) game_.take_screenshot();
    if (console_ != nullptr && console_->holds_clock()) {
      game_.draw();
    } else {
      run_frame(std::clamp<std::int64_t>(now - before_, 1, kLongestFrame));
    }
    before_ = now;
    return pace.frames_per_second > 0 ? NextTick::kAtOnce : next_;
  }

 private:
  platform::Window& window_;
  std::unique_ptr<WindowConsole> console_;  // null: none
  NextTick next_;
  platform::Pacer pacer_;
  std::int64_t before_ = platform::steady_microseconds() - kFrame;
};

class ShowMode final : public FrameMode {
 public:
  ShowMode(host::Game& game, const Options& options) : FrameMode(game, options.frames < 0 ? kShowFrames : options.frames, true) {}

  NextTick tick() override {
    if (!goes_on()) return NextTick::kNever;
    run_frame(kFrame);
    if (frame() % kScreenshotEvery != 0) return NextTick::kAtOnce;
    const std::string path = folder_ + "/show-" + std::to_string(frame() / kScreenshotEvery) + ".png";
    if (game_.save_screenshot(path)) std::cerr << path << "\n";
    return NextTick::kAtOnce;
  }

 private:
  const std::string folder_ = screenshot_folder();
};

class ReplayMode final : public Mode {
 public:
  ReplayMode(host::Game& game, recording::Replay& replay, const Options& options)
      : game_(game),
        replay_(replay),
        frames_(options.frames),
        verifies_(options.verify),
        describes_(options.describe),
        hashes_(options.hashes) {}

  NextTick tick() override {
    if (!hashes_.is_good()) return fail(hashes_.problem());
    if (must_end()) return NextTick::kNever;
    if (replay_.frame() == static_cast<std::size_t>(frames_)) return end();
    if (replay_.is_at_end()) {
      if (!replay_.finish()) return end();
    } else {
      replay_.step(game_);
      if (hashes_.is_wanted()) hashes_.write(hash_line(replay_.frame()));
    }
    if (verifies_) {
      if (const std::string difference = replay_.difference(); !difference.empty()) return fail("the run is another one " + difference);
    }
    return NextTick::kAtOnce;
  }

 private:
  NextTick end() {
    if (describes_ && !platform::write_output(host::describe_state())) return fail("the state cannot be written");
    return NextTick::kNever;
  }
  host::Game& game_;
  recording::Replay& replay_;
  std::int64_t frames_;
  bool verifies_, describes_;
  HashLines hashes_;
};

}  // namespace

std::string hash_line(std::size_t frame) {
  char text[48];
  std::snprintf(text, sizeof text, "%zu %llx", frame, static_cast<unsigned long long>(host::state_hash()));
  return text;
}

std::unique_ptr<Mode> console_mode(host::Game& game, const Options& options) { return std::make_unique<ConsoleMode>(game, options); }
std::unique_ptr<Mode> headless_mode(host::Game& game, const Options& options) { return std::make_unique<HeadlessMode>(game, options); }
std::unique_ptr<Mode> window_mode(host::Game& game, platform::Window& window, const Options& options) {
  return std::make_unique<WindowMode>(game, window, options);
}
std::unique_ptr<Mode> replay_mode(host::Game& game, recording::Replay& replay, const Options& options) {
  return std::make_unique<ReplayMode>(game, replay, options);
}
std::unique_ptr<Mode> show_mode(host::Game& game, const Options& options) { return std::make_unique<ShowMode>(game, options); }

}  // namespace arena::apps
