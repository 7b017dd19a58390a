#pragma once
// What an array value refers to, and how its references are counted.
#include <cstdint>

#include "runtime/checks/assert.h"
#include "runtime/session/session.h"
#include "runtime/values/object_base.h"
#include "runtime/values/value.h"

namespace arena {

struct ArrayRecord {
  WBObjectBase* owner;  // the collector object that carries this record
  RValue* elements;
  std::int64_t owner_token;  // 0: nobody's
  std::int32_t count;        // values that refer to this array
  std::int32_t length;
  std::int32_t capacity;
  std::uint32_t release_mark : 24;  // the collector's mark counter when first counted or released; 0: none yet
  std::uint32_t flags : 8;
};

// Counted only while counting is on; the first count or release stamps the array with the collector's mark counter.
inline void count_array_reference(ArrayRecord* array) {
  if (array == nullptr || !session().array_counting_is_on) return;
  ++array->count;
  if (array->release_mark == 0) array->release_mark = session().collector_mark & 0xFFFFFF;
}
// Releasing frees nothing: the collector reclaims arrays.
inline void discount_array_reference(ArrayRecord* array) {
  if (array == nullptr || !session().array_counting_is_on) return;
  if (array->release_mark == 0) array->release_mark = session().collector_mark & 0xFFFFFF;
  ARENA_ASSERT(array->count > 0 || !session().arrays_are_reused);  // once counting was off the counts say nothing
  if (--array->count == 0 && session().arrays_are_reused) array->owner->when_unreferenced();
}
inline RValue RValue::of_array(ArrayRecord* array) {
  RValue result;
  result.array = array;
  result.kind_bits = kArray;
  count_array_reference(array);
  return result;
}

}  // namespace arena
