#include "runtime/arrays_structs/object.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "runtime/arrays_structs/collector.h"
#include "runtime/checks/assert.h"
#include "runtime/memory/worker_lock.h"
#include "runtime/program/names.h"
#include "runtime/session/pooled.h"
#include "runtime/values/text.h"

namespace arena {

int live_objects() { return session().live_objects; }

WBObjectBase::WBObjectBase(ObjectKind kind) : object_kind(kind) {
  const WorkerLock lock(WorkerLock::kNursery);
  adopt_new_object(this);
  serial = session().next_serial++;
  ++session().live_objects;
}
WBObjectBase::~WBObjectBase() {
  ARENA_ASSERT(session().live_objects > 0);
  --session().live_objects;
}
void WBObjectBase::renew_serial() { serial = session().next_serial++; }
const RValue* WBObjectBase::find_variable(std::int32_t) { return nullptr; }
RValue* WBObjectBase::get_variable_ref(std::int32_t) { return nullptr; }
void WBObjectBase::visit_values(ValueVisitor&) {}
void WBObjectBase::release_counted_values() { holds_counted_values = false; }
void* WBObjectBase::operator new(std::size_t bytes) { return allocate_block(bytes); }
void WBObjectBase::operator delete(void* object, std::size_t bytes) { free_block(object, bytes); }

// Variables in order of insertion, found by id through an index.
struct PropertyObject::Dictionary {
  PooledVector<std::int32_t> ids;
  PooledVector<RValue> values;
  PooledIndex<std::int32_t, std::size_t> places;

  static void* operator new(std::size_t bytes) { return allocate_block(bytes); }
  static void operator delete(void* dictionary, std::size_t bytes) { free_block(dictionary, bytes); }

  RValue* find(std::int32_t id) {
    const auto found = places.find(id);
    return found == places.end() ? nullptr : &values[found->second];
  }
  // All or nothing where memory runs out.
  RValue* add(std::int32_t id) {
    if (ids.size() == ids.capacity()) ids.reserve(std::max<std::size_t>(8, ids.size() * 2));
    if (values.size() == values.capacity()) values.reserve(std::max<std::size_t>(8, values.size() * 2));
    places[id] = ids.size();
    ids.push_back(id);
    values.push_back(RValue::unset());
    return &values.back();
  }
  void remove(std::int32_t id) {
    ARENA_ASSERT(places.contains(id));
    const std::size_t place = places[id];
    ids.erase(ids.begin() + static_cast<std::ptrdiff_t>(place));
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(place));
    places.erase(id);
    for (std::size_t later = place; later < ids.size(); ++later) places[ids[later]] = later;
  }
};

PropertyObject::~PropertyObject() { clear_variables(); }

void PropertyObject::release_counted_values() {
  holds_counted_values = false;
  for (std::size_t i = 0; i < shape->ids.size(); ++i) row[i] = RValue();
  if (dictionary_ == nullptr) return;
  for (RValue& value : dictionary_->values) value = RValue();
}

void PropertyObject::clear_variables() {
  if (holds_counted_values) release_counted_values();
  free_block(row, row_capacity_ * sizeof(RValue));
  delete dictionary_;
  row = nullptr;
  row_capacity_ = 0;
  dictionary_ = nullptr;
  shape = empty_shape();
}

const RValue* PropertyObject::find_own(std::int32_t id) const {
  if (dictionary_ != nullptr) return dictionary_->find(id);
  return id >= 0 && id < code_name_count() ? find_in_row(id) : nullptr;
}

const RValue* PropertyObject::find_variable(std::int32_t id) {
  const bool is_in_tables = id >= 0 && id < code_name_count();
  for (const PropertyObject* at = this; at != nullptr; at = at->prototype) {
    const RValue* const found = at->dictionary_ != nullptr ? at->dictionary_->find(id) : is_in_tables ? at->find_in_row(id) : nullptr;
    if (found != nullptr) return found;
  }
  return nullptr;
}

RValue* PropertyObject::get_variable_ref(std::int32_t id) {
  if (dictionary_ == nullptr) {
    if (id >= 0 && id < code_name_count()) {
      if (RValue* found = find_in_row(id)) return found;
    }
    if (const Shape* longer = shape_with(shape, id)) {
      const std::size_t place = shape->ids.size();
      if (place == row_capacity_ || kStressBuild) reserve_row(row_capacity_ < 4 ? 4 : place == row_capacity_ ? place * 2 : row_capacity_);
      ARENA_ASSERT(place < row_capacity_ && longer->ids.size() == place + 1);
      shape = longer;
      return new (row + place) RValue(RValue::unset());
    }
    become_dictionary();
  }
  RValue* found = dictionary_->find(id);
  return found != nullptr ? found : dictionary_->add(id);
}

// Rows are moved as raw memory: references travel with their values.
void PropertyObject::reserve_row(std::size_t capacity) {
  if (capacity < shape->ids.size() || (capacity <= row_capacity_ && !kStressBuild) || capacity == 0) return;
  RValue* moved = static_cast<RValue*>(allocate_block(capacity * sizeof(RValue)));
  if (row != nullptr) std::memcpy(static_cast<void*>(moved), static_cast<const void*>(row), shape->ids.size() * sizeof(RValue));
  free_block(row, row_capacity_ * sizeof(RValue));
  row = moved;
  row_capacity_ = static_cast<std::uint32_t>(capacity);
}

void PropertyObject::become_dictionary() {
  ARENA_ASSERT(dictionary_ == nullptr);
  std::unique_ptr<Dictionary> dictionary(new Dictionary);
  for (const std::int32_t id : shape->ids) dictionary->add(id);
  for (std::size_t i = 0; i < shape->ids.size(); ++i) dictionary->values[i].swap(row[i]);
  free_block(row, row_capacity_ * sizeof(RValue));
  row = nullptr;
  row_capacity_ = 0;
  shape = dictionary_shape();
  dictionary_ = dictionary.release();
}

void PropertyObject::remove_variable(std::int32_t id) {
  if (find_own(id) == nullptr) return;
  if (dictionary_ == nullptr) become_dictionary();
  dictionary_->remove(id);
}

std::vector<std::int32_t> PropertyObject::variable_ids() const {
  return dictionary_ != nullptr ? std::vector<std::int32_t>(dictionary_->ids.begin(), dictionary_->ids.end()) : shape->ids;
}
std::size_t PropertyObject::variable_count() const { return dictionary_ != nullptr ? dictionary_->ids.size() : shape->ids.size(); }

void PropertyObject::write_variables(TextWriter& writer) {
  bool first = true;
  for (const std::int32_t id : variable_ids()) {
    if (!first) writer.text += ',';
    first = false;
    writer.text += variable_name(id);
    writer.text += ':';
    writer.write(*find_variable(id), true);
  }
}

void PropertyObject::visit_values(ValueVisitor& visitor) {
  if (prototype != nullptr) visitor(RValue::of_object(prototype));
  for (std::size_t i = 0; i < shape->ids.size(); ++i) visitor(row[i]);
  if (dictionary_ == nullptr) return;
  for (const RValue& value : dictionary_->values) visitor(value);
}

}  // namespace arena
