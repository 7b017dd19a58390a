#pragma once
// Plays a recording in a game that was started for it, and which it must outlive.
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "engine/host/game.h"
#include "engine/recording/recording.h"

namespace arena::recording {

// One sentence when the recording is of another game, another version or other data; "" when it fits.
std::string misfit(const Beginning& recorded, const Beginning& here);

class Replay final : public host::FrameListener {
 public:
  // `recording` must outlive it.
  explicit Replay(const Recording& recording) : recording_(recording) {}
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  // The room, the seed and what entered at the start, from the recording: for the game that is to be started.
  void prepare(host::GameOptions& options);
  void before_start() override;
  void after_frame() override;
  void console_says(const std::string& text) override;
  // What performs the requests of a run that a console drove: a console of this game. Without it they are left out.
  void set_console(std::function<void(const std::string& request)> perform) { perform_ = std::move(perform); }
  // Looks at the run from its first frame on, for recordings that say what was shown; null: nobody. Not owned.
  void set_witness(Witness* witness) { witness_ = witness; }
  bool is_at_end() const { return frame_ == recording_.frames.size(); }
  std::size_t frames() const { return recording_.frames.size(); }
  std::size_t frame() const { return frame_; }  // how many have run
  // Checkpoints up to here: the seconds of the run.
  std::size_t checkpoints_passed() const;
  // Runs the next frame as it was.
  void step(host::Game& game);
  // Behind the last frame: performs what the console asked then; false when there is nothing more.
  bool finish();
  // The game was put back to where so many frames, at most all, had run.
  void restart_at(std::size_t frame);
  // Compares the state with what the recording says about it after this frame, where it says something: the parts that differ, or "state"
  // when none of their short figures does; with a witness also "drawing calls", "sounds that started" and "replies", each since the last
  // comparison.
  std::vector<std::string> differences();
  // The same as words, "from second 3 on (by frame 180), in clock, oEnemy"; "" where nothing differs.
  std::string difference();

 private:
  // Of the frame that runs, or behind the last one.
  const std::vector<std::string>& answers() const;
  std::string next_answer();
  void perform(const std::vector<std::string>& requests);
  const Recording& recording_;
  std::function<void(const std::string&)> perform_;
  Witness* witness_ = nullptr;
  std::size_t frame_ = 0, answer_ = 0;
  std::size_t requests_ = 0;  // performed since the last frame
  bool is_finished_ = false;
};

// The verdict of a comparison that found nothing up to here: a sentence.
std::string same_run(const Replay& replay);

}  // namespace arena::recording
