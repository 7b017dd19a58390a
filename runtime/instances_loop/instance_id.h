#pragma once
// What values need to know of instances: the id that an instance converts to.
#include <cstdint>

namespace arena {

class WBObjectBase;

// `object` must be an instance.
std::int32_t instance_id_of(const WBObjectBase& object);

}  // namespace arena
