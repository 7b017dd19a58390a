#include "runtime/arrays_structs/container_stack.h"

#include <algorithm>
#include <tuple>

#include "runtime/session/state.h"

namespace arena {
namespace {

struct Globals {
  void restart() { global_object()->clear_variables(); }
  void visit_content(StateVisitor& visitor) { visitor.object(global_object()); }
  static constexpr auto fields() { return std::tuple<>(); }
};
const StatePart<Globals> part{PartLevel::kScripts, "globals"};

}  // namespace

void grow_container_stack() {
  ContainerStack& stack = session().containers;
  const int capacity = std::max(1, stack.capacity * 2);
  WBObjectBase** entries = new WBObjectBase*[static_cast<std::size_t>(capacity)];
  std::copy(stack.entries, stack.entries + stack.count, entries);
  delete[] stack.entries;
  stack.entries = entries;
  stack.capacity = capacity;
}

WBObjectBase* current_container() {
  const ContainerStack& stack = session().containers;
  return stack.count == 0 ? global_object() : stack.entries[stack.count - 1];
}

PropertyObject* make_global_object() {
  PropertyObject* const made = session().globals = new PropertyObject(ObjectKind::kStruct);
  made->is_root = true;
  return made;
}

}  // namespace arena
