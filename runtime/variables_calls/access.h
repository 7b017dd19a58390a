#pragma once
// Reading and writing variables by id, with the reports of what is missing, unset, read-only or out of range.
#include <cstdint>

#include "runtime/arrays_structs/object.h"

namespace arena {

class CInstance;

// Targets that are no instance ids.
inline constexpr std::int32_t kSelfTarget = -1, kOtherTarget = -2, kAllTarget = -3, kNooneTarget = -4, kGlobalTarget = -5;

// `target` names the object: an object value, or a number that is an instance id or an object index. `index` picks an element of the
// array that the variable holds; kNoIndex means the whole variable. False after a suppressed report.
bool var_get(const RValue& target, std::int32_t id, std::int32_t index, RValue& out);
bool var_set(const RValue& target, std::int32_t id, std::int32_t index, const RValue& value);

// False with a report for a variable of an object that scripts may not write.
bool check_writable(WBObjectBase* object, std::int32_t id);

// Built-in variables, of `self` where they belong to an instance.
bool builtin_var_get(WBObjectBase* self, std::int32_t builtin, std::int32_t index, RValue& out);
bool builtin_var_set(WBObjectBase* self, std::int32_t builtin, std::int32_t index, const RValue& value);

// The object that a value names, or null without a report. Numbers resolve through the instances.
WBObjectBase* resolve_object(const RValue& target);
// The same for what must be there: reports when nothing is found.
WBObjectBase* require_object(const RValue& target);
// The object of a kind-6 value for reading a member; a string reports that it is no struct, numbers resolve to instances.
PropertyObject* require_properties(const RValue& target);

// One variable of a known object, for the inlined access of compiled code: the slow path, which finds out what to report.
const RValue* read_variable_slow(WBObjectBase* object, std::int32_t id);
void write_variable(WBObjectBase* object, std::int32_t id, const RValue& value);

}  // namespace arena
