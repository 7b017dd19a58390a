#include "runtime/arrays_structs/struct.h"

#include <unordered_map>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/slots.h"
#include "runtime/program/names.h"
#include "runtime/reports/report.h"

namespace arena {
namespace {

// Structs and arrays may stand in one another deeper than the native stack reaches, and in circles.
class Freezer {
 public:
  void run(PropertyObject& outermost) {
    freeze_struct(outermost);
    while (!waiting_.empty()) {
      WBObjectBase* const container = waiting_.back();
      waiting_.pop_back();
      if (container->object_kind == ObjectKind::kArray) {
        ArrayRecord& array = static_cast<GCArrayThing*>(container)->record;
        for (std::int32_t i = 0; i < array.length; ++i) freeze_slot(container, array.elements[i]);
      } else {
        for (const std::int32_t id : static_cast<PropertyObject*>(container)->variable_ids()) {
          freeze_slot(container, *container->get_variable_ref(id));
        }
      }
    }
  }

 private:
  void freeze_struct(PropertyObject& object) {
    if (object.is_read_only) return;
    object.is_read_only = true;
    waiting_.push_back(&object);
  }
  void freeze_slot(WBObjectBase* container, RValue& slot) {
    if (slot.is_array() && slot.array != nullptr) freeze_array(container, slot);
    if (slot.is_object() && slot.object->object_kind == ObjectKind::kStruct) freeze_struct(*property_object(slot));
  }
  void freeze_array(WBObjectBase* container, RValue& slot) {
    if ((slot.array->flags & kArrayImmutable) != 0) return;
    const auto place = copies_.find(slot.array);
    const bool is_shared = session().array_counting_is_on && slot.array->count > 1;
    if (is_shared) {
      const RValue whole = slot;
      const RValue copy = place != copies_.end() ? place->second : array_copy(*whole.array, 0, whole.array->length);
      const ContainerScope scope(container);
      assign(slot, copy);
      copies_.emplace(whole.array, copy);
      originals_.push_back(whole);
    }
    if ((slot.array->flags & kArrayImmutable) != 0) return;
    slot.array->flags = slot.array->flags | kArrayImmutable;
    waiting_.push_back(slot.array->owner);
  }

  std::vector<WBObjectBase*> waiting_;
  std::unordered_map<const ArrayRecord*, RValue> copies_;  // of arrays met more than once there is one copy
  std::vector<RValue> originals_;                          // kept, so that no new array takes the place of one in the map
};

}  // namespace

RValue make_struct() { return RValue::of_object(new PropertyObject(ObjectKind::kStruct)); }

RValue struct_get(PropertyObject* object, std::int32_t id) {
  if (object == nullptr) {
    report_error(messages::kPropertyNullSelf);
    return {};
  }
  const RValue* found = object->find_variable(id);
  if (found == nullptr || found->is_unset()) {
    report_error(messages::kGetProperty);
    return {};
  }
  return *found;
}

void struct_set(PropertyObject* object, std::int32_t id, const RValue& value) {
  if (object == nullptr) {
    report_error(messages::kPropertyNullSelf);
    return;
  }
  if (object->object_kind == ObjectKind::kMethod || object->object_kind == ObjectKind::kScriptRef) {
    report_error(messages::kSetProperty);
    return;
  }
  if (object->is_read_only) {
    report_error(messages::kManagedReadOnly, variable_name(id), "struct", "");
    return;
  }
  store_variable(object, id, value);
}

void struct_set_named(PropertyObject* object, std::string_view name, const RValue& value) {
  if (name.empty()) {
    report_error(messages::kEmptyName);
  } else if (name.starts_with("@@")) {
    report_error(messages::kInternalName);
  } else {
    struct_set(object, variable_id(name), value);
  }
}

void store_variable(PropertyObject* object, std::int32_t id, const RValue& value) {
  if (value.is_plain()) {
    const std::int64_t payload = value.i64;  // `value` may stand in the row that moves
    const std::uint32_t flags = value.flags, kind = value.kind_bits;
    RValue* plain = object->get_variable_ref(id);
    if (plain->is_plain()) {
      plain->i64 = payload;
      plain->flags = flags;
      plain->kind_bits = kind;
      return;
    }
  }
  const RValue kept(value);  // `value` may stand in the row that moves
  RValue* slot = object->get_variable_ref(id);
  if (kept.is_array()) clear_owner_token(kept);
  const ContainerScope container(object);
  assign(*slot, kept);
}

void freeze(PropertyObject& object) { Freezer().run(object); }

}  // namespace arena
