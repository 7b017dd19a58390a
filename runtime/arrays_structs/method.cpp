#include "runtime/arrays_structs/method.h"

#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/statics.h"

namespace arena {

void MethodClosure::visit_values(ValueVisitor& visitor) {
  PropertyObject::visit_values(visitor);
  visitor(bound_self);
  if (statics != nullptr) visitor(RValue::of_object(statics));
}

namespace {

void bind_self(RValue& dest, MethodClosure* closure, WBObjectBase* bound_self) {
  dest = RValue::of_object(closure);
  if (bound_self == nullptr) return;
  write_barrier(closure, bound_self, BarrierSite::kBoundSelf);
  closure->bound_self = RValue::of_object(bound_self);
}

}  // namespace

void make_method(RValue& dest, std::int32_t number, WBObjectBase* bound_self) { bind_self(dest, new MethodClosure(number), bound_self); }

std::int32_t function_number_of(const MethodClosure& closure) {
  return closure.function != nullptr ? kFirstScriptNumber + closure.function->index : closure.number;
}

std::string_view function_name_of(const MethodClosure& closure) {
  if (closure.function != nullptr) return closure.function->name;
  return closure.number < builtin_count() ? builtin_at(closure.number).name : "";
}

void make_method(RValue& dest, CompiledFunction& function, WBObjectBase* bound_self) {
  MethodClosure* closure = new MethodClosure(function);
  bind_self(dest, closure, bound_self);
  closure->statics = statics_of(function);
  write_barrier(closure, closure->statics, BarrierSite::kBoundSelf);
}

}  // namespace arena
