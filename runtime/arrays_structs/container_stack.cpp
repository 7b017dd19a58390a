#include "runtime/arrays_structs/container_stack.h"

#include <algorithm>

namespace arena {

void grow_container_stack() {
  const int capacity = std::max(1, container_stack.capacity * 2);
  WBObjectBase** entries = new WBObjectBase*[static_cast<std::size_t>(capacity)];
  std::copy(container_stack.entries, container_stack.entries + container_stack.count, entries);
  delete[] container_stack.entries;
  container_stack.entries = entries;
  container_stack.capacity = capacity;
}

WBObjectBase* current_container() {
  return container_stack.count == 0 ? global_object() : container_stack.entries[container_stack.count - 1];
}

PropertyObject* make_global_object() {
  the_global_object = new PropertyObject(ObjectKind::kStruct);
  the_global_object->is_root = true;
  return the_global_object;
}

}  // namespace arena
