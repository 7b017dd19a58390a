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

// The collector hears of a store before it happens: when its memory runs out the slot is as it was.
void announce_store(const RValue& source) {
  if (source.is_object()) write_barrier(current_container(), source.object, BarrierSite::kAssignObject);
  if (source.is_array() && source.array != nullptr) {
    write_barrier(current_container(), source.array->owner, BarrierSite::kAssignArray);
  }
  note_heap_value_stored(current_container(), source);
}

}  // namespace

void RValue::add_reference() noexcept {
  if (kind() == kString) {
    add_string_reference(string);
  } else if (kind() == kArray) {
    count_array_reference(array);
  } else if (kind() == kPointer) {
    flags &= ~kFlagOwnsPointer;
  }
}

void RValue::drop_reference() noexcept { release(*this); }

void release(RValue& value) {
  switch (value.kind()) {
    case kString:
      release_string(value.string);
      value.string = nullptr;
      break;
    case kArray: discount_array_reference(value.array); break;
    case kPointer:
      if ((value.flags & kFlagOwnsPointer) == 0) break;
      delete static_cast<OwnedObject*>(value.pointer);
      value.pointer = nullptr;
      value.flags &= ~kFlagOwnsPointer;
      break;
    default: break;
  }
}

void add_ref_copy(RValue& dest, const RValue& source) {
  if (source.owns_heap()) announce_store(source);
  new (&dest) RValue(source);
}

void assign(RValue& dest, const RValue& source) {
  if (&dest == &source) return;
  RValue copy(source);  // the old content may own the source
  if (copy.owns_heap()) announce_store(copy);
  const bool dropped = copy.is_undefined() && refers_to_heap(dest);
  WBObjectBase* const old_object = dest.kind() == kObject ? dest.object : dest.is_array() && dest.array ? dest.array->owner : nullptr;
  if (!dest.is_plain()) release(dest);
  if (dropped) reference_dropped(current_container(), old_object);
  new (&dest) RValue(static_cast<RValue&&>(copy));
}

const char* type_name(const RValue& value) {
  const std::uint32_t kind = value.kind();
  if (kind >= sizeof kTypeNames / sizeof *kTypeNames) return "unknown";
  if (kind == kObject && value.object != nullptr && value.object->object_kind == ObjectKind::kMethod) return "method";
  return kTypeNames[kind];
}

}  // namespace arena
