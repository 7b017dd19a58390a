#pragma once
// Method closures: a function, the object it runs for, and a script's static struct.
#include "runtime/arrays_structs/object.h"
#include "runtime/program/functions.h"

namespace arena {

class MethodClosure final : public PropertyObject {
 public:
  explicit MethodClosure(CompiledFunction& of)
      : PropertyObject(ObjectKind::kMethod), function(&of), direct_entry(of.is_constructor ? nullptr : of.script) {}
  explicit MethodClosure(std::int32_t of) : PropertyObject(ObjectKind::kMethod), number(of) {}
  void visit_values(ValueVisitor& visitor) override;
  RValue bound_self;                      // an object, or anything else to keep the caller's self
  CompiledFunction* function = nullptr;   // null: a built-in or extension function, by the number that calls it
  ScriptFunction direct_entry = nullptr;  // what a call that needs no checks runs; null: there are some
  std::int32_t number = -1;
  PropertyObject* statics = nullptr;
};

// A reference to a script used as a value; called like a method without a bound self.
class CScriptRef final : public PropertyObject {
 public:
  explicit CScriptRef(CompiledFunction& script) : PropertyObject(ObjectKind::kScriptRef), function(&script) {}
  CompiledFunction* function;
};

// Sets `dest` to a new closure. A null `bound_self` leaves the caller's self in force.
void make_method(RValue& dest, CompiledFunction& function, WBObjectBase* bound_self);
// The same of a built-in or extension function.
void make_method(RValue& dest, std::int32_t number, WBObjectBase* bound_self);
// The number that calls the closure's function, and its full name ("" for an extension's).
std::int32_t function_number_of(const MethodClosure& closure);
std::string_view function_name_of(const MethodClosure& closure);

// The closure behind a value, or null.
inline MethodClosure* method_of(const RValue& value) {
  return value.is_object() && value.object->object_kind == ObjectKind::kMethod ? static_cast<MethodClosure*>(value.object) : nullptr;
}

}  // namespace arena
