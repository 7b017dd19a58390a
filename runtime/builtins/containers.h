#pragma once
// Lists, maps and grids, by handle. They live until they are destroyed; a stale or foreign handle is reported. Places, columns and rows
// begin at 0.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(ds_exists, Flag(Whole, In<Whole, 1, 5>), "handle, kind", "Whether there is such a map (kind 1), list (2) or grid (5).");

BUILTIN(ds_grid_add, void(GridHandle, Whole, Whole, Number), "grid, column, row, number", "Adds to a cell.");
BUILTIN(ds_grid_clear, void(GridHandle, Any), "grid, value", "Writes a value into every cell.");
BUILTIN(ds_grid_create, GridNumber(Whole, Whole), "width, height", "Makes a grid full of zeroes.");
BUILTIN(ds_grid_destroy, void(GridHandle), "grid", "Ends a grid.");
BUILTIN(ds_grid_height, Whole(GridHandle), "grid", "How many rows there are.");
BUILTIN(ds_grid_width, Whole(GridHandle), "grid", "How many columns there are.");

BUILTIN(ds_list_add, void(List, Rest<Any>), "list, values", "Appends values.");
BUILTIN(ds_list_clear, void(List), "list", "Takes all out.");
BUILTIN(ds_list_create, ListNumber(), "", "Makes an empty list.");
BUILTIN(ds_list_delete, void(List, Whole), "list, at", "Takes the value at a place out.");
BUILTIN(ds_list_destroy, void(List), "list", "Ends a list.");
BUILTIN(ds_list_find_index, Whole(List, Any), "list, value", "Where the value first stands; -1 when it does not.");
BUILTIN(ds_list_find_value, Any(List, Whole), "list, at", "The value at a place; undefined when there is none.");
BUILTIN(ds_list_insert, void(List, Whole, Any), "list, at, value", "Puts a value in before a place.");
BUILTIN(ds_list_set, void(List, Whole, Any), "list, at, value", "Writes the value at a place; past the end the list grows by zeroes.");
BUILTIN(ds_list_shuffle, void(List), "list", "Puts the values into an order of chance.");
BUILTIN(ds_list_size, Whole(List), "list", "How many values there are.");

BUILTIN(ds_map_clear, void(Map), "map", "Takes all out.");
BUILTIN(ds_map_create, MapNumber(), "", "Makes an empty map.");
BUILTIN(ds_map_delete, void(Map, Any), "map, key", "Takes a key and its value out.");
BUILTIN(ds_map_destroy, void(Map), "map", "Ends a map.");
BUILTIN(ds_map_exists, Flag(Map, Any), "map, key", "Whether the map has the key.");
BUILTIN(ds_map_find_first, Any(Map), "map", "The first key in their order; undefined of none.");
BUILTIN(ds_map_find_next, Any(Map, Any), "map, key", "The key after another; undefined after the last.");
BUILTIN(ds_map_find_value, Any(Map, Any), "map, key", "The key's value; undefined when there is none.");
BUILTIN(ds_map_set, void(Map, Any, Any), "map, key, value", "Writes a key's value.");
BUILTIN(ds_map_size, Whole(Map), "map", "How many keys there are.");

namespace checked {

BUILTIN(ds_grid_get, Any(GridHandle, Whole, Whole), "grid, column, row", "What a cell holds.");
BUILTIN(ds_grid_set, void(GridHandle, Whole, Whole, Any), "grid, column, row, value", "Writes a cell.");

}  // namespace checked
}  // namespace arena::script
