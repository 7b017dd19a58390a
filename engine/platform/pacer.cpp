#include "engine/platform/pacer.h"

#include <algorithm>

#include "runtime/checks/assert.h"

namespace arena::platform {

void Pacer::wait(const FramePace& pace) {
  ARENA_ASSERT(pace.frames_per_second > 0);
  const std::int64_t period = 1'000'000 / pace.frames_per_second, now = now_();
  due_ = std::max(due_ + period, now);
  if (due_ > now + period) due_ = now + period;  // the speed was changed
  const std::int64_t margin = static_cast<std::int64_t>(pace.margin_milliseconds * 1000);
  if (due_ - now > margin) sleep_(due_ - now - margin);
  while (now_() < due_) {
  }
}

}  // namespace arena::platform
