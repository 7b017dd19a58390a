// Lists, maps and grids, by handle.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/containers.h"

#include <algorithm>

#include "runtime/builtins/container_arguments.h"
#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/random.h"
#include "runtime/values/compare.h"
#include "runtime/values/refs.h"

namespace arena {

namespace {

const RefKind list_refs{ref_type::kList, "list"}, map_refs{ref_type::kMap, "map"}, grid_refs{ref_type::kGrid, "grid"};

template <class Structure>
Structure* find_structure(const ContainerTable<Structure>& table, const CallContext& call, int at, const char* kind, std::int32_t& handle) {
  if (!is_number_like(argument_at(call, at))) {
    report_argument_type(call, at, kind);
    return nullptr;
  }
  handle = to_int32(argument_at(call, at));
  Structure* found = table.find(handle);
  if (found == nullptr) report_invalid_resource(at + 1, kind, handle, -1);
  return found;
}

}  // namespace

ListArgument check_list(const CallContext& call, int at) {
  ListArgument argument{nullptr, -1};
  argument.list = find_structure(ds_lists(), call, at, "list", argument.handle);
  return argument;
}
MapArgument check_map(const CallContext& call, int at) {
  MapArgument argument{nullptr, -1};
  argument.map = find_structure(ds_maps(), call, at, "map", argument.handle);
  return argument;
}
GridArgument check_grid(const CallContext& call, int at) {
  GridArgument argument{nullptr, -1};
  argument.grid = find_structure(ds_grids(), call, at, "grid", argument.handle);
  return argument;
}

namespace {

std::int32_t list_create() { return ds_lists().create(); }
void list_destroy(ListArgument a) { ds_lists().destroy(a.handle); }
void list_clear(ListArgument a) { a.list->values.clear(); }
std::int32_t list_size(ListArgument a) { return static_cast<std::int32_t>(a.list->values.size()); }
void list_add(ListArgument a, Rest values) {
  for (const RValue& value : values) a.list->values.push_back(value);
}
bool list_has(const DsList& list, std::int32_t at) { return at >= 0 && static_cast<std::size_t>(at) < list.values.size(); }
RValue list_get(ListArgument a, std::int32_t at) { return list_has(*a.list, at) ? a.list->values[static_cast<std::size_t>(at)] : RValue(); }
void list_set(ListArgument a, std::int32_t at, const RValue& value) {
  if (at < 0 || !check_array_length(std::int64_t{at} + 1)) return;
  if (!list_has(*a.list, at)) a.list->values.resize(static_cast<std::size_t>(at) + 1, RValue(0.0));
  a.list->values[static_cast<std::size_t>(at)] = value;
}
void list_insert(ListArgument a, std::int32_t at, const RValue& value) {
  const std::size_t place = std::min(static_cast<std::size_t>(std::max(at, 0)), a.list->values.size());
  a.list->values.insert(a.list->values.begin() + static_cast<std::ptrdiff_t>(place), value);
}
void list_delete(ListArgument a, std::int32_t at) {
  if (list_has(*a.list, at)) a.list->values.erase(a.list->values.begin() + at);
}
std::int32_t list_find(ListArgument a, const RValue& value) {
  for (std::size_t i = 0; i < a.list->values.size(); ++i) {
    if (values_match(a.list->values[i], value)) return static_cast<std::int32_t>(i);
  }
  return -1;
}
void list_shuffle(ListArgument a) {
  for (std::size_t i = a.list->values.size(); i-- > 1;) {
    a.list->values[i].swap(a.list->values[static_cast<std::size_t>(game_random().integer(0, static_cast<std::int64_t>(i)))]);
  }
}
bool exists(std::int32_t handle, std::int32_t kind) {  // ds_type_list 2, ds_type_map 1, ds_type_grid 5
  return kind == 2   ? ds_lists().find(handle) != nullptr
         : kind == 1 ? ds_maps().find(handle) != nullptr
                     : kind == 5 && ds_grids().find(handle) != nullptr;
}

std::int32_t map_create() { return ds_maps().create(); }
void map_destroy(MapArgument a) { ds_maps().destroy(a.handle); }
void map_clear(MapArgument a) { a.map->values.clear(); }
std::int32_t map_size(MapArgument a) { return static_cast<std::int32_t>(a.map->values.size()); }
void map_set(MapArgument a, const RValue& key, const RValue& value) { a.map->values[DsMap::key_of(key)] = value; }
RValue map_get(MapArgument a, const RValue& key) {
  const auto found = a.map->values.find(DsMap::key_of(key));
  return found == a.map->values.end() ? RValue() : found->second;
}
bool map_exists(MapArgument a, const RValue& key) { return a.map->values.contains(DsMap::key_of(key)); }
void map_delete(MapArgument a, const RValue& key) { a.map->values.erase(DsMap::key_of(key)); }
RValue map_first(MapArgument a) { return a.map->values.empty() ? RValue() : DsMap::value_of(a.map->values.begin()->first); }
RValue map_next(MapArgument a, const RValue& key) {
  const auto next = a.map->values.upper_bound(DsMap::key_of(key));
  return next == a.map->values.end() ? RValue() : DsMap::value_of(next->first);
}

std::int32_t grid_create(std::int32_t width, std::int32_t height) {
  const bool fits = width > 0 && height > 0 && check_array_length(std::int64_t{width} * height);
  return ds_grids().create(fits ? width : 0, fits ? height : 0);
}
void grid_destroy(GridArgument a) { ds_grids().destroy(a.handle); }
void grid_clear(GridArgument a, const RValue& value) { a.grid->clear(value); }
std::int32_t grid_width(GridArgument a) { return a.grid->width; }
std::int32_t grid_height(GridArgument a) { return a.grid->height; }
bool grid_check(const DsGrid& grid, std::int32_t column, std::int32_t row) {
  if (grid.has(column, row)) return true;
  const bool across = column < 0 || column >= grid.width;
  report_error(messages::kIndexOutOfBounds, across ? column : row, across ? grid.width : grid.height);
  return false;
}
RValue grid_get(GridArgument a, std::int32_t column, std::int32_t row) {
  return grid_check(*a.grid, column, row) ? a.grid->at(column, row) : RValue();
}
void grid_set(GridArgument a, std::int32_t column, std::int32_t row, const RValue& value) {
  if (!grid_check(*a.grid, column, row)) return;
  clear_owner_token(value);
  a.grid->set(column, row, value);
}
void grid_add(GridArgument a, std::int32_t column, std::int32_t row, double number) {
  if (grid_check(*a.grid, column, row)) a.grid->set(column, row, RValue(to_real(a.grid->at(column, row)) + number));
}

constexpr Implementation kRows[] = {
    implement<script::ds_exists, exists>,
    implement<script::ds_list_create, list_create>,
    implement<script::ds_list_destroy, list_destroy>,
    implement<script::ds_list_clear, list_clear>,
    implement<script::ds_list_size, list_size>,
    implement<script::ds_list_add, list_add>,
    implement<script::ds_list_find_value, list_get>,
    implement<script::ds_list_set, list_set>,
    implement<script::ds_list_insert, list_insert>,
    implement<script::ds_list_delete, list_delete>,
    implement<script::ds_list_find_index, list_find>,
    implement<script::ds_list_shuffle, list_shuffle>,
    implement<script::ds_map_create, map_create>,
    implement<script::ds_map_destroy, map_destroy>,
    implement<script::ds_map_clear, map_clear>,
    implement<script::ds_map_size, map_size>,
    implement<script::ds_map_set, map_set>,
    implement<script::ds_map_find_value, map_get>,
    implement<script::ds_map_exists, map_exists>,
    implement<script::ds_map_delete, map_delete>,
    implement<script::ds_map_find_first, map_first>,
    implement<script::ds_map_find_next, map_next>,
    implement<script::ds_grid_create, grid_create>,
    implement<script::ds_grid_destroy, grid_destroy>,
    implement<script::ds_grid_clear, grid_clear>,
    implement<script::ds_grid_width, grid_width>,
    implement<script::ds_grid_height, grid_height>,
    implement<script::checked::ds_grid_get, grid_get>,
    implement<script::checked::ds_grid_set, grid_set>,
    implement<script::ds_grid_add, grid_add>,
};
const BuiltinTable table("Lists, maps and grids", "By handle: they live until they are destroyed. Places, columns and rows begin at 0.",
                         kRows);

}  // namespace
}  // namespace arena
