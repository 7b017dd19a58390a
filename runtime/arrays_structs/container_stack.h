#pragma once
// Names the object into which the current store writes, for the collector's write barrier.
#include "runtime/arrays_structs/object.h"

namespace arena {

void push_container(WBObjectBase* container);
// Never below empty.
void pop_container();
int container_depth();
// Top of the stack, or the global object when the stack is empty.
WBObjectBase* current_container();
// Restores a depth remembered before, after an exception.
void restore_container_depth(int depth);

class ContainerScope {
 public:
  explicit ContainerScope(WBObjectBase* container) { push_container(container); }
  ~ContainerScope() { pop_container(); }
  ContainerScope(const ContainerScope&) = delete;
  ContainerScope& operator=(const ContainerScope&) = delete;
};

// The object that holds all global variables; made on first use, alive for the process.
PropertyObject* global_object();

}  // namespace arena
