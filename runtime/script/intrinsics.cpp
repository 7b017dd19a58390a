#include "runtime/script/intrinsics.h"

#include "runtime/reports/report.h"

namespace arena::script {
namespace {

DsGrid* require_grid(const Value& handle) {
  DsGrid* grid = ds_grids().find(to_int32(handle));
  if (grid == nullptr) report_error(messages::kArgumentHandle, "ds_grid", 1, "grid", to_int32(handle));
  return grid;
}

// What a loop runs over where errors are suppressed and there is no grid.
struct NoGrid {
  DsGrid grid{0, 0};
};
const Part<NoGrid> no_grid{PartLevel::kScripts, "no grid"};

// Whether the first argument of `name` is an array that may be changed in place; reports when it is not.
bool may_change(const Value& array, const char* name) {
  if (!is_array(array)) {
    report_error(messages::kArgumentArray, name, 1);
    return false;
  }
  if ((array.array->flags & kArrayImmutable) != 0) {
    report_error(messages::kArgumentImmutable, name, 1);
    return false;
  }
  return true;
}

bool require_cell(const DsGrid& grid, std::int32_t column, std::int32_t row) {
  if (grid.has(column, row)) return true;
  report_error(messages::kIndexOutOfBounds, column < 0 || column >= grid.width ? column : row,
               column < 0 || column >= grid.width ? grid.width : grid.height);
  return false;
}

}  // namespace

Grid::Grid(const Value& handle) : grid_(require_grid(handle)) {
  if (grid_ == nullptr) grid_ = &no_grid().grid;
}

void array_push_slow(const Value& array, const Value& element) {
  if (may_change(array, "array_push")) array_append(*array.array, element);
}

void array_copy(const Value& target, Real to, const Value& source, Real from, Real count, Here) {
  if (!may_change(target, "array_copy")) return;
  if (!is_array(source)) {
    report_error(messages::kArgumentArray, "array_copy", 3);
    return;
  }
  const std::int32_t at = saturate_int32(to.number()), first = saturate_int32(from.number());
  if (at < 0 || first < 0) return;
  const std::int32_t copied = std::clamp(saturate_int32(count.number()), 0, std::max(0, source.array->length - first));
  if (check_array_length(std::int64_t{at} + copied)) array_copy_range(*target.array, at, *source.array, first, copied);
}

Value array_create(Real length, const Value& fill) {
  const std::int32_t wanted = saturate_int32(length.number());
  Value made = make_array(check_array_length(wanted) ? std::max(wanted, 0) : 0);
  for (std::int32_t i = 0; i < made.array->length; ++i) array_store(*made.array, i, fill);
  return made;
}

void array_swap(const Value& array, Real first, Real second, Here) {
  if (is_array(array) && (array.array->flags & kArrayImmutable) != 0) {
    report_error(messages::kImmutableArray);
    return;
  }
  const RValue* a = array_element(array, saturate_int32(first.number()), true);
  const RValue* b = array_element(array, saturate_int32(second.number()), true);
  if (a != nullptr && b != nullptr) const_cast<RValue*>(a)->swap(*const_cast<RValue*>(b));  // both stay in the same array
}

Value variable_struct_get(const Value& target, const Value& name, Here) {
  PropertyObject* object = require_properties(target);
  const RValue* found = object != nullptr ? object->find_variable(find_variable_id(text_of(name))) : nullptr;
  return found != nullptr && !found->is_unset() ? Value(RValue(*found)) : Value();
}

bool variable_struct_exists(const Value& target, const Value& name) { return !is_undefined(variable_struct_get(target, name)); }

Value ds_grid_get(const Value& handle, Real column, Real row, Here) {
  DsGrid* grid = require_grid(handle);
  const std::int32_t at_column = saturate_int32(column.number()), at_row = saturate_int32(row.number());
  if (grid == nullptr || !require_cell(*grid, at_column, at_row)) return {};
  return RValue(grid->at(at_column, at_row));
}

void ds_grid_set(const Value& handle, Real column, Real row, const Value& value, Here) {
  DsGrid* grid = require_grid(handle);
  const std::int32_t at_column = saturate_int32(column.number()), at_row = saturate_int32(row.number());
  if (grid == nullptr || !require_cell(*grid, at_column, at_row)) return;
  clear_owner_token(value);
  grid->set(at_column, at_row, value);
}

}  // namespace arena::script
