#pragma once
// What every object on the runtime heap has in common, as values see it. Making and destroying one is the collector's affair: what is
// declared here is defined in arrays_structs/object.cpp.
//
// Always true: an object belongs to exactly one generation of the collector, stays at its address for life, and is destroyed by the
// collector alone.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "runtime/values/value.h"

namespace arena {

class TextWriter;

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
  // An array's: no value refers to its record any more.
  virtual void when_unreferenced() {}
  // What stands for the object where a number is wanted: an instance's id.
  virtual std::int32_t as_number() const { return 0; }
  // What reports call it: "struct", or the name of an instance's object.
  virtual std::string_view called() const { return "struct"; }
  // Its variables in a text, "name:value,name:value".
  virtual void write_variables(TextWriter&) {}

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

}  // namespace arena
