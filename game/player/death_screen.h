#pragma once
#include "game/names.h"

namespace arena::game {

// Shows the end of the run with its kills; Space starts anew.
extern const Script<void()> showDeathScreen;

}  // namespace arena::game
