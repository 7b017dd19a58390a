#include "runtime/arrays_structs/method.h"

#include "runtime/arrays_structs/collector.h"

namespace arena {

void MethodClosure::visit_values(ValueVisitor& visitor) {
  PropertyObject::visit_values(visitor);
  visitor(bound_self);
  if (statics != nullptr) visitor(RValue::of_object(statics));
}

void make_method(RValue& dest, CompiledFunction& function, WBObjectBase* bound_self) {
  MethodClosure* closure = new MethodClosure(function);
  dest = RValue::of_object(closure);
  if (bound_self != nullptr) {
    closure->bound_self = RValue::of_object(bound_self);
    write_barrier(closure, bound_self, BarrierSite::kBoundSelf);
  }
  closure->statics = statics_of(function);
  write_barrier(closure, closure->statics, BarrierSite::kBoundSelf);
}

}  // namespace arena
