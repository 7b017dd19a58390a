#pragma once
// Lets frames begin evenly, so many a second. The system may sleep longer than it was told to: what is left of the way is waited awake.
#include <cstdint>
#include <functional>
#include <utility>

#include "engine/platform/window.h"

namespace arena::platform {

class Pacer {
 public:
  // The clock and the sleep of the machine; others for tests.
  explicit Pacer(std::function<std::int64_t()> now = steady_microseconds, std::function<void(std::int64_t)> sleep = sleep_microseconds)
      : now_(std::move(now)), sleep_(std::move(sleep)) {}
  // Comes back when the next frame is due. After a frame that took too long the next one begins at once, and none is made up for.
  // `pace` has a speed.
  void wait(const FramePace& pace);

 private:
  std::function<std::int64_t()> now_;
  std::function<void(std::int64_t)> sleep_;
  std::int64_t due_ = 0;  // when the last frame was to begin
};

}  // namespace arena::platform
