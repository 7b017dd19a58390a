#include "game/support/spatial_hash.h"

namespace arena::game {
namespace {
const Builtin ds_grid_create{"ds_grid_create"};
const Builtin ds_grid_clear{"ds_grid_clear"};
constexpr Real kCells = 100;    // each way
constexpr Real kCellSize = 40;  // pixels
}  // namespace
}  // namespace arena::game

GLOBAL_SCRIPT(SPATIAL_HASH) { global[grid] = ds_grid_create(kCells, kCells); }

SCRIPT(grid_clear) { ds_grid_clear(global[grid], noone); }

SCRIPT(grid_insert, Value inst) {
  const Instance inserted = inst;
  const Real cell_x = floor(inserted[x] / kCellSize), cell_y = floor(inserted[y] / kCellSize);
  if (cell_x < 0 || cell_y < 0 || cell_x >= kCells || cell_y >= kCells) return;
  const Value cells = global[grid];
  const Value cell = ds_grid_get(cells, cell_x, cell_y);
  if (is_array(cell)) {
    array_push(cell, inst);
  } else {
    ds_grid_set(cells, cell_x, cell_y, array_of(inst));
  }
}

SCRIPT(grid_get_nearby, Real at_x, Real at_y) {
  const Value nearby = array_create(0);
  const Real cell_x = floor(at_x / kCellSize), cell_y = floor(at_y / kCellSize);
  const Value cells = global[grid];
  for (Real row = max(cell_y - 1, 0); row <= min(cell_y + 1, kCells - 1); row += 1) {
    for (Real column = max(cell_x - 1, 0); column <= min(cell_x + 1, kCells - 1); column += 1) {
      const Value cell = ds_grid_get(cells, column, row);
      if (is_array(cell)) {
        for (const Value& inst : elements(cell)) array_push(nearby, inst);
      } else if (cell != noone) {
        array_push(nearby, cell);
      }
    }
  }
  return nearby;
}
