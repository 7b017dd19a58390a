#include "runtime/values/value.h"

#include <new>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/object.h"
#include "runtime/values/strings.h"

namespace arena {
namespace {

constexpr const char* kTypeNames[] = {"number", "string", "array", "ptr",      "vec3", "undefined", "struct",   "int32",
                                      "vec4",   "vec44",  "int64", "accessor", "null", "bool",      "iterator", "ref"};

bool refers_to_heap(const RValue& value) { return value.is_array() || value.kind() == kObject || value.kind() == kAccessor; }

}  // namespace

void RValue::add_reference() const noexcept {
  if (kind() == kString) {
    add_string_reference(string);
  } else if (kind() == kArray) {
    count_array_reference(array);
  }
}

void RValue::drop_reference() noexcept {
  if (kind() == kString) {
    release_string(string);
  } else if (kind() == kArray) {
    discount_array_reference(array);
  }
}

void release(RValue& value) {
  switch (value.kind()) {
    case kString:
      release_string(value.string);
      value.string = nullptr;
      break;
    case kArray: discount_array_reference(value.array); break;
    case kPointer:
      if ((value.flags & kFlagOwnsPointer) != 0) delete static_cast<WBObjectBase*>(value.pointer);
      break;
    default: break;
  }
}

void add_ref_copy(RValue& dest, const RValue& source) {
  new (&dest) RValue(source);
  if (source.is_object()) write_barrier(current_container(), source.object, BarrierSite::kAssignObject);
  if (source.is_array() && source.array != nullptr) {
    write_barrier(current_container(), source.array->owner, BarrierSite::kAssignArray);
  }
  if (source.owns_heap()) note_heap_value_stored(current_container(), source);
}

void assign(RValue& dest, const RValue& source) {
  if (&dest == &source) return;
  const RValue copy(source);  // the old content may own the source
  const bool dropped = copy.is_undefined() && refers_to_heap(dest);
  WBObjectBase* const old_object = dest.kind() == kObject ? dest.object : dest.is_array() && dest.array ? dest.array->owner : nullptr;
  if (dest.owns_heap()) release(dest);
  if (dropped) reference_dropped(current_container(), old_object);
  if (copy.owns_heap()) {
    add_ref_copy(dest, copy);
  } else {
    dest.i64 = copy.i64;
    dest.flags = copy.flags;
    dest.kind_bits = copy.kind_bits;
  }
}

const char* type_name(const RValue& value) {
  const std::uint32_t kind = value.kind();
  if (kind >= sizeof kTypeNames / sizeof *kTypeNames) return "unknown";
  if (kind == kObject && value.object != nullptr && value.object->object_kind == ObjectKind::kMethod) return "method";
  return kTypeNames[kind];
}

}  // namespace arena
