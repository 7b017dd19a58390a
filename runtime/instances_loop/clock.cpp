#include "runtime/instances_loop/clock.h"

#include "runtime/session/session.h"

namespace arena {
namespace {
const StatePart<GameClock> part{PartLevel::kWorld, "clock"};
}

GameClock& game_clock() { return part(); }

}  // namespace arena
