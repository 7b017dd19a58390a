// A replay in the window. Keys and pointer belong to its controls (toolkit/viewer), which run in a session beside the game; the game gets
// what was recorded, until somebody plays on from where it is.
#include <algorithm>
#include <vector>

#include "apps/modes.h"
#include "apps/user_files.h"
#include "engine/files/paths.h"
#include "engine/host/companion.h"
#include "engine/platform/crash_folder.h"
#include "engine/platform/end_requests.h"
#include "engine/platform/window.h"
#include "engine/recording/recorder.h"
#include "engine/recording/timeline.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/input/outside.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/strings.h"

namespace arena::apps {
namespace {

using platform::NextTick;

constexpr std::int64_t kLongestTick = 250'000;  // microseconds: a stall is not made up for beyond that
constexpr double kFastestHeard = 2;
constexpr double kBeforeEnd = 5;            // seconds
constexpr std::int64_t kPassTick = 30'000;  // microseconds of the first pass between two pictures

class ViewerMode final : public Mode {
 public:
  ViewerMode(host::Game& game, platform::Window& window, recording::Replay& replay, const recording::Recording& recorded,
             const std::string& ending, const Options& options)
      : game_(game),
        window_(window),
        replay_(replay),
        recorded_(recorded),
        timeline_(game, replay),
        controls_(std::make_unique<host::Companion>(game, "oReplayViewer", &window)),
        ending_(ending),
        record_(options.record),
        data_(options.data),
        begins_at_end_(options.before_fault),
        last_frame_(options.frames),
        take_over_at_(options.take_over) {
    ends_.reserve(recorded.frames.size() + 1);
    ends_.push_back(0);
    for (const recording::Frame& frame : recorded.frames) ends_.push_back(ends_.back() + frame.microseconds);
  }

  NextTick tick() override {
    const NextTick next = go_on();
    if (next == NextTick::kNever && recorder_ != nullptr) end_recording();
    return next;
  }

 private:
  NextTick go_on() {
    if (platform::end_request() != 0 || !poll()) return NextTick::kNever;
    const std::int64_t now = platform::steady_microseconds();
    const std::int64_t elapsed = std::clamp<std::int64_t>(now - before_, 0, kLongestTick);
    before_ = now;
    return controls_ != nullptr ? show(elapsed) : play_on(elapsed);
  }

  // In order only: a run that a script error ends breaks off in its frame.
  void end_recording() {
    const SessionScope scope(game_.session());
    recorder_->end();
    game_.set_listener(nullptr);
    hear_answers({});
  }

  NextTick show(std::int64_t elapsed) {
    if (!controls_->is_there()) return NextTick::kNever;
    controls_->advance(elapsed);
    if (!timeline_.is_built()) {
      read_on();
    } else if (!go_where_wanted() && !play(elapsed)) {
      game_.draw();
    }
    if (wants_to_take_over()) return take_over(), NextTick::kWithScreen;
    tell();
    if (last_frame_ >= 0 && timeline_.is_built() && replay_.frame() >= static_cast<std::size_t>(last_frame_)) return NextTick::kNever;
    return NextTick::kWithScreen;
  }

  // The player's own run now, which is recorded like any other.
  NextTick play_on(std::int64_t elapsed) {
    const SessionScope scope(game_.session());
    game_.run_frame(std::max<std::int64_t>(elapsed, 1));
    return world().ended ? NextTick::kNever : NextTick::kWithScreen;
  }

  bool wants_to_take_over() const { return timeline_.is_built() && (controls_->hear("replay_take_over") != 0 || take_over_at_ >= 0); }
  void take_over() {
    if (take_over_at_ >= 0) timeline_.seek(std::min(static_cast<std::size_t>(take_over_at_), timeline_.frames()));
    controls_.reset();
    const SessionScope scope(game_.session());
    const std::filesystem::path file = record_.empty() ? new_recording_file() : files::path_of(record_);
    if (!file.empty()) recorder_ = std::make_unique<recording::Recorder>(file, recorded_, replay_.frame());
    game_.set_listener(recorder_.get());
    game_.hand_over(window_);
    window_.leave_closing_to_game(true);
    std::error_code ignored;
    if (recorder_ != nullptr) platform::record_for_crash(std::filesystem::absolute(file, ignored));
    platform::prepare_crash_folder(next_crash_folder(data_));
  }

  bool poll() {
    {
      const SessionScope scope(controls_ != nullptr ? controls_->session() : game_.session());
      if (!window_.poll()) return false;
      if (window_.takes_screenshot()) game_.take_screenshot();
    }
    int width = 0, height = 0;
    window_.drawable_size(width, height);
    game_.set_target_size(width, height);
    return true;
  }

  // The first pass, whose pictures fly by.
  void read_on() {
    if (timeline_.build(kPassTick)) {
      timeline_.seek(begins_at_end_ ? frame_at(std::max(0.0, seconds_at(timeline_.frames()) - kBeforeEnd)) : 0);
    } else {
      game_.draw();
    }
  }

  bool go_where_wanted() {
    std::size_t frame = replay_.frame();
    if (const double seconds = controls_->hear("replay_seek"); seconds >= 0) {
      frame = frame_at(seconds);
      controls_->tell("replay_seek", -1.0);
    }
    if (const double steps = controls_->hear("replay_step"); steps != 0) {
      frame = steps > 0 ? frame + 1 : frame - std::min<std::size_t>(frame, 1);
      controls_->tell("replay_step", 0.0);
    }
    frame = std::min(frame, timeline_.frames());
    if (frame == replay_.frame()) return false;
    due_ = 0;
    timeline_.seek(frame);
    return true;
  }

  // All frames whose time has come, of which the last one is seen; up to twice the speed they are heard. False: there was none.
  bool play(std::int64_t elapsed) {
    if (controls_->hear("replay_paused") != 0) return false;
    const double speed = controls_->hear("replay_speed");
    due_ += static_cast<double>(elapsed) * speed;
    std::size_t to = replay_.frame();
    while (to < timeline_.frames() && due_ >= static_cast<double>(recorded_.frames[to].microseconds))
      due_ -= static_cast<double>(recorded_.frames[to++].microseconds);
    if (to == timeline_.frames()) controls_->tell("replay_paused", 1.0);
    if (to == replay_.frame()) return false;
    if (speed > kFastestHeard) {
      timeline_.seek(to);
      return true;
    }
    while (replay_.frame() < to) {
      game_.be_watched(replay_.frame() + 1 == to, true);
      replay_.step(game_);
    }
    return true;
  }

  // How many frames had run by then.
  std::size_t frame_at(double seconds) const {
    const auto behind = std::upper_bound(ends_.begin(), ends_.end(), static_cast<std::int64_t>(seconds * 1e6 + 0.5));
    return static_cast<std::size_t>(behind - ends_.begin()) - 1;
  }
  double seconds_at(std::size_t frame) const { return static_cast<double>(ends_[frame]) / 1e6; }

  void tell() {
    controls_->tell("replay_seconds", seconds_at(replay_.frame()));
    controls_->tell("replay_length", seconds_at(timeline_.is_built() ? timeline_.frames() : recorded_.frames.size()));
    controls_->tell("replay_ready", timeline_.progress());
    if (marks_told_ == timeline_.marks().size() && was_ready_ == timeline_.is_built()) return;
    marks_told_ = timeline_.marks().size();
    was_ready_ = timeline_.is_built();
    controls_->tell_text("replay_note", note());
    const SessionScope scope(controls_->session());
    const RValue marks = make_array();
    for (const recording::Timeline::Mark& mark : timeline_.marks()) {
      const RValue pair[] = {seconds_at(mark.frame), make_string(mark.text)};
      array_append(*marks.array, make_array(pair, 2));
    }
    controls_->tell("replay_marks", marks);
  }
  // How it ends, where that is worth a word.
  std::string note() const {
    if (!timeline_.another_run().empty()) return "This is not the run that was recorded: " + timeline_.another_run();
    return timeline_.error().empty() ? ending_ : "A script error ends this run.";
  }

  host::Game& game_;
  platform::Window& window_;
  recording::Replay& replay_;
  const recording::Recording& recorded_;
  recording::Timeline timeline_;
  std::unique_ptr<host::Companion> controls_;      // null once the player has taken over
  std::unique_ptr<recording::Recorder> recorder_;  // from then on
  std::vector<std::int64_t> ends_;                 // microseconds at which so many frames had run
  std::string ending_;                             // what comes behind the last frame
  std::string record_;                             // where; "": among the last runs
  std::string data_;                               // the data file that was asked for; "": the program's own
  bool begins_at_end_;                             // a few seconds before it, for whoever looks for a fault
  std::int64_t last_frame_, take_over_at_, before_ = platform::steady_microseconds();
  double due_ = 0;  // microseconds of the run whose turn it is
  std::size_t marks_told_ = 0;
  bool was_ready_ = false;
};

}  // namespace

std::unique_ptr<Mode> viewer_mode(host::Game& game, platform::Window& window, recording::Replay& replay,
                                  const recording::Recording& recorded, const std::string& ending, const Options& options) {
  return std::make_unique<ViewerMode>(game, window, replay, recorded, ending, options);
}

}  // namespace arena::apps
