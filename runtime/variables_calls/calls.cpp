#include "runtime/variables_calls/calls.h"

#include <algorithm>

#include "runtime/arrays_structs/method.h"
#include "runtime/arrays_structs/statics.h"
#include "runtime/checks/assert.h"
#include "runtime/reports/frame.h"
#include "runtime/reports/report.h"
#include "runtime/session/session.h"
#include "runtime/values/conversions.h"
#include "runtime/variables_calls/extension_functions.h"

namespace arena {
namespace {

class CurrentBuiltinScope {
 public:
  explicit CurrentBuiltinScope(const BuiltinEntry* entry) : saved_(session().current_builtin) { session().current_builtin = entry; }
  ~CurrentBuiltinScope() { session().current_builtin = saved_; }
  CurrentBuiltinScope(const CurrentBuiltinScope&) = delete;
  CurrentBuiltinScope& operator=(const CurrentBuiltinScope&) = delete;

 private:
  const BuiltinEntry* saved_;
};

RValue& call_script(CompiledFunction& function, WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc,
                    const RValue** args) {
  result = RValue();
  if (function.is_constructor) {
    report_error(messages::kConstructorDirect);
    return result;
  }
  const CurrentBuiltinScope scope(nullptr);
  return with_memory_reported([&]() -> RValue& { return function.script(self, other, result, argc, args); });
}

bool names_number(const RValue& callee) {
  const std::uint32_t kind = callee.kind();
  return kind == kNumber || kind == kInt32 || kind == kInt64 || kind == kBool || kind == kRef;
}

}  // namespace

ArgumentVector::ArgumentVector(std::int32_t argc, std::int32_t wanted, const RValue** args) : count_(std::max(argc, wanted)) {
  ARENA_ASSERT(argc >= 0 && (argc == 0 || args != nullptr));
  if (count_ > kInline) {
    more_values_.resize(static_cast<std::size_t>(count_));
    more_pointers_.resize(static_cast<std::size_t>(count_));
    values_ = more_values_.data();
    pointers_ = more_pointers_.data();
  }
  for (std::int32_t i = 0; i < count_; ++i) pointers_[i] = &values_[i];
  for (std::int32_t i = 0; i < argc; ++i) values_[i] = *args[i];
}

RValue& call_builtin_in_place(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, std::int32_t index,
                              RValue* args) {
  ARENA_ASSERT(argc >= 0 && (argc == 0 || args != nullptr));
  result = RValue();
  const BuiltinEntry& entry = builtin_at(index);
  const CallDepthScope depth;
  const CurrentBuiltinScope scope(&entry);
  with_memory_reported([&] {
    if (session().builtin_observer != nullptr) session().builtin_observer(entry, argc, args);
    entry.function(result, self, other, argc, args);
  });
  return result;
}

RValue& call_builtin(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, std::int32_t index, const RValue** args) {
  ArgumentVector block(argc, argc, args);
  return call_builtin_in_place(self, other, result, argc, index, block.values());
}

RValue& call_method(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, const RValue& callee, const RValue** args) {
  if (const MethodClosure* closure = method_of(callee)) {
    WBObjectBase* const bound = closure->bound_self.is_object() ? closure->bound_self.object : self;
    if (closure->function == nullptr) return call_method(bound, other, result, argc, RValue(closure->number), args);
    return call_script(*closure->function, bound, other, result, argc, args);
  }
  if (callee.is_object() && callee.object->object_kind == ObjectKind::kScriptRef) {
    return call_script(*static_cast<CScriptRef*>(callee.object)->function, self, other, result, argc, args);
  }
  if (!names_number(callee)) {
    report_error(messages::kNotAMethod);
    return result;
  }
  const std::int32_t number = to_int32(callee);
  if (number >= 0 && number < builtin_count()) return call_builtin(self, other, result, argc, number, args);
  if (number >= kFirstScriptNumber && number - kFirstScriptNumber < script_count()) {
    return call_script(script_at(number - kFirstScriptNumber), self, other, result, argc, args);
  }
  if (const ScriptFunction extension = extension_function(number)) {
    result = RValue();
    return extension(self, other, result, argc, args);
  }
  report_error(messages::kInvalidFunction, number);
  return result;
}

RValue construct(WBObjectBase* other, CompiledFunction& function, std::int32_t argc, const RValue** args) {
  ARENA_ASSERT(function.is_constructor);
  RValue made = RValue::of_object(new PropertyObject(ObjectKind::kStruct));
  static_cast<PropertyObject*>(made.object)->prototype = statics_of(function);
  RValue ignored;
  with_memory_reported([&]() -> RValue& { return function.script(made.object, other, ignored, argc, args); });
  return made;
}

}  // namespace arena
