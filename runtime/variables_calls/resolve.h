#pragma once
// Finding instances by what scripts name them with: an id, an object index (its first instance), a reference. Variables and arguments ask;
// the world, which stands above them, answers (instances_loop/resolve.cpp).
#include <cstdint>
#include <string_view>

#include "runtime/arrays_structs/object.h"

namespace arena {

class CInstance;

inline constexpr std::int32_t kFirstInstanceId = 100000;

// Live instances only; null when nothing is found.
CInstance* resolve_instance(std::int32_t id_or_object);
PropertyObject* resolve_instance_object(std::int32_t id_or_object);  // the same for those who know no more of instances
CInstance* instance_of(WBObjectBase* object);                        // the same object, or null when it is no instance
bool is_instance_ref(const RValue& value);
std::string_view object_type_name(std::int32_t object_index);  // "<undefined>" when there is no such object

}  // namespace arena
