#include "runtime/arrays_structs/slots.h"

#include <new>

#include "runtime/arrays_structs/collector.h"
#include "runtime/values/array_record.h"

namespace arena {
namespace {

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

}  // namespace arena
