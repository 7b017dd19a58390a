// Values live in a session without a world: nothing is an instance.
#include <cstdint>
#include <string_view>

#include "runtime/variables_calls/resolve.h"

namespace arena {
PropertyObject* resolve_instance_object(std::int32_t) { return nullptr; }
CInstance* instance_of(WBObjectBase*) { return nullptr; }
bool is_instance_ref(const RValue&) { return false; }
std::string_view object_type_name(std::int32_t) { return "<undefined>"; }
}  // namespace arena
