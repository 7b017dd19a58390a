#include "toolkit/support/motion.h"

namespace game {
namespace {
constexpr Real kSnapDistance = 0.01;  // closer than this an approach arrives
constexpr Real kFullTurn = 6.283185307179586;

// The built-in functions for values that may be no numbers: their arguments are checked as those of any script's call.
Value abs(const Value& number) { return checked::abs(number); }
Value clamp(const Value& number, const Value& low, const Value& high) { return checked::clamp(number, low, high); }
Value lerp(const Value& from, const Value& to, const Value& amount) { return checked::lerp(from, to, amount); }
Value power(Real base, const Value& exponent) { return checked::power(base, exponent); }
Value sin(const Value& angle) { return checked::sin(angle); }

Value snap_distance(const Value& threshold) { return is_undefined(threshold) ? Value(kSnapDistance) : threshold; }
}  // namespace

void bob(Instance self, Real dt, Real rate, Real height) {
  self[bob_timer] += dt * rate;
  self[image_y_offset] = arena::script::sin(self[bob_timer]) * height;
}
}  // namespace game

// One operation a statement, so that whatever fails first is what the script's own order would have met.
NUMBER_SCRIPT(Approach, Number from, Number to, Number amount) {
  const Number distance = to - from, back = -amount;
  return from + clamp(distance, back, amount);
}

NUMBER_SCRIPT(ApproachDelta, Number from, Number to, Number amount) {
  const Number distance = to - from, step = amount * global[dt_steady], back = -step;
  return from + clamp(distance, back, step);
}

// An unordered distance (NaN) goes on approaching rather than snapping.
NUMBER_SCRIPT(SmoothApproach, Number from, Number to, Number amount, Value threshold) {
  if (Value(abs(to - from)) < snap_distance(threshold)) return to;
  return lerp(from, to, 1 / amount);
}

NUMBER_SCRIPT(SmoothApproachDelta, Number from, Number to, Number amount, Value threshold) {
  if (Value(abs(to - from)) < snap_distance(threshold)) return to;
  const Number halvings = (1 / amount) * global[dt_steady];
  return lerp(to, from, power(0.5, halvings));
}

SCRIPT(Chance, Value p) { return p > Value(random(1)); }

NUMBER_SCRIPT(Wave, Number from, Number to, Number duration, Number offset) {
  const Number half = (to - from) * 0.5, phase = duration * offset;
  const Number turned = kFullTurn * (current_time * 0.001 + phase) / duration;
  const Number middle = from + half;
  return middle + half * sin(turned);
}

NUMBER_SCRIPT(Range, Number value, Number min1, Number max1, Number min2, Number max2) {
  const Number along = value - min1, span = max1 - min1, share = along / span, stretch = max2 - min2;
  return share * stretch + min2;
}

SCRIPT(StringZeroes, Value value, Value length) {
  const Value text = string(value);
  return string_repeat("0", checked::max(0, length - string_length(text))) + text;
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
