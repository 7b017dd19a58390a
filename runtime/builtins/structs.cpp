// Structs, variables by name, methods and weak references.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/structs.h"

#include "runtime/arrays_structs/method.h"
#include "runtime/arrays_structs/statics.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/arrays_structs/weak_ref.h"
#include "runtime/builtins/implement.h"
#include "runtime/program/builtin_variable.h"
#include "runtime/program/names.h"
#include "runtime/values/refs.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/calls.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

bool has_value(PropertyObject* object, std::string_view name) {
  const RValue* found = object->find_variable(find_variable_id(name));
  return found != nullptr && !found->is_unset();
}
RValue names_of(PropertyObject* object) {
  RValue names = make_array();
  for (const std::int32_t id : object->variable_ids()) {
    if (!object->find_variable(id)->is_unset()) array_append(*names.array, make_constant_string(variable_name(id).data()));
  }
  return names;
}

RValue struct_names(StructArgument target) { return names_of(target.object); }
std::int32_t struct_count(StructArgument target) { return names_of(target.object).array->length; }
bool struct_exists(StructArgument target, std::string_view name) { return has_value(target.object, name); }
RValue struct_read(StructArgument target, std::string_view name) {
  const RValue* found = target.object->find_variable(find_variable_id(name));
  return found != nullptr && !found->is_unset() ? *found : RValue();
}
void struct_write(StructArgument target, std::string_view name, const RValue& value) {
  if (target.object->object_kind == ObjectKind::kInstance && !name.empty() && !name.starts_with("@@")) {
    var_set(RValue::of_object(target.object), variable_id(name), kNoIndex, value);
  } else {
    struct_set_named(target.object, name, value);
  }
}
void struct_remove(StructArgument target, std::string_view name) {
  const std::int32_t id = find_variable_id(name);
  if (check_writable(target.object, id)) target.object->remove_variable(id);
}

// The instance or struct that a variable function is asked about.
PropertyObject* require_target(const RValue& target) {
  WBObjectBase* const object = resolve_object(target);
  if (object == nullptr) report_error(messages::kNoInstance, to_int32(target));
  return static_cast<PropertyObject*>(object);
}

bool instance_variable_exists(const RValue& target, std::string_view name) {
  WBObjectBase* object = resolve_object(target);
  if (object == nullptr) return false;
  const bool is_built_in = object->object_kind == ObjectKind::kInstance && find_builtin_variable(name) >= 0;
  return is_built_in || has_value(static_cast<PropertyObject*>(object), name);
}
RValue instance_variable_get(const RValue& target, std::string_view name) {
  RValue value;
  PropertyObject* object = require_target(target);
  if (object == nullptr) return value;
  const std::int32_t id = find_variable_id(name);
  if (id < 0) return value;
  const RValue named = RValue::of_object(object);
  if (has_value(object, name) || object->object_kind == ObjectKind::kInstance) var_get(named, id, kNoIndex, value);
  return value;
}
void instance_variable_set(const RValue& target, std::string_view name, const RValue& value) {
  PropertyObject* object = require_target(target);
  if (object != nullptr) struct_write(StructArgument{object}, name, value);
}
RValue instance_variable_names(const RValue& target) {
  PropertyObject* object = require_target(target);
  return object != nullptr ? names_of(object) : RValue();
}

bool global_exists(std::string_view name) { return has_value(global_object(), name); }
RValue global_get(std::string_view name) { return struct_read(StructArgument{global_object()}, name); }
void global_set(std::string_view name, const RValue& value) { struct_set_named(global_object(), name, value); }

// method(self, function): `function` is a method, a script reference or a function's number. undefined as self leaves the caller's.
RValue make_method_value(const RValue& bound, Callable function) {
  RValue made;
  WBObjectBase* const self = bound.is_undefined() ? nullptr : resolve_object(bound);
  const MethodClosure* const closure = method_of(function.value);
  if (closure == nullptr && function.value.is_object()) {
    make_method(made, *static_cast<CScriptRef*>(function.value.object)->function, self);
    return made;
  }
  const std::int32_t number = closure != nullptr ? function_number_of(*closure) : to_int32(function.value);
  if (number >= kFirstScriptNumber && number - kFirstScriptNumber < script_count()) {
    make_method(made, script_at(number - kFirstScriptNumber), self);
  } else {
    make_method(made, number, self);
  }
  return made;
}
RValue method_get_self(const RValue& value) {
  const MethodClosure* closure = method_of(value);
  return closure != nullptr && closure->bound_self.is_object() ? closure->bound_self : RValue();
}
RValue method_get_index(const RValue& value) {
  const MethodClosure* closure = method_of(value);
  return closure != nullptr ? RValue(static_cast<double>(function_number_of(*closure))) : RValue();
}
RValue method_call(const CallContext& call, Callable function, std::optional<ReadArray> arguments) {
  RValue holder = arguments ? array_copy(*arguments->array, 0, arguments->array->length) : make_array();
  std::vector<const RValue*> pointers;
  pointers.reserve(static_cast<std::size_t>(holder.array->length));
  for (std::int32_t i = 0; i < holder.array->length; ++i) pointers.push_back(&holder.array->elements[i]);
  RValue result;
  call_method(call.self, call.other, result, holder.array->length, function.value, pointers.data());
  return result;
}
RValue script_execute(const CallContext& call, Callable function, Rest arguments) {
  std::vector<const RValue*> pointers;
  for (const RValue& argument : arguments) pointers.push_back(&argument);
  RValue result;
  call_method(call.self, call.other, result, static_cast<std::int32_t>(pointers.size()), function.value, pointers.data());
  return result;
}
bool script_exists(std::int32_t number) { return number >= kFirstScriptNumber && number - kFirstScriptNumber < script_count(); }
std::string script_get_name(std::int32_t number) {
  return script_exists(number) ? std::string(script_at(number - kFirstScriptNumber).name).substr(std::string_view("ksl_Script_").size())
                               : "<undefined>";
}
const RefKind script_refs{ref_type::kScript, "script",
                          [](std::int32_t number) { return script_exists(number) ? script_get_name(number) : std::string(); }};
RValue static_get(const RValue& callee) {
  if (const MethodClosure* closure = method_of(callee)) return closure->statics != nullptr ? RValue::of_object(closure->statics) : RValue();
  const std::int32_t number = to_int32(callee);
  return script_exists(number) ? RValue::of_object(statics_of(script_at(number - kFirstScriptNumber))) : RValue();
}

RValue weak_ref_create(PlainStruct target) { return RValue::of_object(new CWeakRef(target.object)); }
RValue weak_ref_target(const RValue& reference) {
  const auto* weak =
      reference.is_object() && reference.object->object_kind == ObjectKind::kWeakRef ? static_cast<CWeakRef*>(reference.object) : nullptr;
  return weak != nullptr && weak->target != nullptr ? RValue::of_object(weak->target) : RValue();
}
bool weak_ref_alive(const RValue& reference) { return !weak_ref_target(reference).is_undefined(); }
void struct_freeze(PlainStruct target) { freeze(*target.object); }
void collect() { request_collection(); }

constexpr Implementation kRows[] = {
    implement<script::variable_struct_get_names, struct_names>,
    implement<script::struct_get_names, struct_names>,
    implement<script::variable_struct_names_count, struct_count>,
    implement<script::struct_names_count, struct_count>,
    implement<script::checked::variable_struct_exists, struct_exists>,
    implement<script::struct_exists, struct_exists>,
    implement<script::checked::variable_struct_get, struct_read>,
    implement<script::struct_get, struct_read>,
    implement<script::variable_struct_set, struct_write>,
    implement<script::struct_set, struct_write>,
    implement<script::variable_struct_remove, struct_remove>,
    implement<script::struct_remove, struct_remove>,
    implement<script::struct_freeze, struct_freeze>,
    implement<script::variable_instance_exists, instance_variable_exists>,
    implement<script::variable_instance_get, instance_variable_get>,
    implement<script::variable_instance_set, instance_variable_set>,
    implement<script::variable_instance_get_names, instance_variable_names>,
    implement<script::variable_global_exists, global_exists>,
    implement<script::variable_global_get, global_get>,
    implement<script::variable_global_set, global_set>,
    implement<script::method, make_method_value>,
    implement<script::method_get_self, method_get_self>,
    implement<script::method_get_index, method_get_index>,
    implement<script::method_call, method_call>,
    implement<script::script_execute, script_execute>,
    implement<script::script_exists, script_exists>,
    implement<script::script_get_name, script_get_name>,
    implement<script::static_get, static_get>,
    implement<script::weak_ref_create, weak_ref_create>,
    implement<script::weak_ref_get, weak_ref_target>,
    implement<script::weak_ref_alive, weak_ref_alive>,
    implement<script::gc_collect, collect>,
};
const BuiltinTable table("Structs, methods, variables by name", "", kRows);

}  // namespace
}  // namespace arena
