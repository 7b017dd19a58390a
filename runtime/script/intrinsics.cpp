#include "runtime/script/intrinsics.h"

#include "runtime/variables_calls/report.h"

namespace arena::script {
namespace {

DsGrid* require_grid(const Value& handle) {
  DsGrid* grid = ds_grids().find(to_int32(handle));
  if (grid == nullptr) report_error(messages::kArgumentHandle, "ds_grid", 1, "grid", to_int32(handle));
  return grid;
}

bool require_cell(const DsGrid& grid, std::int32_t column, std::int32_t row) {
  if (grid.has(column, row)) return true;
  report_error(messages::kIndexOutOfBounds, column < 0 || column >= grid.width ? column : row,
               column < 0 || column >= grid.width ? grid.width : grid.height);
  return false;
}

}  // namespace

Grid::Grid(const Value& handle) : grid_(require_grid(handle)) {}

void array_push_slow(const Value& array, const Value& element) {
  if (!array.is_array() || array.array == nullptr) {
    report_error(messages::kArgumentArray, "array_push", 1);
    return;
  }
  if ((array.array->flags & kArrayImmutable) != 0) {
    report_error(messages::kArgumentImmutable, "array_push", 1);
    return;
  }
  array_append(*array.array, element);
}

Value array_create(Real length, const Value& fill) {
  Value made = make_array(std::clamp(saturate_int32(length.number()), 0, kLongestArray));
  for (std::int32_t i = 0; i < made.array->length; ++i) array_store(*made.array, i, fill);
  return made;
}

void array_swap(const Value& array, Real first, Real second) {
  const RValue* a = array_element(array, saturate_int32(first.number()), true);
  const RValue* b = array_element(array, saturate_int32(second.number()), true);
  if (a != nullptr && b != nullptr) const_cast<RValue*>(a)->swap(*const_cast<RValue*>(b));  // both stay in the same array
}

Value variable_struct_get(const Value& target, const Value& name) {
  PropertyObject* object = require_properties(target);
  const RValue* found = object != nullptr ? object->find_variable(find_variable_id(text_of(name))) : nullptr;
  return found != nullptr && !found->is_unset() ? Value(RValue(*found)) : Value();
}

bool variable_struct_exists(const Value& target, const Value& name) { return !is_undefined(variable_struct_get(target, name)); }

Value ds_grid_get(const Value& handle, Real column, Real row) {
  DsGrid* grid = require_grid(handle);
  const std::int32_t at_column = saturate_int32(column.number()), at_row = saturate_int32(row.number());
  if (grid == nullptr || !require_cell(*grid, at_column, at_row)) return {};
  return RValue(grid->at(at_column, at_row));
}

void ds_grid_set(const Value& handle, Real column, Real row, const Value& value) {
  DsGrid* grid = require_grid(handle);
  const std::int32_t at_column = saturate_int32(column.number()), at_row = saturate_int32(row.number());
  if (grid == nullptr || !require_cell(*grid, at_column, at_row)) return;
  clear_owner_token(value);
  grid->at(at_column, at_row) = value;
}

}  // namespace arena::script
