#pragma once
// Kinds of values: questions and conversions.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN_NAMED(bool_of, "bool", Flag(Any), "value", "Whether the value counts as true: a number above 0.5.");
BUILTIN(is_bool, Flag(Any), "value", "Whether the value is true or false.");
BUILTIN(is_infinity, Flag(Any), "value", "Whether the value is an infinite number, of either sign.");
BUILTIN(is_int32, Flag(Any), "value", "Whether the value is a 32-bit whole number.");
BUILTIN(is_int64, Flag(Any), "value", "Whether the value is a 64-bit whole number.");
BUILTIN(is_method, Flag(Any), "value", "Whether the value is a method.");
BUILTIN(is_nan, Flag(Any), "value", "Whether the value is no number any more: NaN.");
BUILTIN(is_ptr, Flag(Any), "value", "Whether the value is a pointer.");
BUILTIN(is_real, Flag(Any), "value", "Whether the value is a plain number.");
BUILTIN(is_string, Flag(Any), "value", "Whether the value is a text.");
BUILTIN(is_struct, Flag(Any), "value", "Whether the value is a struct.");
BUILTIN(number_sum, Any(AnyNumber, AnyNumber), "left, right", "The sum of two numbers, of the kind that the operator gives.");
BUILTIN(ptr, Pointer(AnyNumberOrPointer), "value", "The value as a pointer.");
BUILTIN(ptr_address, Int64(Pointer), "pointer", "The address that the pointer holds.");
BUILTIN(real, Number(Any), "value", "The value as a plain number.");
BUILTIN_NAMED(type_of, "typeof", Text(Any), "value", "The name of the value's kind.");

namespace checked {

BUILTIN(int64, Int64(AnyNumberOrPointer), "value", "The value as a 64-bit whole number.");
BUILTIN(is_array, Flag(Any), "value", "Whether the value is an array.");
BUILTIN(is_numeric, Flag(Any), "value", "Whether the value is a number of any kind.");
BUILTIN(is_undefined, Flag(Any), "value", "Whether the value is undefined.");

}  // namespace checked
}  // namespace arena::script
