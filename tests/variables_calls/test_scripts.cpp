#include "tests/variables_calls/test_scripts.h"

namespace game {
namespace {
const Variable counter{"counter"}, noted{"noted"}, noted_text{"noted_text"};
constexpr ObjectName oNobody{3};
}  // namespace
extern const Script<Value(Real)> takes_a_number;
// The functions of C, which differ from machine to machine, are out of reach of scripts, whatever is handed to them.
template <class... Types>
constexpr bool kAreReal = (std::is_same_v<Types, Real> && ...);
static_assert(kAreReal<decltype(sin(0.5)), decltype(cos(0.5)), decltype(tan(0.5)), decltype(exp(0.5))>);
static_assert(kAreReal<decltype(sqrt(2.0)), decltype(abs(-1)), decltype(floor(0.5)), decltype(ceil(0.5))>);
static_assert(kAreReal<decltype(random(2))>);
const int kBuiltinLine = 23, kArgumentLine = 31, kObjectLine = 38, kArrayLine = 44;
}  // namespace game

SCRIPT(takes_a_number, Real number) { return number; }

SCRIPT(fail_in_builtin) {
  global[counter] = 0;

  string_length(5);
  global[counter] = 1;
  return undefined;
}

SCRIPT(fail_in_argument) {
  global[counter] = 0;

  takes_a_number("five");
  return undefined;
}

SCRIPT(fail_in_object) {
  global[counter] = 0;

  return Real(oNobody[x]);
}

SCRIPT(fail_in_array) {
  global[counter] = 0;

  array_push(5, 1);
  return undefined;
}

SCRIPT(note_exception, Value error) {
  global[noted] = error;
  global[noted_text] = string(error);
  return undefined;
}

SCRIPT(one_die) { return irandom(6); }
SCRIPT(twice, Real number) { return number * 2; }
SCRIPT(by_difference, Real a, Real b) { return a - b; }
namespace game {
namespace {
const Variable list{"list"};
}  // namespace
}  // namespace game

SCRIPT(by_first, Value a, Value b) { return a[0] - b[0]; }
SCRIPT(shorten_the_list, Value a, Value b) {
  array_resize(global[list], 0);
  return a - b;
}
SCRIPT(fail_to_compare, Value a, Value) { return "text" + a; }

// Each without an end.
SCRIPT(call_itself) { return call_itself(); }
SCRIPT(call_by_number) { return script_execute(call_by_number); }
SCRIPT(walk_again, Value, Value) {
  array_foreach(array_of(1, 2), walk_again);
  return undefined;
}
SCRIPT(make_a_probe) {
  instance_create_depth(0, 0, 0, 22);
  return undefined;
}
CONSTRUCTOR(MakesItself) { self[noted] = MakesItself.make(); }

namespace game {
namespace {
const Variable seen{"seen"}, value_field{"value"}, name_field{"name"};
}
}  // namespace game

SCRIPT(ui_note, Value widget, Value) {
  array_push(global[seen], widget);
  return undefined;
}
SCRIPT(ui_note_name, Value widget, Value) {
  array_push(global[seen], Value(widget[name_field]));
  return undefined;
}
SCRIPT(ui_note_value, Value widget, Value) {
  array_push(global[seen], Value(widget[value_field]));
  return undefined;
}
