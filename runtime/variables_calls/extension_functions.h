#pragma once
// The second function table: functions that the host program adds (native extensions), a session at a time.
#include <cstdint>

#include "runtime/program/functions.h"

namespace arena {

inline constexpr std::int32_t kFirstExtensionNumber = 500000;  // entry n of the table is 500000 + n

// Returns the number that calls it.
std::int32_t add_extension_function(ScriptFunction function);
ScriptFunction extension_function(std::int32_t number);  // null: none

}  // namespace arena
