#pragma once
// Scripts that tests call: some fail on a known line, one notes the error it is told, some are handed to built-in functions.
#include "runtime/script.h"

namespace game {

extern const Script<Value()> fail_in_builtin, fail_in_argument, fail_in_object, fail_in_array;
extern const Script<Value(Value)> note_exception;
extern const Script<Value(Value, Value)> ui_note, ui_note_name, ui_note_value;
extern const Script<Real()> one_die;
extern const Script<Real(Real)> twice;
extern const Script<Real(Real, Real)> by_difference;
extern const Script<Value(Value, Value)> by_first, shorten_the_list, fail_to_compare;
extern const Script<Value()> call_itself, call_by_number, make_a_probe;
extern const Script<Value(Value, Value)> walk_again;
extern const Constructor MakesItself;
extern const int kBuiltinLine, kArgumentLine, kObjectLine, kArrayLine;

}  // namespace game
