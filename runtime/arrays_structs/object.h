#pragma once
// The objects that have variables: structs, instances, closures.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "runtime/arrays_structs/shape.h"
#include "runtime/checks/assert.h"
#include "runtime/values/object_base.h"

namespace arena {

// An object with a row of variables laid out by a shape.
//
//   shape ──> positions[variable id] = place in the row, 0xFF: not there
//   row   ──> | value 0 | value 1 | ...           (moves when it grows)
//
// An object that leaves the tables behind (a name made at run time, too many fields, a removal) becomes its own dictionary.
class PropertyObject : public WBObjectBase {
 public:
  explicit PropertyObject(ObjectKind kind) : WBObjectBase(kind), shape(empty_shape()) {}
  ~PropertyObject() override;
  const RValue* find_variable(std::int32_t id) override;
  RValue* get_variable_ref(std::int32_t id) override;
  void visit_values(ValueVisitor& visitor) override;
  void release_counted_values() override;
  void write_variables(TextWriter& writer) override;

  // The hot reading path: `id` must come from a name slot filled at start-up. Null when absent.
  RValue* find_in_row(std::int32_t id) const {
    ARENA_ASSERT(id >= 0);  // the slot was filled
    const std::uint8_t position = shape->positions[id];
    return position == kNoPosition ? nullptr : row + position;
  }
  // Removes the variable, if there is one.
  void remove_variable(std::int32_t id);
  // Ids in order of insertion; unset slots included.
  std::vector<std::int32_t> variable_ids() const;
  std::size_t variable_count() const;
  // Makes room for so many variables at once.
  void reserve_row(std::size_t capacity);
  // Drops every variable.
  void clear_variables();
  bool is_dictionary() const { return dictionary_ != nullptr; }

  const Shape* shape;
  RValue* row = nullptr;
  // Where reading goes on when the object has no such variable: the statics of the constructor that made it. Null: nowhere.
  PropertyObject* prototype = nullptr;

 private:
  const RValue* find_own(std::int32_t id) const;
  struct Dictionary;
  void become_dictionary();

  std::uint32_t row_capacity_ = 0;
  Dictionary* dictionary_ = nullptr;
};

// Heap objects alive now, all generations: for leak tests.
int live_objects();

// The object behind a kind-6 value as one with variables; null for every other value. Arrays never stand behind kind 6.
inline PropertyObject* property_object(const RValue& value) {
  ARENA_ASSERT(!value.is_object() || value.object->object_kind != ObjectKind::kArray);
  return value.is_object() ? static_cast<PropertyObject*>(value.object) : nullptr;
}

}  // namespace arena
