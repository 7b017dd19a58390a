#pragma once
// Names the object into which the current store writes, for the collector's write barrier.
#include "runtime/arrays_structs/object.h"
#include "runtime/checks/assert.h"
#include "runtime/session/session.h"

namespace arena {

void grow_container_stack();
inline void push_container(WBObjectBase* container) {
  ContainerStack& stack = session().containers;
  if (stack.count == stack.capacity) grow_container_stack();
  stack.entries[stack.count++] = container;
}
// Never below empty.
inline void pop_container() {
  ContainerStack& stack = session().containers;
  if (stack.count > 0) --stack.count;
}
inline int container_depth() { return session().containers.count; }
// Top of the stack, or the global object when the stack is empty.
WBObjectBase* current_container();
// Restores a depth remembered before, after an exception.
inline void restore_container_depth(int depth) {
  ContainerStack& stack = session().containers;
  ARENA_ASSERT(depth >= 0 && stack.count >= depth);  // nobody took away what an outer scope put there
  if (stack.count > depth) stack.count = depth;
}

class ContainerScope {
 public:
  explicit ContainerScope(WBObjectBase* container) {
    ARENA_ASSERT(container != nullptr);
    push_container(container);
  }
  ~ContainerScope() {
    ARENA_ASSERT(container_depth() > 0);
    pop_container();
  }
  ContainerScope(const ContainerScope&) = delete;
  ContainerScope& operator=(const ContainerScope&) = delete;
};

// The object that holds all global variables; made on first use, alive for the session.
PropertyObject* make_global_object();
inline PropertyObject* global_object() {
  PropertyObject* const made = session().globals;
  return made != nullptr ? made : make_global_object();
}

}  // namespace arena
