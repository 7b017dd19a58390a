#include "engine/platform/main_loop.h"

#include "engine/platform/window.h"

namespace arena::platform {
namespace {
constexpr std::int64_t kPicture = 16667;  // microseconds between two
}

void run_main_loop(const std::function<NextTick()>& tick) {
  for (;;) {
    const std::int64_t start = steady_microseconds();
    const NextTick next = tick();
    if (next == NextTick::kNever) return;
    const std::int64_t passed = steady_microseconds() - start;
    if (next == NextTick::kWithScreen && passed < kPicture / 2) sleep_microseconds(kPicture - passed);
  }
}

}  // namespace arena::platform
