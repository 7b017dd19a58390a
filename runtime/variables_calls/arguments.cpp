#include "runtime/variables_calls/arguments.h"

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/holder.h"
#include "runtime/arrays_structs/method.h"
#include "runtime/checks/assert.h"
#include "runtime/values/number_text.h"
#include "runtime/variables_calls/extension_functions.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

template <class... P>
void report_kind(const Message<P...>& message, const CallContext& call, int at) {
  report_error(message, current_builtin_name(), at + 1, type_name(argument_at(call, at)));
}

bool names_function(const RValue& value) {
  if (!is_number_like(value) || value.is_object()) return false;
  const std::int32_t number = to_int32(value);
  return (number >= 0 && number < builtin_count()) || (number >= kFirstScriptNumber && number - kFirstScriptNumber < script_count()) ||
         extension_function(number) != nullptr;
}

}  // namespace

std::string_view current_builtin_name() {
  return session().current_builtin != nullptr ? session().current_builtin->name : "Unknown Function";
}

const RValue& argument_at(const CallContext& call, int at) {
  static const RValue missing;
  ARENA_ASSERT(at >= 0);
  return at < call.argc ? call.args[at] : missing;
}

bool is_number_like(const RValue& value) {
  switch (value.kind()) {
    case kNumber:
    case kBool:
    case kInt32:
    case kInt64:
    case kRef: return true;
    case kObject: return value.is_object() && value.object->object_kind == ObjectKind::kInstance;
    default: return false;
  }
}

double check_real(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (value.kind_bits == kNumber) return value.real;
  if (is_number_like(value)) return to_real(value);
  report_kind(messages::kArgumentReal, call, at);
  return 0;
}

float check_float(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (is_number_like(value)) return static_cast<float>(to_real(value));
  report_kind(messages::kArgumentFloat, call, at);
  return 0;
}

std::int32_t check_int32(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (is_number_like(value)) return to_int32(value);
  report_kind(messages::kArgumentInt32, call, at);
  return 0;
}

std::uint32_t check_uint32(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (is_number_like(value)) return static_cast<std::uint32_t>(saturate_int64(to_real(value)));
  report_kind(messages::kArgumentUint32, call, at);
  return 0;
}

bool check_bool(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (is_number_like(value)) return to_bool(value);
  report_kind(messages::kArgumentBool, call, at);
  return false;
}

std::string_view check_string(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (!value.is_string()) report_kind(messages::kArgumentString, call, at);
  return text_of(value);
}

ArrayRecord* check_array(const CallContext& call, int at, bool must_be_mutable) {
  const RValue& value = argument_at(call, at);
  if (value.is_unset()) {
    report_error(messages::kArrayUnset);
    return nullptr;
  }
  if (!value.is_array() || value.array == nullptr) {
    report_error(messages::kArgumentArray, current_builtin_name(), at + 1);
    return nullptr;
  }
  if (must_be_mutable && (value.array->flags & kArrayImmutable) != 0) {
    report_error(messages::kArgumentImmutable, current_builtin_name(), at + 1);
    return nullptr;
  }
  return value.array;
}

PropertyObject* check_struct(const CallContext& call, int at, bool allows_instance) {
  const RValue& value = argument_at(call, at);
  PropertyObject* object = property_object(value);
  if (object == nullptr && allows_instance && is_number_like(value)) object = resolve_instance_object(to_int32(value));
  if (object == nullptr) {
    report_kind(messages::kArgumentStruct, call, at);
    return nullptr;
  }
  if (!allows_instance && object->object_kind == ObjectKind::kInstance) {
    report_error(messages::kArgumentInstance, current_builtin_name(), at + 1);
    return nullptr;
  }
  return object;
}

RValue check_callable(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  const bool is_callable = method_of(value) != nullptr || (value.is_object() && value.object->object_kind == ObjectKind::kScriptRef);
  if (!is_callable && !names_function(value)) report_error(messages::kArgumentCallable, current_builtin_name(), at + 1);
  return value;
}

RValue check_number(const CallContext& call, int at) {
  if (!is_number_like(argument_at(call, at))) report_kind(messages::kArgumentNumber, call, at);
  return argument_at(call, at);
}

void* check_pointer(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (value.kind() == kPointer) return value.pointer;
  report_kind(messages::kArgumentPointer, call, at);
  return nullptr;
}

RValue check_number_or_pointer(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  if (!is_number_like(value) && value.kind() != kPointer) report_kind(messages::kArgumentNumberOrPointer, call, at);
  return value;
}

CInstance* check_self_instance(const CallContext& call) {
  CInstance* const instance = instance_of(call.self);
  if (instance == nullptr) report_error(messages::kInstanceContext, current_builtin_name());
  return instance;
}

void report_argument_type(const CallContext& call, int at, std::string_view what) {
  report_error(messages::kArgumentType, current_builtin_name(), at + 1, type_name(argument_at(call, at)), what);
}

void report_invalid_resource(int argument_number, std::string_view kind, std::int32_t requested, std::int32_t count) {
  if (count < 0) {
    report_error(messages::kArgumentHandle, current_builtin_name(), argument_number, kind, requested);
  } else {
    report_error(messages::kArgumentResource, current_builtin_name(), argument_number, kind, requested, count);
  }
}

}  // namespace arena
