#include "runtime/variables_calls/access.h"

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/program/builtin_variable.h"
#include "runtime/program/names.h"
#include "runtime/reports/frame.h"
#include "runtime/reports/report.h"
#include "runtime/values/conversions.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

std::string_view owner_name(WBObjectBase* object) { return object == global_object() ? "global" : object->called(); }

void report_unset(WBObjectBase* object, std::int32_t id) {
  if (object == global_object()) {
    report_error(messages::kGlobalUnset, variable_name(id), id);
  } else {
    report_error(messages::kInstanceUnset, owner_name(object), variable_name(id), id, kNoIndex);
  }
}

void report_missing(WBObjectBase* object, std::int32_t id) {
  if (object == global_object()) {
    report_error(messages::kGlobalUnset, variable_name(id), id);
  } else if (object->object_kind == ObjectKind::kInstance) {
    report_error(messages::kNoVariable, variable_name(id), Serial{object->serial});
  } else {
    report_error(messages::kGetProperty);
  }
}

bool report_index(WBObjectBase* object, std::int32_t id, std::int32_t index, std::int32_t length) {
  const std::int32_t serial = object != nullptr ? static_cast<std::int32_t>(object->serial) : 0;
  report_error(messages::kVariableIndex, index, length, serial, id, id, index);
  return false;
}

// Whether the index, if there is one, names an element of a built-in variable.
bool is_inside(const BuiltinVariable& variable, WBObjectBase* object, std::int32_t index) {
  if (index == kNoIndex || (index >= 0 && index < variable.length)) return true;
  if (variable.length > 0) return report_index(object, variable.slot, index, variable.length);
  report_error(messages::kIndexNotArray);
  return false;
}

bool read_element(WBObjectBase* object, const RValue& variable, std::int32_t id, std::int32_t index, RValue& out) {
  if (!variable.is_array() || variable.array == nullptr) {
    report_error(messages::kIndexNotArray);
    return false;
  }
  if (index < 0 || index >= variable.array->length) return report_index(object, id, index, variable.array->length);
  out = variable.array->elements[index];
  return true;
}

// A managed object (one that the engine hands out) may neither be written nor be made to refer to a script's own objects.
bool refuses_write(WBObjectBase* object, std::int32_t id, const RValue& value) {
  if (!object->is_read_only || !value.is_object() || value.object->is_read_only) return !check_writable(object, id);
  report_error(messages::kManagedReference, owner_name(value.object), variable_name(id), owner_name(object));
  return true;
}

}  // namespace

bool check_writable(WBObjectBase* object, std::int32_t id) {
  if (!object->is_read_only) return true;
  report_error(messages::kManagedReadOnly, variable_name(id), owner_name(object), "");
  return false;
}

WBObjectBase* resolve_object(const RValue& target) {
  if (target.is_object()) return target.object;
  switch (target.kind()) {
    case kNumber:
    case kBool:
    case kInt32:
    case kInt64: break;
    case kRef:
      if (!is_instance_ref(target)) return nullptr;
      break;
    default: return nullptr;
  }
  const std::int32_t number = to_int32(target);
  if (number == kGlobalTarget) return global_object();
  if (innermost_frame() != nullptr && number == kSelfTarget) return innermost_frame()->self;
  if (innermost_frame() != nullptr && number == kOtherTarget) return innermost_frame()->other;
  return resolve_instance_object(number);
}

WBObjectBase* require_object(const RValue& target) {
  WBObjectBase* const found = resolve_object(target);
  if (found == nullptr) {
    const std::int32_t number = to_int32(target);  // reports what names nothing at all
    const std::string_view name = object_type_name(number);
    report_error(messages::kNoInstanceNamed, number, name);
  }
  return found;
}

PropertyObject* require_properties(const RValue& target) {
  if (target.is_string()) {
    report_error(messages::kStringAsStruct, text_of(target));
    return nullptr;
  }
  return static_cast<PropertyObject*>(require_object(target));
}

bool var_get(const RValue& target, std::int32_t id, std::int32_t index, RValue& out) {
  WBObjectBase* const object = require_properties(target);
  if (object == nullptr) return false;
  if (object->object_kind == ObjectKind::kInstance && find_variable_id_builtin(id) >= 0) {
    return builtin_var_get(object, find_variable_id_builtin(id), index, out);
  }
  const RValue* variable = read_variable_slow(object, id);
  if (variable == nullptr) return false;
  if (index != kNoIndex) return read_element(object, *variable, id, index, out);
  out = *variable;
  return true;
}

bool var_set(const RValue& target, std::int32_t id, std::int32_t index, const RValue& value) {
  WBObjectBase* const object = require_properties(target);
  if (object == nullptr) return false;
  if (object->object_kind == ObjectKind::kInstance && find_variable_id_builtin(id) >= 0) {
    return builtin_var_set(object, find_variable_id_builtin(id), index, value);
  }
  if (index == kNoIndex) {
    write_variable(object, id, value);
    return true;
  }
  if (refuses_write(object, id, value)) return false;
  RValue* slot = object->get_variable_ref(id);
  if (slot == nullptr) {
    report_error(messages::kSetProperty);
    return false;
  }
  const ContainerScope container(object);
  const OwnerTokenScope token(object->serial);
  array_write(*slot, index, value);
  return true;
}

const RValue* read_variable_slow(WBObjectBase* object, std::int32_t id) {
  if (object == nullptr) {
    report_error(messages::kPropertyNullSelf);
    return nullptr;
  }
  const RValue* found = object->find_variable(id);
  if (found == nullptr) {
    report_missing(object, id);
    return nullptr;
  }
  if (found->is_unset()) {
    report_unset(object, id);
    return nullptr;
  }
  return found;
}

void write_variable(WBObjectBase* object, std::int32_t id, const RValue& value) {
  if (object == nullptr) {
    report_error(messages::kPropertyNullSelf);
    return;
  }
  if (refuses_write(object, id, value)) return;
  if (object->object_kind == ObjectKind::kInstance) {
    store_variable(static_cast<PropertyObject*>(object), id, value);
  } else {
    struct_set(static_cast<PropertyObject*>(object), id, value);
  }
}

bool builtin_var_get(WBObjectBase* self, std::int32_t builtin, std::int32_t index, RValue& out) {
  const BuiltinVariable& variable = builtin_variable_at(builtin);
  CInstance* const instance = instance_of(self);
  if (variable.belongs_to_instance && instance == nullptr) {
    report_error(messages::kInstanceContext, variable.name);
    return false;
  }
  if (!is_inside(variable, self, index)) return false;
  out = variable.get(instance, index == kNoIndex ? 0 : index);
  return true;
}

bool builtin_var_set(WBObjectBase* self, std::int32_t builtin, std::int32_t index, const RValue& value) {
  const BuiltinVariable& variable = builtin_variable_at(builtin);
  CInstance* const instance = instance_of(self);
  if (variable.set == nullptr) {
    report_error(messages::kReadOnlyBuiltin, variable.name);
    return false;
  }
  if (variable.belongs_to_instance && instance == nullptr) {
    report_error(messages::kInstanceContext, variable.name);
    return false;
  }
  if (!is_inside(variable, self, index)) return false;
  variable.set(instance, index == kNoIndex ? 0 : index, value);
  return true;
}

}  // namespace arena
