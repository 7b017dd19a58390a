#include "game/support/motion.h"

namespace arena::game {
namespace {
const Builtin string_length{"string_length"};
const Builtin string_repeat{"string_repeat"};
constexpr Real kSnapDistance = 0.01;  // closer than this an approach arrives
constexpr Real kFullTurn = 6.283185307179586;
}  // namespace

void bob(Instance self, Real dt, Real rate, Real height) {
  self[bob_timer] += dt * rate;
  self[image_y_offset] = sin(self[bob_timer]) * height;
}
}  // namespace arena::game

SCRIPT(Approach, Real from, Real to, Real amount) { return from + clamp(to - from, -amount, amount); }

SCRIPT(ApproachDelta, Real from, Real to, Real amount) {
  const Real step = amount * global[dt_steady];
  return from + clamp(to - from, -step, step);
}

// An unordered distance (NaN) goes on approaching rather than snapping.
SCRIPT(SmoothApproach, Real from, Real to, Real amount, Value threshold) {
  const Value snap = is_undefined(threshold) ? Value(kSnapDistance) : threshold;
  if (Value(abs(to - from)) < snap) return to;
  return lerp(from, to, 1 / amount);
}

SCRIPT(SmoothApproachDelta, Real from, Real to, Real amount, Value threshold) {
  const Value snap = is_undefined(threshold) ? Value(kSnapDistance) : threshold;
  if (Value(abs(to - from)) < snap) return to;
  const Real left = power(0.5, (1 / amount) * global[dt_steady]);
  return lerp(to, from, left);
}

SCRIPT(Chance, Value p) { return p > Value(random(1)); }

SCRIPT(Wave, Real from, Real to, Real duration, Real offset) {
  const Real half = (to - from) * 0.5;
  return from + half + half * sin(kFullTurn * (current_time * 0.001 + duration * offset) / duration);
}

SCRIPT(Range, Real value, Real min1, Real max1, Real min2, Real max2) { return (value - min1) / (max1 - min1) * (max2 - min2) + min2; }

SCRIPT(StringZeroes, Value value, Real length) {
  const Value text = string(value);
  return string_repeat("0", max(0, length - Real(string_length(text)))) + text;
}

// The names of the counters, the second one's spelling included, are read by other code.
SCRIPT(IntervalUpdateFunction, Value label, Value interval, Value func, Value start) {
  const Value counter = label + "_interval";
  const Value length = label + "_interval_lenght";
  if (!variable_instance_exists(self, counter)) variable_instance_set(self, counter, is_undefined(start) ? Value(0) : start);
  if (!variable_instance_exists(self, length)) variable_instance_set(self, length, interval);
  const Value elapsed = variable_instance_get(self, counter) + global[dt_steady];
  const Value period = variable_instance_get(self, length);
  if (elapsed >= period) {
    variable_instance_set(self, counter, elapsed - period);
    func();
  } else {
    variable_instance_set(self, counter, elapsed);
  }
}

SCRIPT(ArrayShuffle, Value array) {
  const Real count = array_length(array);
  for (Real i = 0; i < count; i += 1) {
    const Real j = irandom_range(i, count - 1);
    if (j != i) array_swap(array, i, j);
  }
}
