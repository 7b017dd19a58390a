#pragma once
// Plays a recording in a game that was started for it, and which it must outlive.
#include <cstddef>
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
  bool is_at_end() const { return frame_ == recording_.frames.size(); }
  std::size_t frames() const { return recording_.frames.size(); }
  std::size_t frame() const { return frame_; }  // how many have run
  // Checkpoints up to here: the seconds of the run.
  std::size_t checkpoints_passed() const;
  // Runs the next frame as it was.
  void step(host::Game& game);
  // The game was put back to where so many frames, at most all, had run.
  void restart_at(std::size_t frame);
  // Compares the state with what the recording says about it after this frame, where it says something: the parts that differ, or "state"
  // when none of their short figures does.
  std::vector<std::string> differences() const;
  // The same as words, "from second 3 on (by frame 180), in clock, oEnemy"; "" where nothing differs.
  std::string difference() const;

 private:
  const Frame& running() const { return frame_ == 0 ? recording_.start : recording_.frames[frame_ - 1]; }
  std::string next_answer();
  const Recording& recording_;
  std::size_t frame_ = 0, answer_ = 0;
};

}  // namespace arena::recording
