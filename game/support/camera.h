#pragma once
// The one camera of the game. It follows a target with smoothing and a leash, zooms, turns and shakes, and writes the result into the
// room's view each frame. getTarnCamera() gives the struct; its methods are called on it: getTarnCamera()[applyShake](6, 0.1).
#include "game/names.h"

namespace game {

extern const Script<Value()> getTarnCamera;

// Methods that other folders call.
inline const Variable init{"init"};
inline const Variable update{"update"};
inline const Variable drawDebug{"drawDebug"};
inline const Variable setPosition{"setPosition"};
inline const Variable applyShake{"applyShake"};

}  // namespace game
