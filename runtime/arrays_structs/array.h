#pragma once
// Script arrays: reference counted, copied on write when shared.
//
// Always true: a write through one holder is never seen through another. A shared array (count above 1) is copied first unless the
// writer is the owner that its token names; a store that makes a second holder clears the token.
#include <cstdint>

#include "runtime/arrays_structs/object.h"
#include "runtime/session/session.h"
#include "runtime/values/array_record.h"

namespace arena {

inline constexpr std::uint8_t kArrayImmutable = 1;
inline constexpr std::uint8_t kArrayGrowsGeometrically = 2;
inline constexpr std::int32_t kLongestArray = 1 << 24;  // elements

// The collector object that carries an array. The first few elements stand in the same block, for most arrays of a frame are short:
//
//   | object | record (to byte 64) | 4 elements (to byte 128) |       two cache lines
class GCArrayThing final : public WBObjectBase {
 public:
  explicit GCArrayThing(std::int64_t token);
  ~GCArrayThing() override;
  void visit_values(ValueVisitor& visitor) override;
  void release_counted_values() override;
  // Keeps the scratch arrays of a frame, thousands of them, from the collector: one that no value refers to and nothing knows is put aside,
  // and the next new array takes its place, still warm in the cache.
  void when_unreferenced() override;
  // Makes one that nothing refers to any more a new, empty one.
  void become_new(std::int64_t token);
  ArrayRecord record;

  static constexpr std::int32_t kInlineCapacity = 4;
  RValue* inline_elements() { return reinterpret_cast<RValue*>(inline_storage_); }

 private:
  alignas(RValue) unsigned char inline_storage_[kInlineCapacity * sizeof(RValue)];
};

// Whether an array of that length may be; reports when it is longer than the longest.
bool check_array_length(std::int64_t length);

// Whether arrays count their references. Off, nothing is ever copied on write.
void set_array_counting(bool on);

// Names who writes for the life of the scope.
class OwnerTokenScope {
 public:
  explicit OwnerTokenScope(std::int64_t token) : saved_(session().owner_token) { session().owner_token = token; }
  ~OwnerTokenScope() { session().owner_token = saved_; }
  OwnerTokenScope(const OwnerTokenScope&) = delete;
  OwnerTokenScope& operator=(const OwnerTokenScope&) = delete;

 private:
  std::int64_t saved_;
};

// The collector is about to reclaim what was put aside.
void forget_arrays_put_aside();

// Keeps an array as it is while native code walks over it, without making a second holder of it. Null is allowed.
class ArrayHold {
 public:
  explicit ArrayHold(ArrayRecord* array) : array_(array) { count_array_reference(array_); }
  ~ArrayHold() { discount_array_reference(array_); }
  ArrayHold(const ArrayHold&) = delete;
  ArrayHold& operator=(const ArrayHold&) = delete;
  const ArrayRecord* operator->() const { return array_; }
  const ArrayRecord* get() const { return array_; }

 private:
  ArrayRecord* array_;
};

// A new array of `length` zeroes (numbers), with count 1 in the value and the current owner token.
RValue make_array(std::int32_t length = 0);
RValue make_array(const RValue* values, std::int32_t count);
RValue make_empty_array(std::int64_t token);

// The slot to write for `a[index] = v`. Makes an array of what is none, copies a shared one, grows as needed (new elements between the
// old and the new end are the number 0). Null for a negative index, which the caller reports, and after a suppressed report.
RValue* array_element_for_write(RValue& value, std::int32_t index);
// The whole store: slot, container and assign. Reports a negative index.
void array_write(RValue& value, std::int32_t index, const RValue& element);
// The element for reading, or null after a report. `inline_form` picks between the two wordings for what is no array.
const RValue* array_element(const RValue& value, std::int32_t index, bool inline_form = false);

// In place, whoever else holds the array: for functions whose purpose it is. `at` must be inside the array.
void array_store(ArrayRecord& array, std::int32_t at, const RValue& element);
void array_append_slow(ArrayRecord& array, const RValue& element);
inline void array_append(ArrayRecord& array, const RValue& element) {
  if (array.length < array.capacity && element.is_plain() && !kStressBuild) [[likely]] {
    RValue& slot = array.elements[array.length++];
    slot.i64 = element.i64;
    slot.flags = element.flags;
    slot.kind_bits = element.kind_bits;
    return;
  }
  array_append_slow(array, element);
}
// Copies `count` elements of `source` from `from` on over those of `target` from `to` on, which grows as needed. Both may be the same
// array. `from` and `count` must lie inside the source, `to` must not be negative.
void array_copy_range(ArrayRecord& target, std::int32_t to, const ArrayRecord& source, std::int32_t from, std::int32_t count);
// New elements are the number 0; dropped ones are released.
void array_set_length(ArrayRecord& array, std::int32_t length);
// Gives up an array's single owner, as a store that makes a second holder does.
void clear_owner_token(const RValue& value);
// A new array with copies of the elements from `first` on.
RValue array_copy(const ArrayRecord& source, std::int32_t first, std::int32_t count);

}  // namespace arena
