#pragma once
// Ways back: snapshots of the game under names, and the last frames, which are run again from a snapshot before them with all that
// entered and was evaluated then. Nothing is remembered of frames before somebody asks for it, and frames cost nothing until then.
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/console/request.h"
#include "runtime/input/input_state.h"
#include "runtime/input/outside.h"
#include "runtime/session/snapshot.h"

namespace arena::host {
class Game;
}

namespace arena::console {

inline constexpr std::size_t kMostSnapshots = 16;  // under names
inline constexpr std::int64_t kMostRewound = 600;  // frames

class Past {
 public:
  // `evaluate` does again what an {"eval": ...} did; what comes of it does not matter. The game outlives this and is the current session
  // in every call.
  Past(host::Game& game, std::function<void(const json& request)> evaluate);
  ~Past();
  Past(const Past&) = delete;
  Past& operator=(const Past&) = delete;

  void save(const std::string& name);
  // The frames that were remembered are forgotten: others lead to the snapshot.
  void restore(const std::string& name);
  // To right behind the frame so many before the last one. 0 begins to remember, where that has not been done.
  void rewind(std::int64_t frames);

  // Every evaluation is told beforehand, and every frame of the game runs through here.
  void note_evaluation(const json& request);
  void run_frame(std::int64_t microseconds);

 private:
  struct Moment {  // a frame, and what happened between it and the one before
    std::vector<json> evaluated;
    std::vector<std::string> answers;  // from outside, in the order in which scripts asked
    std::vector<InputEvent> input;
    std::int64_t microseconds = 0;
    std::size_t bytes = 0;  // of what was evaluated
  };
  struct Keyframe {
    std::size_t frame;  // right behind this one
    std::unique_ptr<Snapshot> snapshot;
  };
  void begin();
  void forget();
  std::unique_ptr<Snapshot> snapshot() const;
  void take_keyframe();
  void drop_oldest();
  void run_again(const Moment& moment, bool is_last);
  std::size_t last_frame() const { return keyframes_.front().frame + moments_.size(); }

  host::Game& game_;
  std::function<void(const json&)> evaluate_;
  std::map<std::string, std::unique_ptr<Snapshot>> named_;
  bool hears_answers_ = false;
  AnswerListener heard_before_;
  std::deque<Keyframe> keyframes_;  // empty: nothing is remembered
  std::deque<Moment> moments_;      // since the first of them
  Moment next_;
  std::size_t evaluated_bytes_ = 0;  // in moments_
  bool is_running_again_ = false;
};

}  // namespace arena::console
