#include "game/support/spatial_hash.h"

namespace game {
namespace {
constexpr int kCells = 100;     // each way
constexpr Real kCellSize = 40;  // pixels

// The cell of a coordinate; far outside for what no cell can hold.
int cell_of(Real coordinate) { return saturate_int32(floor(coordinate / kCellSize).number()); }
int cell_of(const Value& coordinate) { return saturate_int32(checked::floor(coordinate / kCellSize).number()); }
}  // namespace
}  // namespace game

// Empty from the beginning, also where no controller clears it.
GLOBAL_SCRIPT(SPATIAL_HASH) {
  global[grid] = ds_grid_create(kCells, kCells);
  grid_clear();
}

SCRIPT(grid_clear) { ds_grid_clear(global[grid], noone); }

SCRIPT(grid_insert, Value inst) {
  const Instance inserted = inst;
  const Real at_x = inserted[x], at_y = inserted[y];
  const int column = cell_of(at_x), row = cell_of(at_y);
  Grid cells = global[grid];
  if (!cells.has(column, row)) return;
  const Value& cell = cells.at(column, row);
  if (is_array(cell)) {
    array_push(cell, inst);
  } else {
    cells.set(column, row, array_of(inst));
  }
}

NUMBER_SCRIPT(grid_get_nearby, Number at_x, Number at_y) {
  const Value nearby = array_create(0);
  const int column = cell_of(at_x), row = cell_of(at_y);
  const Grid cells = global[grid];
  for (const Value& cell : cells.around(column, row)) {
    if (is_array(cell)) {
      for (const Value& inst : elements(cell)) array_push(nearby, inst);
    } else if (cell != noone) {
      array_push(nearby, cell);
    }
  }
  return nearby;
}
