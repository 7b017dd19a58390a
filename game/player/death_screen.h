#pragma once
#include "game/names.h"

namespace game {

// Shows the end of the run with its kills; Space starts anew.
extern const Script<void()> showDeathScreen;

}  // namespace game
