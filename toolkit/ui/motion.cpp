// What moves by itself: tweens of fields, and values bound to variables of instances and structs.
#include "toolkit/support/easing.h"
#include "toolkit/ui/paint.h"
#include "toolkit/ui/widget.h"

namespace game {
namespace {

const Variable field_name{"field"}, from_value{"from"}, to_value{"to"}, seconds{"seconds"}, passed{"passed"}, easing{"easing"},
    when_done{"when_done"};

}  // namespace

void follow_binding(const Value& widget) {
  const RValue* target = optional_field(widget, bind_target);
  const RValue* variable = optional_field(widget, bind_name);
  if (target == nullptr || variable == nullptr || !variable->is_string()) return;
  const RValue* found = peek(Value(RValue(*target)), id_of_variable(text_of(*variable)));
  const RValue* shown = object_of(widget)->find_variable(value.slot);
  if (found == nullptr || (shown != nullptr && values_match(*found, *shown) && found->kind() == shown->kind())) return;
  const bool is_measured = number_or(widget, measures, 0) > 0;
  const std::string before = is_measured ? shown_text(widget) : "";
  widget[value] = Value(RValue(*found));
  if (is_measured && shown_text(widget) != before) mark_dirty(widget);  // a rounded number looks the same from frame to frame
}

void advance_tweens(const Value& widget, double dt) {
  const Value all = array_in(widget, tweens);
  if (is_undefined(all)) return;
  const Value left = array_create(0);
  for (const Value& each : elements(all)) {
    if (!is_plain_struct(each)) continue;
    each[passed] = number_or(each, passed, 0) + dt;
    const double span = number_or(each, seconds, 0), share = span > 0 ? std::min(1.0, number_or(each, passed, 0) / span) : 1;
    const double start = number_or(each, from_value, 0), end = number_or(each, to_value, 0);
    const RValue* const of_field = optional_field(each, field_name);
    const RValue* const curve = optional_field(each, easing);
    if (of_field == nullptr || !of_field->is_string()) continue;
    const double now = share >= 1 ? end : start + (end - start) * ease(curve != nullptr ? text_of(*curve) : "linear", share);
    variable_struct_set(widget, Value(RValue(*of_field)), now);
    if (share < 1)
      array_push(left, each);
    else if (const RValue* handler = optional_field(each, when_done))
      call_guarded(widget, Value(RValue(*handler)), {widget});
  }
  mark_dirty(widget);
  widget[tweens] = array_length(left) > 0 ? left : Value(undefined);
}

}  // namespace game

// Shows a variable of an instance (by id, by reference, or the first of an object type) or of a struct, from frame to frame. While nobody
// is there the last value stays.
STATIC_METHOD(Value, TuiBase, bindVariable, Value target, Value variable) {
  self[bind_target] = target;
  self[bind_name] = string(variable);  // the name, for ids are the program's own and no part of a game
  follow_binding(self);
  return self;
}

// Moves a field of the widget to a number within so many seconds; a second tween of the same field takes over from the first.
STATIC_METHOD(Value, TuiBase, tween, Value of_field, Value to, Value within, Value by, Value done) {
  const Value easing_name = is_undefined(by) ? Value("outQuad") : by;
  if (!easing_name.is_string() || !is_easing(text_of(easing_name))) {
    ui_warning(self, "tween", "there is no easing '" + to_text(easing_name) + "'");
  }
  const Value kept = array_create(0), start = variable_struct_get(self, of_field);
  const Value running = array_in(self, tweens);
  for (const Value& each : elements(running)) {
    const RValue* const moved = optional_field(each, field_name);
    if (moved != nullptr && Value(RValue(*moved)) != of_field) array_push(kept, each);
  }
  array_push(kept, struct_of({{field_name, of_field},
                              {from_value, is_numeric(start) ? start : Value(0)},
                              {to_value, to},
                              {seconds, within},
                              {passed, 0},
                              {easing, easing_name.is_string() ? easing_name : Value("linear")},
                              {when_done, done}}));
  self[tweens] = kept;
  return self;
}
