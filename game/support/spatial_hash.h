#pragma once
// A coarse grid of the enemies' positions, rebuilt every frame, so that each enemy looks only at those near it.
//
// 100 x 100 cells of 40 px cover the square from (0, 0) to (4000, 4000). What lies outside is in no cell and found by nobody.
#include "game/names.h"

namespace game {

extern const Script<void()> grid_clear;
extern const Script<void(Value inst)> grid_insert;
// A new array with the ids in the cell of (x, y) and the eight around it; the caller's own id is among them when it was inserted.
extern const Script<Value(Real at_x, Real at_y)> grid_get_nearby;

}  // namespace game
