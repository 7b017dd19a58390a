#pragma once
// The platform calls the program, not the other way round: where the system owns the loop, it calls the same tick.
#include <cstdint>
#include <functional>

namespace arena::platform {

enum class NextTick : std::uint8_t {
  kNever,       // the program is at its end
  kAtOnce,      // as soon as can be
  kWithScreen,  // with the screen's next picture; 60 times a second where no screen holds the program back
};

// Calls `tick` again and again, as its answers say, until one of them is kNever.
void run_main_loop(const std::function<NextTick()>& tick);

}  // namespace arena::platform
