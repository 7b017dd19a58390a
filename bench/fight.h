#pragma once
// Whole frames of a fight in the arena, with the share of each stage. `scale` is how much slower this machine is than the one that the
// required times are for.
#include "engine/host/game.h"

namespace bench {

void run_fights(arena::host::Game& game, int frames, double scale);

}  // namespace bench
