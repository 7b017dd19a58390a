#pragma once
// Object types of the tests: a probe writes down every event it gets in global.seen.
#include <vector>

#include "runtime/instances_loop/object_type.h"

namespace arena::test {

inline constexpr int kProbe = 22, kProbeChild = 23;  // oProbe; oProbeChild inherits all but its Create and collides with oProbe

std::vector<ObjectDefinition> probe_objects();

}  // namespace arena::test
