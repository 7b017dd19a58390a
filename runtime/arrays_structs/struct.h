#pragma once
// Structs as scripts see them: property bags read and written by name or id, with the reports of missing and forbidden ones.
#include <string_view>

#include "runtime/arrays_structs/object.h"

namespace arena {

RValue make_struct();

// A property for reading; a missing one reports "Unable to get property" and gives undefined.
RValue struct_get(PropertyObject* object, std::int32_t id);
// Writes through the collector's barrier. Reports when the object takes no writes.
void struct_set(PropertyObject* object, std::int32_t id, const RValue& value);
// By name, with the rules for names.
void struct_set_named(PropertyObject* object, std::string_view name, const RValue& value);
// From here on scripts can read the struct, and the structs and arrays in it, but change none of them: what services hand out. An array
// that somebody else holds, too, is copied first and stays theirs to write. Instances and methods are left as they are.
void freeze(PropertyObject& object);
// Fields added in a row of a known object: no checks of names or of read-only objects.
void store_variable(PropertyObject* object, std::int32_t id, const RValue& value);

}  // namespace arena
