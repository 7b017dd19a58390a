#pragma once
// A recording that can be sought: a first pass plays it through and keeps snapshots, then any frame is reached from the nearest one before
// it. Its marks are what scripts call worth finding again (moment_mark).
//
// Always true: the state at a frame is the same, however the frame was reached.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/recording/replay.h"
#include "runtime/session/snapshot.h"

namespace arena::recording {

inline constexpr std::size_t kMostMarks = 1000;
inline constexpr std::size_t kLongestMark = 64;  // bytes; a longer one is cut

struct TimelineLimits {
  // Bytes of all snapshots. Past them the one goes that leaves the shortest gap.
  std::size_t memory = std::size_t{64} << 20;
  // Microseconds that it takes to play from one snapshot to the next where memory allows it, and so to seek: 250 ms are asked of a seek,
  // and half an hour thinned out to fit into the memory has gaps of up to three times this.
  std::int64_t between = 60'000;
};

class Timeline {
 public:
  struct Mark {
    std::size_t frame;  // that had run when it was seen
    std::string text;
  };

  // The game was started for the replay, and no frame of it has run. Both outlive the timeline.
  Timeline(host::Game& game, Replay& replay, const TimelineLimits& limits = {});
  ~Timeline();
  Timeline(const Timeline&) = delete;
  Timeline& operator=(const Timeline&) = delete;

  // Goes on with the first pass for about so long, a frame at least; true when it is done. The game is then wherever the pass was.
  bool build(std::int64_t budget_microseconds);
  bool is_built() const { return is_built_; }
  double progress() const;  // of the first pass, 0 to 1
  // Puts the game to where so many frames had run. The last of them is seen; those on the way there are not, and none is heard. No further
  // than the pass has come.
  void seek(std::size_t frame);
  // That can be reached: while building so far, then all, or those before the one that a script error ends.
  std::size_t frames() const { return passed_; }
  const std::vector<Mark>& marks() const { return marks_; }  // in order of time
  std::size_t snapshots() const { return points_.size(); }
  std::size_t bytes() const { return bytes_; }  // of all snapshots together
  // The report of the script error that ends the recording before its last frame; "": it goes to its end.
  const std::string& error() const { return error_; }
  // Where the first pass was first seen to go another way than the recorded run (Replay::difference()); "": nowhere so far.
  const std::string& another_run() const { return another_run_; }

 private:
  struct Point {
    std::size_t frame;
    std::int64_t microseconds;  // that it takes to play here from the point before
    std::unique_ptr<Snapshot> snapshot;
  };
  // Neither seen nor heard in the meantime.
  class Unwatched;
  void go_to(std::size_t frame);
  void restore(const Point& point);
  void step_in_past();
  void step_of_pass();
  void keep_point();
  std::int64_t gap_without(std::size_t place) const;
  void drop_point(std::size_t place);
  void note(std::string_view text);

  host::Game& game_;
  Replay& replay_;
  TimelineLimits limits_;
  std::vector<Point> points_;  // the first is where no frame had run
  std::size_t bytes_ = 0;
  std::size_t passed_ = 0;        // frames of the first pass
  std::int64_t since_point_ = 0;  // microseconds that the pass took since the last point that it made
  bool is_built_ = false, is_in_past_ = false;
  std::vector<Mark> marks_;
  std::string error_, another_run_;
};

}  // namespace arena::recording
