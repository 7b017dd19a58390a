#include "runtime/script/native.h"

#include "runtime/reports/log.h"
#include "runtime/reports/report.h"
#include "runtime/variables_calls/arguments.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::script {

Attempt attempt(const Value& self, const Value& callee, std::initializer_list<Value> arguments) {
  std::vector<const RValue*> pointers;
  for (const Value& each : arguments) pointers.push_back(&each);
  Attempt made;
  try {
    WBObjectBase* const object = self.is_object() ? self.object : nullptr;
    call_method(object, object, made.result, static_cast<std::int32_t>(pointers.size()), callee, pointers.data());
  } catch (const WBKSLException& error) {
    made.result = Value();
    made.error = error.message();
    made.place = error.script();
  }
  return made;
}

const RValue* peek(const Value& target, std::int32_t variable) {
  PropertyObject* object = nullptr;
  if (target.is_object()) {
    object = property_object(target);
    if (const CInstance* instance = instance_of(object); instance != nullptr && !instance->is_alive && !instance->is_asleep) return nullptr;
  } else if (is_numeric(target)) {
    object = resolve_instance(to_int32(target));
  }
  const RValue* found = object != nullptr ? object->find_variable(variable) : nullptr;
  return found != nullptr && !found->is_unset() ? found : nullptr;
}

std::int32_t id_of_variable(std::string_view name) { return variable_id(name); }
void write(const ObjectSelf& object, std::int32_t variable, const RValue& value) { write_variable(object.object(), variable, value); }
bool is_numeric(const RValue& value) {
  const std::uint32_t kind = value.kind();
  return kind == kNumber || kind == kBool || kind == kInt32 || kind == kInt64 || kind == kRef;
}
void print(std::string_view text) { log_message(text); }

}  // namespace arena::script
