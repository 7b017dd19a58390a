#pragma once
// Structs and arrays as wholes. Methods and instances are not copied: the copy holds the same ones.
#include "toolkit/names.h"

namespace game {

// A copy down to the last level; what refers to itself does so in the copy.
extern const Script<Value(Value of)> struct_copy_deep;
// Writes the fields of `from` into `into`, structs within structs field by field; everything else is copied over. Gives `into`.
extern const Script<Value(Value into, Value from)> struct_merge;

// What a text is. None of them reports anything, whatever it is given.
extern const Script<bool(Value text)> string_is_empty;                                   // no text, or blanks only
extern const Script<bool(Value text)> string_is_number;                                  // like -12.5 or 1e3
extern const Script<bool(Value text)> string_is_integer;                                 // like -12
extern const Script<bool(Value text)> string_is_email;                                   // something@something.something, without blanks
extern const Script<bool(Value text, Value shortest, Value longest)> string_has_length;  // characters
extern const Script<bool(Value text, Value allowed)> string_has_only;                    // characters of `allowed`

}  // namespace game
