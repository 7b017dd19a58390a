#pragma once
// Struct and array literals, and built-in functions as names: `make_struct({{name, "Pistol"}, {rarity, 2}})`, `array_of(1, 2, 3)`,
// `play(sndShot)` through a slot.
#include <initializer_list>

#include "runtime/script/define.h"

namespace arena::script {

struct FieldLiteral {
  FieldLiteral(const Variable& field, const Value& content) : name(field), value(content) {}
  const Variable& name;
  Value value;
};

// {{name, "Pistol"}, {rarity, 2}} as a struct, in this order.
inline Value struct_of(std::initializer_list<FieldLiteral> fields) {
  Value made = make_struct();
  PropertyObject* const object = property_object(made);
  object->reserve_row(fields.size());
  for (const FieldLiteral& field : fields) store_variable(object, field.name.slot, field.value);
  return made;
}

template <class... Elements>
Value array_of(const Elements&... elements) {
  Value made = make_empty_array(innermost_frame() != nullptr ? innermost_frame()->token : 1);
  (array_append(*made.array, as_value(elements)), ...);
  return made;
}

// A built-in function by name. Static storage; calls go through the slot that the start-up lookup filled.
class Builtin : public NameSlot {
 public:
  explicit Builtin(const char* name) : NameSlot(Type::kFunction, name) {}
  Value operator()(Here = Here(__builtin_LINE())) const {
    RValue none;
    return call(0, &none);
  }
  template <class... Rest>
  Value operator()(Passed<Value> first, const Rest&... rest) const {
    RValue block[] = {static_cast<Value&&>(first.value), RValue(as_value(rest))...};
    return call(1 + static_cast<std::int32_t>(sizeof...(Rest)), block);
  }

 private:
  Value call(std::int32_t count, RValue* block) const {
    WBObjectBase* const self = innermost_frame() != nullptr ? innermost_frame()->self : nullptr;
    WBObjectBase* const other = innermost_frame() != nullptr ? innermost_frame()->other : nullptr;
    Value result;
    call_builtin_in_place(self, other, result, count, slot, block);
    return result;
  }
};

}  // namespace arena::script
