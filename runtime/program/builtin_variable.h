#pragma once
// The table of built-in variables: of instances (x, image_angle, ...) and of the world (delta_time, mouse_x, room_width, ...). What they
// read and write stands in instances_loop/builtin_variables.cpp.
#include <cstdint>
#include <string_view>

#include "runtime/program/names.h"

namespace arena {

class CInstance;
struct RValue;

// Static storage. `index` counts only where the variable is an array (alarm, view_camera), and lies inside it. A null `set` makes it
// read-only.
struct BuiltinVariable : NameSlot {
  using Get = RValue (*)(CInstance* self, std::int32_t index);
  using Set = void (*)(CInstance* self, std::int32_t index, const RValue& value);
  BuiltinVariable(const char* variable, bool of_instance, Get getter, Set setter = nullptr);
  const char* name;
  bool belongs_to_instance;
  Get get;
  Set set;
  std::int32_t length = 0;  // elements of an array; 0: it is none
};

std::int32_t builtin_variable_count();
const BuiltinVariable& builtin_variable_at(std::int32_t index);
std::int32_t find_builtin_variable(std::string_view name);     // -1: none
std::int32_t find_variable_id_builtin(std::int32_t variable);  // by variable id; -1: an ordinary variable

}  // namespace arena
