#include "engine/recording/timeline.h"

#include <algorithm>

#include "engine/platform/window.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/moments.h"
#include "runtime/reports/report.h"

namespace arena::recording {
class Timeline::Unwatched {
 public:
  explicit Unwatched(host::Game& game) : game_(game) { game_.be_watched(false, false); }
  ~Unwatched() { game_.be_watched(true, true); }
  Unwatched(const Unwatched&) = delete;
  Unwatched& operator=(const Unwatched&) = delete;

 private:
  host::Game& game_;
};

Timeline::Timeline(host::Game& game, Replay& replay, const TimelineLimits& limits) : game_(game), replay_(replay), limits_(limits) {
  ARENA_ASSERT(replay.frame() == 0);
  const SessionScope scope(game_.session());
  hear_moments([this](std::string_view text) { note(text); });
  keep_point();
}

Timeline::~Timeline() {
  const SessionScope scope(game_.session());
  hear_moments({});
}

bool Timeline::build(std::int64_t budget_microseconds) {
  if (is_built_) return true;
  const Unwatched unwatched(game_);
  const std::int64_t until = platform::steady_microseconds() + budget_microseconds;
  go_to(passed_);
  do {
    step_of_pass();
  } while (!is_built_ && platform::steady_microseconds() < until);
  return is_built_;
}

double Timeline::progress() const {
  return is_built_ ? 1 : static_cast<double>(passed_) / static_cast<double>(std::max<std::size_t>(1, replay_.frames()));
}

void Timeline::seek(std::size_t frame) {
  const Unwatched unwatched(game_);
  frame = std::min(frame, passed_);
  go_to(frame > 0 ? frame - 1 : 0);
  game_.be_watched(true, false);
  if (frame > 0) {
    step_in_past();
  } else {
    game_.draw();
    restore(points_.front());  // a run draws nothing before its first step
  }
}

void Timeline::restore(const Point& point) {
  game_.restore(*point.snapshot);
  replay_.restart_at(point.frame);
}

// Its marks are known.
void Timeline::step_in_past() {
  is_in_past_ = true;
  replay_.step(game_);
  is_in_past_ = false;
}

// From where the game is when that is nearer than the nearest snapshot.
void Timeline::go_to(std::size_t frame) {
  ARENA_ASSERT(frame <= passed_);
  const auto behind =
      std::upper_bound(points_.begin(), points_.end(), frame, [](std::size_t wanted, const Point& each) { return wanted < each.frame; });
  const Point& nearest = *std::prev(behind);
  if (replay_.frame() > frame || replay_.frame() < nearest.frame) restore(nearest);
  while (replay_.frame() < frame) step_in_past();
}

void Timeline::step_of_pass() {
  if (replay_.is_at_end()) {
    is_built_ = true;
    return;
  }
  const std::int64_t before = platform::steady_microseconds();
  try {
    replay_.step(game_);
  } catch (const WBKSLException& error) {
    error_ = error.report();
    is_built_ = true;
    go_to(passed_);
    return;
  }
  since_point_ += platform::steady_microseconds() - before;
  passed_ = replay_.frame();
  if (another_run_.empty()) {
    const SessionScope scope(game_.session());
    another_run_ = replay_.difference();
  }
  if (since_point_ >= limits_.between) keep_point();
}

void Timeline::keep_point() {
  auto taken = std::make_unique<Snapshot>();
  game_.take_snapshot(*taken, points_.empty() ? nullptr : points_.back().snapshot.get());
  bytes_ += taken->bytes();  // all that came to those of the points before
  points_.push_back({replay_.frame(), since_point_, std::move(taken)});
  since_point_ = 0;
  // The first one stays, and so does the newest as long as there is another: the next one shares most with it.
  while (bytes_ > limits_.memory && points_.size() > 1) {
    std::size_t densest = 1;
    if (points_.size() == 2) limits_.between *= 2;  // not even two find room: they are tried less and less often
    for (std::size_t i = 2; i + 1 < points_.size(); ++i) {
      if (gap_without(i) < gap_without(densest)) densest = i;
    }
    drop_point(densest);
  }
}

// Of a point that has one behind it.
std::int64_t Timeline::gap_without(std::size_t place) const { return points_[place].microseconds + points_[place + 1].microseconds; }

void Timeline::drop_point(std::size_t place) {
  bytes_ -= points_[place].snapshot->bytes();
  std::int64_t& longer = place + 1 < points_.size() ? points_[place + 1].microseconds : since_point_;
  longer += points_[place].microseconds;
  points_.erase(points_.begin() + static_cast<std::ptrdiff_t>(place));
}

void Timeline::note(std::string_view text) {
  if (is_built_ || is_in_past_ || marks_.size() >= kMostMarks) return;
  std::size_t end = std::min(text.size(), kLongestMark);
  while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;  // between two characters
  marks_.push_back({replay_.frame(), std::string(text.substr(0, end))});
}

}  // namespace arena::recording
