#pragma once
// What every object on the runtime heap has in common, and the property objects (structs, instances, closures) among them.
//
// Always true: an object belongs to exactly one generation of the collector, stays at its address for life, and is destroyed by the
// collector alone.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "runtime/arrays_structs/shape.h"
#include "runtime/values/value.h"

namespace arena {

enum class ObjectKind : std::uint8_t { kStruct = 0, kInstance = 1, kArray = 2, kMethod = 3, kScriptRef = 4, kWeakRef = 5 };

// Sees every value that an object or holder keeps. One visit function of each serves the collector, the state hash and the snapshot.
class ValueVisitor {
 public:
  virtual ~ValueVisitor() = default;
  void operator()(const RValue& value) {
    if (wants_all_ || value.owns_heap()) visit(value);
  }
  virtual void visit(const RValue& value) = 0;

 protected:
  // A visitor that only follows references may leave the plain numbers out.
  explicit ValueVisitor(bool wants_all) : wants_all_(wants_all) {}

 private:
  bool wants_all_;
};

class WBObjectBase {
 public:
  explicit WBObjectBase(ObjectKind kind);
  virtual ~WBObjectBase();
  // The variable's value for reading, or null when the object has no such variable.
  virtual const RValue* find_variable(std::int32_t id);
  // The variable's slot for writing, created unset when absent; null when the object takes no variables. Good until the next call.
  virtual RValue* get_variable_ref(std::int32_t id);
  virtual void visit_values(ValueVisitor& visitor);
  // Gives back the strings and arrays that the object holds, before it dies; the slots read undefined afterwards.
  virtual void release_counted_values();

  WBObjectBase(const WBObjectBase&) = delete;
  WBObjectBase& operator=(const WBObjectBase&) = delete;
  static void* operator new(std::size_t bytes);
  static void operator delete(void* object, std::size_t bytes);

  void renew_serial();

  ObjectKind object_kind;
  std::uint8_t generation = 0;
  // The collector's own notes.
  bool is_marked = false;
  bool has_survived = false;              // once in this generation; the second time promotes
  bool is_root = false;                   // kept alive by itself: live instances, the global object
  bool is_referenced_from_older = false;  // stands in its generation's list of such objects
  std::uint8_t remembered_in = 0;         // bit g: stands in the remembered set of generation g
  bool holds_heap_values = false;         // anything but plain numbers was ever stored in it (kept for arrays)
  bool holds_counted_values = false;      // strings or arrays stand in it: they are given back when it dies
  bool is_exception = false;              // a caught script error, made into a struct
  bool is_read_only = false;              // a managed object that scripts may not write
  std::uint32_t serial;                   // "%p" of messages; never reused
};

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

  // The hot reading path: `id` must come from a name slot filled at start-up. Null when absent.
  RValue* find_in_row(std::int32_t id) const {
    const std::uint8_t position = shape->positions[id];
    return position == kNoPosition ? nullptr : row + position;
  }
  // Removes the variable; false when there was none.
  bool remove_variable(std::int32_t id);
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
  return value.is_object() ? static_cast<PropertyObject*>(value.object) : nullptr;
}

}  // namespace arena
