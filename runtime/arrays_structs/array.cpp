#include "runtime/arrays_structs/array.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <tuple>
#include <vector>

#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/slots.h"
#include "runtime/checks/assert.h"
#include "runtime/reports/report.h"
#include "runtime/session/state.h"

namespace arena {

static_assert(sizeof(void*) < 8 || sizeof(GCArrayThing) == 128, "two cache lines");

namespace {

constexpr std::int32_t kLongestReused = 64;  // elements of capacity: longer blocks go back at the next collection

struct PutAside {
  std::vector<GCArrayThing*> arrays;
  void restart() {}
  static constexpr auto fields() { return std::tuple(derived("arrays", &PutAside::arrays)); }
};
const StatePart<PutAside> put_aside{PartLevel::kHeap, "arrays put aside"};

GCArrayThing* thing_of(const ArrayRecord& array) { return static_cast<GCArrayThing*>(array.owner); }

void free_elements(ArrayRecord& array) {
  if (array.elements == thing_of(array)->inline_elements()) return;
  free_block(array.elements, static_cast<std::size_t>(array.capacity) * sizeof(RValue));
}

void move_elements(ArrayRecord& array, std::int32_t capacity) {
  ARENA_ASSERT(capacity >= array.length);
  RValue* moved = static_cast<RValue*>(allocate_block(static_cast<std::size_t>(capacity) * sizeof(RValue)));
  if (array.elements != nullptr) {
    std::memcpy(static_cast<void*>(moved), static_cast<const void*>(array.elements),
                static_cast<std::size_t>(array.length) * sizeof(RValue));
    free_elements(array);
  }
  array.elements = moved;
  array.capacity = capacity;
}

// Sets the length after making room by the growth rule: half as much again when geometric, exactly enough otherwise.
void extend(ArrayRecord& array, std::int32_t length) {
  ARENA_ASSERT(length >= array.length && array.length <= array.capacity);
  if (length > array.capacity || (kStressBuild && array.capacity > 0)) {
    std::int32_t capacity = array.capacity;
    if (length > capacity) {
      capacity = (array.flags & kArrayGrowsGeometrically) != 0 ? array.capacity * 3 / 2 : length;
      if (capacity < length) capacity = length;
    }
    move_elements(array, capacity);
  }
  for (std::int32_t i = array.length; i < length; ++i) new (array.elements + i) RValue(0.0);
  array.length = length;
}

GCArrayThing* new_thing(std::int64_t token) {
  std::vector<GCArrayThing*>& reusable = put_aside().arrays;
  if (reusable.empty() || WorkerLock::registered_workers.load(std::memory_order_relaxed) != 0) return new GCArrayThing(token);
  GCArrayThing* const thing = reusable.back();
  ARENA_ASSERT(thing->record.count == 0 && thing->generation == 0);  // nobody took it up again
  reusable.pop_back();
  thing->become_new(token);
  return thing;
}

// Small arrays grow fast: the many short-lived ones of a frame move once or twice at most.
std::int32_t roomier(std::int32_t capacity) { return capacity < 4 ? 4 : capacity < 64 ? capacity * 4 : capacity * 2; }

// A fresh array for the slot `value`, which belongs to the current container.
void replace_array(RValue& value, GCArrayThing* made, BarrierSite site) {
  release(value);
  value.array = &made->record;
  value.flags = 0;
  value.kind_bits = kArray;
  if (session().array_counting_is_on) made->record.count = 1;
  write_barrier(current_container(), made, site);
  note_heap_value_stored(current_container(), value);
}

}  // namespace

GCArrayThing::GCArrayThing(std::int64_t token) : WBObjectBase(ObjectKind::kArray), record{this, nullptr, token, 0, 0, 0, 0, 0} {
  if (kStressBuild) return;
  record.elements = inline_elements();
  record.capacity = kInlineCapacity;
}

GCArrayThing::~GCArrayThing() {
  if (holds_counted_values) release_counted_values();
  if (record.elements != nullptr) free_elements(record);
}

void GCArrayThing::release_counted_values() {
  holds_counted_values = false;
  for (std::int32_t i = 0; i < record.length; ++i) record.elements[i] = RValue();
}

void GCArrayThing::visit_values(ValueVisitor& visitor) {
  for (std::int32_t i = 0; i < record.length; ++i) visitor(record.elements[i]);
}

void GCArrayThing::become_new(std::int64_t token) {
  renew_serial();
  has_survived = false;
  record.owner_token = token;
  record.length = 0;
  record.release_mark = 0;
  record.flags = 0;
}

void GCArrayThing::when_unreferenced() {
  // Only what no list of the collector but its own generation's knows. Plain numbers leave nothing behind to be released.
  const bool is_known = generation != 0 || is_referenced_from_older || remembered_in != 0 || is_root;
  if (is_known || holds_heap_values || record.capacity > kLongestReused) return;
  if (WorkerLock::registered_workers.load(std::memory_order_relaxed) != 0) return;
  try {
    put_aside().arrays.push_back(this);
  } catch (const std::bad_alloc&) {  // then the collector finds it
  }
}
void forget_arrays_put_aside() { put_aside().arrays.clear(); }

// Whoever stopped counting left counts behind that say nothing: from then on only the collector decides.
void set_array_counting(bool on) {
  session().array_counting_is_on = on;
  session().arrays_are_reused = false;
  forget_arrays_put_aside();
}

RValue make_empty_array(std::int64_t token) { return RValue::of_array(&new_thing(token)->record); }

RValue make_array(std::int32_t length) {
  RValue made = make_empty_array(session().owner_token);
  if (length > 0) extend(*made.array, length);
  return made;
}

RValue make_array(const RValue* values, std::int32_t count) {
  RValue made = make_array(count);
  for (std::int32_t i = 0; i < count; ++i) array_store(*made.array, i, values[i]);
  return made;
}

RValue* array_element_for_write(RValue& value, std::int32_t index) {
  if (!value.is_array() || value.array == nullptr) {
    replace_array(value, new_thing(session().owner_token), BarrierSite::kArrayMade);
  } else if (session().array_counting_is_on && value.array->owner_token != session().owner_token) {
    if (value.array->count != 1) {
      const ArrayRecord& shared = *value.array;
      RValue copy = array_copy(shared, 0, shared.length);
      GCArrayThing* thing = thing_of(*copy.array);
      replace_array(value, thing, BarrierSite::kArrayCopied);
      copy.forget();
    } else if (value.array->owner_token == 0) {
      value.array->owner_token = session().owner_token;
    }
  }
  ArrayRecord& array = *value.array;
  if ((array.flags & kArrayImmutable) != 0) {
    report_error(messages::kImmutableArray);
    return nullptr;
  }
  if (index < 0) return nullptr;
  if (index >= kLongestArray) {
    report_error(messages::kIndexOutOfBounds, index, kLongestArray);
    return nullptr;
  }
  if (index >= array.length) extend(array, index + 1);
  return array.elements + index;
}

bool check_array_length(std::int64_t length) {
  if (length <= kLongestArray) return true;
  report_error(messages::kIndexOutOfBounds, static_cast<std::int32_t>(std::min<std::int64_t>(length, INT32_MAX)), kLongestArray);
  return false;
}

void array_write(RValue& value, std::int32_t index, const RValue& element) {
  const RValue kept(element);  // may be an element of the very array that grows
  RValue* slot = array_element_for_write(value, index);
  if (slot == nullptr) {
    if (index < 0) report_error(messages::kIndexNegative);
    return;
  }
  if (kept.is_array()) clear_owner_token(kept);
  const ContainerScope container(value.array->owner);
  assign(*slot, kept);
}

const RValue* array_element(const RValue& value, std::int32_t index, bool inline_form) {
  if (!value.is_array() || value.array == nullptr) {
    report_error(inline_form ? messages::kInlineIndexNotArray : messages::kIndexNotArray);
    return nullptr;
  }
  if (index < 0) {
    report_error(messages::kIndexNegative);
    return nullptr;
  }
  if (index >= value.array->length) {
    report_error(messages::kIndexOutOfBounds, index, value.array->length);
    return nullptr;
  }
  return value.array->elements + index;
}

void array_store(ArrayRecord& array, std::int32_t at, const RValue& element) {
  ARENA_ASSERT(at >= 0 && at < array.length);
  RValue& slot = array.elements[at];
  if (element.is_plain() && slot.is_plain()) {
    slot.i64 = element.i64;
    slot.flags = element.flags;
    slot.kind_bits = element.kind_bits;
    return;
  }
  const ContainerScope container(array.owner);
  if (element.is_array()) clear_owner_token(element);
  assign(slot, element);
}

void array_append_slow(ArrayRecord& array, const RValue& element) {
  if (array.length == array.capacity || kStressBuild) {
    const RValue kept(element);
    if (array.length == array.capacity) move_elements(array, roomier(array.capacity));
    extend(array, array.length + 1);
    array_store(array, array.length - 1, kept);
    return;
  }
  new (array.elements + array.length) RValue(0.0);
  ++array.length;
  array_store(array, array.length - 1, element);
}

void array_copy_range(ArrayRecord& target, std::int32_t to, const ArrayRecord& source, std::int32_t from, std::int32_t count) {
  if (count == 0) return;
  ARENA_ASSERT(from >= 0 && count > 0 && from <= source.length - count && to >= 0);
  if (to + count > target.capacity && to == target.length) move_elements(target, std::max(roomier(target.capacity), to + count));
  const bool are_plain = !source.owner->holds_heap_values && !target.owner->holds_heap_values;
  const std::int32_t old_length = target.length;
  if (are_plain && to == old_length && to + count <= target.capacity) {
    target.length = to + count;
    std::memcpy(static_cast<void*>(target.elements + to), static_cast<const void*>(source.elements + from),
                static_cast<std::size_t>(count) * sizeof(RValue));
    return;
  }
  const RValue kept = array_copy(source, from, count);
  if (to + count > old_length) extend(target, to + count);
  for (std::int32_t i = 0; i < count; ++i) array_store(target, to + i, kept.array->elements[i]);
}

void array_set_length(ArrayRecord& array, std::int32_t length) {
  ARENA_ASSERT(length >= 0);
  if (length > array.length) {
    extend(array, length);
    return;
  }
  for (std::int32_t i = length; i < array.length; ++i) array.elements[i].~RValue();
  array.length = length;
}

void clear_owner_token(const RValue& value) {
  if (value.is_array() && value.array != nullptr) value.array->owner_token = 0;
}

RValue array_copy(const ArrayRecord& source, std::int32_t first, std::int32_t count) {
  ARENA_ASSERT(first >= 0 && count >= 0 && first <= source.length - count);
  RValue copy = make_array(count);
  for (std::int32_t i = 0; i < count; ++i) array_store(*copy.array, i, source.elements[first + i]);
  return copy;
}

}  // namespace arena
