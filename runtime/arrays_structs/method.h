#pragma once
// Method closures: a script function, the object it runs for, and the script's static struct.
#include "runtime/arrays_structs/object.h"
#include "runtime/variables_calls/functions.h"

namespace arena {

class MethodClosure final : public PropertyObject {
 public:
  explicit MethodClosure(CompiledFunction& script) : PropertyObject(ObjectKind::kMethod), function(&script) {}
  void visit_values(ValueVisitor& visitor) override;
  RValue bound_self;  // an object, or anything else to keep the caller's self
  CompiledFunction* function;
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

// The closure behind a value, or null.
inline MethodClosure* method_of(const RValue& value) {
  return value.is_object() && value.object->object_kind == ObjectKind::kMethod ? static_cast<MethodClosure*>(value.object) : nullptr;
}

}  // namespace arena
