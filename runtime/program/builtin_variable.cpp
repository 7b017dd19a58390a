#include "runtime/program/builtin_variable.h"

#include <vector>

#include "runtime/checks/assert.h"

namespace arena {
namespace {

std::vector<BuiltinVariable*>& table() {
  static std::vector<BuiltinVariable*> variables;
  return variables;
}

}  // namespace

BuiltinVariable::BuiltinVariable(const char* variable, bool of_instance, Get getter, Set setter)
    : NameSlot(Type::kVariable, variable), name(variable), belongs_to_instance(of_instance), get(getter), set(setter) {
  table().push_back(this);
}

std::int32_t builtin_variable_count() { return static_cast<std::int32_t>(table().size()); }
const BuiltinVariable& builtin_variable_at(std::int32_t index) {
  ARENA_ASSERT(index >= 0 && index < builtin_variable_count());
  return *table()[static_cast<std::size_t>(index)];
}
std::int32_t find_builtin_variable(std::string_view name) { return find_variable_id_builtin(find_variable_id(name)); }

std::int32_t find_variable_id_builtin(std::int32_t variable) {
  static const std::vector<std::int16_t> by_id = [] {
    std::vector<std::int16_t> map(static_cast<std::size_t>(variable_id_count()), -1);
    for (std::size_t i = 0; i < table().size(); ++i) map[static_cast<std::size_t>(table()[i]->slot)] = static_cast<std::int16_t>(i);
    return map;
  }();
  return variable >= 0 && static_cast<std::size_t>(variable) < by_id.size() ? by_id[static_cast<std::size_t>(variable)] : -1;
}

}  // namespace arena
