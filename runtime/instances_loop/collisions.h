#pragma once
// Finding the instances that overlap a shape or each other. Results come in order of creation, so they never depend on addresses.
#include <cstdint>
#include <vector>

#include "runtime/instances_loop/collision_shapes.h"

namespace arena {

// Live instances of `object` (children included; kAllTarget: any) that overlap the shape. `precise` off: their boxes are tested.
std::vector<CInstance*> overlapping(const CollisionShape& shape, std::int32_t object_or_id, bool precise, const CInstance* except);
// The first of them, or null.
CInstance* first_overlapping(const CollisionShape& shape, std::int32_t object_or_id, bool precise, const CInstance* except);

// One pass of collision events over every pair of the frame.
void run_collision_events();

}  // namespace arena
