#pragma once
// Object types of the tests: a probe writes down every event it gets in global.seen.
#include <vector>

#include ARENA_ASSETS  // of the game that is tested
#include "runtime/instances_loop/object_type.h"

namespace arena::test {

// Behind the game's own: oProbe; oProbeChild inherits all but its Create and collides with oProbe.
inline constexpr int kProbe = game::kObjectCount, kProbeChild = kProbe + 1;

std::vector<ObjectDefinition> probe_objects();

}  // namespace arena::test
