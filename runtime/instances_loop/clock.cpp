#include "runtime/instances_loop/clock.h"

#include "runtime/session/session.h"

namespace arena {
namespace {
const Part<GameClock> part{PartLevel::kWorld, "clock"};
}

GameClock& game_clock() { return part(); }

}  // namespace arena
