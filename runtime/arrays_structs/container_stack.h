#pragma once
// Names the object into which the current store writes, for the collector's write barrier.
#include "runtime/arrays_structs/object.h"

namespace arena {

// A growable array whose capacity doubles, starting at 1.
struct ContainerStack {
  WBObjectBase** entries = nullptr;
  int count = 0, capacity = 0;
};
inline ContainerStack container_stack;

void grow_container_stack();
inline void push_container(WBObjectBase* container) {
  if (container_stack.count == container_stack.capacity) grow_container_stack();
  container_stack.entries[container_stack.count++] = container;
}
// Never below empty.
inline void pop_container() {
  if (container_stack.count > 0) --container_stack.count;
}
inline int container_depth() { return container_stack.count; }
// Top of the stack, or the global object when the stack is empty.
WBObjectBase* current_container();
// Restores a depth remembered before, after an exception.
inline void restore_container_depth(int depth) {
  if (container_stack.count > depth) container_stack.count = depth;
}

class ContainerScope {
 public:
  explicit ContainerScope(WBObjectBase* container) { push_container(container); }
  ~ContainerScope() { pop_container(); }
  ContainerScope(const ContainerScope&) = delete;
  ContainerScope& operator=(const ContainerScope&) = delete;
};

// The object that holds all global variables; made on first use, alive for the process.
PropertyObject* make_global_object();
inline PropertyObject* the_global_object = nullptr;
inline PropertyObject* global_object() { return the_global_object != nullptr ? the_global_object : make_global_object(); }

}  // namespace arena
