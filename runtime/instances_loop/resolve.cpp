#include "runtime/variables_calls/resolve.h"

#include "runtime/instances_loop/world.h"
#include "runtime/values/refs.h"

namespace arena {

CInstance* resolve_instance(std::int32_t number) {
  if (number >= kFirstInstanceId) return world().find(number);
  if (!object_types().has(number)) return nullptr;
  for (CInstance* instance : object_types().at(number).instances) {
    if (instance->is_alive) return instance;
  }
  return nullptr;
}

PropertyObject* resolve_instance_object(std::int32_t number) { return resolve_instance(number); }
CInstance* instance_of(WBObjectBase* object) {
  return object != nullptr && object->object_kind == ObjectKind::kInstance ? static_cast<CInstance*>(object) : nullptr;
}
bool is_instance_ref(const RValue& value) {
  return value.kind() == kRef && (value.ref_type() == ref_type::kInstance || value.ref_type() == ref_type::kObject);
}
std::string_view object_type_name(std::int32_t index) {
  return object_types().has(index) ? std::string_view(object_types().at(index).definition.name) : std::string_view("<undefined>");
}

}  // namespace arena
