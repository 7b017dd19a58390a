#pragma once
// Object types of the tests: a probe writes down every event it gets in global.seen.
#include <string>
#include <vector>

#include ARENA_ASSETS  // of the game that is tested
#include "runtime/instances_loop/object_type.h"

namespace arena::test {

// Behind the game's own: oProbe; oProbeChild inherits all but its Create and collides with oProbe.
inline constexpr int kProbe = game::kObjectCount, kProbeChild = kProbe + 1;

std::vector<ObjectDefinition> probe_objects();

// What the script draw_the_statement runs, as the hook of a probe's Draw event.
extern std::string statement_to_draw;

}  // namespace arena::test
