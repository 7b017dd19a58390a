#pragma once
// Messages to whoever set a number too high.
#include "game/names.h"

namespace game {

// Logs the message the first time in a run; `told` is a global of that run.
void warn_once(const Variable& told, const char* message);

}  // namespace game
