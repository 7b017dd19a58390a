#pragma once
// Scripts that fail on a known line, and one that notes the error it is told.
#include "runtime/script.h"

namespace arena::game {

extern const Script<Value()> fail_in_builtin, fail_in_argument, fail_in_object, fail_in_array;
extern const Script<Value(Value)> note_exception;
extern const int kBuiltinLine, kArgumentLine, kObjectLine, kArrayLine;

}  // namespace arena::game
