#include "toolkit/support/particles.h"

#include "runtime/script/native.h"

namespace game {
namespace {

const Variable handle{"handle"}, emitters{"emitters"}, type{"type"}, rate{"rate"}, shape{"shape"}, active{"active"}, pending{"pending"};
const Variable x1{"x1"}, y1{"y1"}, x2{"x2"}, y2{"y2"}, trail_type{"trail_type"}, end_type{"end_type"}, system_of{"system"};
const Variable burst{"burst"}, burstShape{"burstShape"}, update{"update"}, draw{"draw"}, clear{"clear"}, count{"count"}, destroy{"destroy"},
    set{"set"}, stop{"stop"};

// The number of a type, given itself or its number.
Value number_of(const Value& given) { return given.is_object() ? Value(given[handle]) : given; }

}  // namespace
}  // namespace game

CONSTRUCTOR(advanced_part_type, Value fields) {
  self[handle] = part_type_create();
  if (!is_undefined(fields)) self[set](fields);
}
// Changes what the description names; other types may be given as they are.
STATIC_METHOD(Value, advanced_part_type, set, Value fields) {
  const Value copy = struct_of({}), names = variable_struct_get_names(fields);
  for (const Value& each : elements(names)) {
    const Value field = variable_struct_get(fields, each);
    const bool is_type = each == "trail_type" || each == "end_type";
    variable_struct_set(copy, each, is_type ? number_of(field) : field);
  }
  part_type_set(self[handle], copy);
  return self;
}

CONSTRUCTOR(advanced_part_system) {
  self[handle] = part_system_create();
  self[emitters] = array_create(0);
}
STATIC_METHOD(Value, advanced_part_system, burst, Value of_type, Value amount, Value at_x, Value at_y) {
  part_emit(self[handle], number_of(of_type), amount, particles::kPoint, at_x, at_y, at_x, at_y);
  return self;
}
STATIC_METHOD(Value, advanced_part_system, burstShape, Value of_type, Value amount, Value in_shape, Value left, Value top, Value right,
              Value bottom) {
  part_emit(self[handle], number_of(of_type), amount, in_shape, left, top, right, bottom);
  return self;
}
// Streams, then moves everything by the frame's time.
STATIC_METHOD(Value, advanced_part_system, update) {
  const Real dt = global[dt_steady];
  const Value all = self[emitters];
  for (const Value& each : elements(all)) {
    if (!each[active]) continue;
    const Real per_second = each[rate];
    each[pending] += per_second * dt;
    const Real due = floor(each[pending]);
    if (due < 1) continue;
    each[pending] -= due;
    part_emit(self[handle], number_of(each[type]), due, each[shape], each[x1], each[y1], each[x2], each[y2]);
  }
  part_system_update(self[handle], dt);
  return self;
}
STATIC_METHOD(Value, advanced_part_system, draw) {
  part_system_draw(self[handle]);
  return self;
}
STATIC_METHOD(Value, advanced_part_system, clear) {
  part_system_clear(self[handle]);
  return self;
}
STATIC_METHOD(Value, advanced_part_system, count) { return part_system_count(self[handle]); }
STATIC_METHOD(void, advanced_part_system, destroy) {
  part_system_destroy(self[handle]);
  self[emitters] = array_create(0);
}

CONSTRUCTOR(advanced_part_emitter, Value system, Value settings) {
  self[rate] = 10;
  self[shape] = particles::kPoint;
  self[x1] = 0;
  self[y1] = 0;
  self[x2] = 0;
  self[y2] = 0;
  self[active] = true;
  self[pending] = 0;
  self[system_of] = system;
  const Value names = variable_struct_get_names(settings);
  for (const Value& each : elements(names)) variable_struct_set(self, each, variable_struct_get(settings, each));
  array_push(system[emitters], self);
}
STATIC_METHOD(Value, advanced_part_emitter, stop) {
  self[active] = false;
  return self;
}
