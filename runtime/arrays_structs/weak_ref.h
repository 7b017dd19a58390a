#pragma once
// A reference that does not keep its target alive: after the target is collected it reads as dead.
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/object.h"

namespace arena {

class CWeakRef final : public PropertyObject {
 public:
  explicit CWeakRef(WBObjectBase* of) : PropertyObject((make_room_for_weak_reference(), ObjectKind::kWeakRef)), target(of) {
    register_weak_reference(this);
  }
  ~CWeakRef() override { forget_weak_reference(this); }
  WBObjectBase* target;  // null once the target was collected
};

}  // namespace arena
