#include "runtime/arrays_structs/container_stack.h"

#include <vector>

namespace arena {
namespace {

// A growable array whose capacity doubles, starting at 1.
std::vector<WBObjectBase*> stack;

}  // namespace

void push_container(WBObjectBase* container) { stack.push_back(container); }

void pop_container() {
  if (!stack.empty()) stack.pop_back();
}

int container_depth() { return static_cast<int>(stack.size()); }
WBObjectBase* current_container() { return stack.empty() ? global_object() : stack.back(); }

void restore_container_depth(int depth) {
  while (container_depth() > depth) stack.pop_back();
}

PropertyObject* global_object() {
  static PropertyObject* const object = [] {
    PropertyObject* made = new PropertyObject(ObjectKind::kStruct);
    made->is_root = true;
    return made;
  }();
  return object;
}

}  // namespace arena
