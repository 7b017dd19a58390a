#pragma once
// Struct and array literals: `struct_of({{name, "Pistol"}, {rarity, 2}})`, `array_of(1, 2, 3)`.
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

// Which element is worked out first is the compiler's to choose: where that shows (what makes objects, what draws from a generator) give
// them names before.
template <class... Elements>
Value array_of(const Elements&... elements) {
  Value made = make_empty_array(innermost_frame() != nullptr ? innermost_frame()->token : 1);
  (array_append(*made.array, as_value(elements)), ...);
  return made;
}

}  // namespace arena::script
