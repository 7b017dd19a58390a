#pragma once
// Arrays. Functions that change an array change the one they were given, whoever else holds it. Indices begin at 0.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(array_concat, Array(Rest<Any>), "arrays", "A new array of all elements of the arrays.");
BUILTIN(array_contains, Flag(Array, Any), "source, value", "Whether an element equals the value.");
BUILTIN(array_delete, void(ChangedArray, Whole, Whole), "target, at, count",
        "Takes out so many elements; a place below 0 counts from the end.");
BUILTIN(array_equals, Flag(Array, Array), "a, b", "Whether both have equal elements in the same order.");
BUILTIN(array_filter, Array(Array, Function), "source, function",
        "A new array of the elements for which function(element, index) is true.");
BUILTIN(array_foreach, void(Array, Function), "source, function", "Calls function(element, index) for each element.");
BUILTIN(array_get, Any(Array, Whole), "source, at", "The element at a place, which must exist.");
BUILTIN(array_get_index, Whole(Array, Any), "source, value", "Where the first element stands that equals the value; -1 when none does.");
BUILTIN(array_insert, void(ChangedArray, Whole, Rest<Any>), "target, at, values",
        "Puts values in; a place below 0 counts from the end, one past it leaves zeroes between.");
BUILTIN(array_map, Array(Array, Function), "source, function", "A new array of what function(element, index) gives.");
BUILTIN(array_pop, Any(ChangedArray), "target", "Takes the last element off and gives it; undefined of none.");
BUILTIN(array_resize, void(ChangedArray, Whole), "target, length", "Cuts the array, or makes it longer by zeroes.");
BUILTIN(array_reverse, void(ChangedArray), "target", "Turns the order of the elements round.");
BUILTIN(array_set, void(ChangedArray, Whole, Any), "target, at, value", "Writes an element; a place past the end makes the array longer.");
BUILTIN(array_shuffle, void(ChangedArray), "target", "Puts the elements into an order of chance.");
BUILTIN(
    array_sort, void(ChangedArray, Optional<Any>), "target, order",
    "Orders the elements, equal ones as they were: ascending by true, descending by false, or by function(a, b) that gives below, above or "
    "exactly 0.");

namespace checked {

BUILTIN(array_copy, void(ChangedArray, Whole, Array, Whole, Whole), "target, to, source, from, count",
        "Writes so many elements of one array over those of another, which grows as needed.");
BUILTIN(array_create, Array(Whole, Optional<Any>), "length, fill", "A new array full of a value, or of 0.");
BUILTIN(array_length, Whole(Any), "value", "How many elements the array has; 0 of what is no array.");
BUILTIN(array_push, void(ChangedArray, Rest<Any>), "target, values", "Appends values.");

}  // namespace checked
}  // namespace arena::script
