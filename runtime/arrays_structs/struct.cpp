#include "runtime/arrays_structs/struct.h"

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/variables_calls/names.h"
#include "runtime/variables_calls/report.h"

namespace arena {

RValue make_struct() { return RValue::of_object(new PropertyObject(ObjectKind::kStruct)); }

RValue struct_get(PropertyObject* object, std::int32_t id) {
  if (object == nullptr) {
    report_error(messages::kPropertyNullSelf);
    return {};
  }
  const RValue* found = object->find_variable(id);
  if (found == nullptr || found->is_unset()) {
    report_error(messages::kGetProperty);
    return {};
  }
  return *found;
}

void struct_set(PropertyObject* object, std::int32_t id, const RValue& value) {
  if (object == nullptr) {
    report_error(messages::kPropertyNullSelf);
    return;
  }
  if (object->object_kind == ObjectKind::kMethod || object->object_kind == ObjectKind::kScriptRef) {
    report_error(messages::kSetProperty);
    return;
  }
  if (object->is_read_only) {
    report_error(messages::kManagedReadOnly, variable_name(id), "struct", "");
    return;
  }
  store_variable(object, id, value);
}

void struct_set_named(PropertyObject* object, std::string_view name, const RValue& value) {
  if (name.empty()) {
    report_error(messages::kEmptyName);
  } else if (name.starts_with("@@")) {
    report_error(messages::kInternalName);
  } else {
    struct_set(object, variable_id(name), value);
  }
}

void store_variable(PropertyObject* object, std::int32_t id, const RValue& value) {
  if (value.is_plain()) {
    const std::int64_t payload = value.i64;  // `value` may stand in the row that moves
    const std::uint32_t flags = value.flags, kind = value.kind_bits;
    RValue* plain = object->get_variable_ref(id);
    if (plain->is_plain()) {
      plain->i64 = payload;
      plain->flags = flags;
      plain->kind_bits = kind;
      return;
    }
  }
  const RValue kept(value);  // `value` may stand in the row that moves
  RValue* slot = object->get_variable_ref(id);
  if (kept.is_array()) clear_owner_token(kept);
  const ContainerScope container(object);
  assign(*slot, kept);
}

}  // namespace arena
