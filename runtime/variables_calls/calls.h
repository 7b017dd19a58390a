#pragma once
// Calling a built-in by index, a value by closure or number, and building argument vectors.
#include <cstdint>
#include <vector>

#include "runtime/program/functions.h"
#include "runtime/values/value.h"

namespace arena {

// Copies the arguments to a contiguous block, sets `result` to undefined and runs the built-in. `index` must be in the table.
RValue& call_builtin(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, std::int32_t index, const RValue** args);
// The same with arguments that already stand in a row and may be overwritten.
RValue& call_builtin_in_place(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, std::int32_t index, RValue* args);

// Calls a method closure, a script reference or a function number; reports anything else.
RValue& call_method(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, const RValue& callee, const RValue** args);

// Runs a constructor with `self` a new struct, which is the result.
RValue construct(WBObjectBase* other, CompiledFunction& function, std::int32_t argc, const RValue** args);

// Room for max(argc, wanted) arguments: the given ones copied, the rest undefined.
class ArgumentVector {
 public:
  ArgumentVector(std::int32_t argc, std::int32_t wanted, const RValue** args);
  ArgumentVector(const ArgumentVector&) = delete;
  ArgumentVector& operator=(const ArgumentVector&) = delete;
  const RValue** pointers() { return pointers_; }
  RValue* values() { return values_; }
  std::int32_t count() const { return count_; }

 private:
  static constexpr std::int32_t kInline = 16;
  std::int32_t count_;
  RValue inline_values_[kInline];
  const RValue* inline_pointers_[kInline];
  std::vector<RValue> more_values_;  // in their place when there are more
  std::vector<const RValue*> more_pointers_;
  RValue* values_ = inline_values_;
  const RValue** pointers_ = inline_pointers_;
};

}  // namespace arena
