#pragma once
// Stepping, easing, chance and other small helpers that every game object uses. Time is global.dt_steady, seconds of this frame.
#include "toolkit/names.h"

namespace game {

// Towards `to` by at most `amount`; the delta form by at most `amount` a second.
extern const Script<Real(Real from, Real to, Real amount)> Approach;
extern const Script<Real(Real from, Real to, Real amount)> ApproachDelta;
// A share of the way, 1 / amount; the delta form halves the distance every `amount` seconds. Closer than `threshold` (0.01 when left
// out) it snaps.
extern const Script<Real(Real from, Real to, Real amount, Value threshold)> SmoothApproach;
extern const Script<Real(Real from, Real to, Real amount, Value threshold)> SmoothApproachDelta;
// True with probability p; false for what is no number.
extern const Script<bool(Value p)> Chance;
// A sine between two values with a period in seconds; the phase in periods.
extern const Script<Real(Real from, Real to, Real duration, Real offset)> Wave;
// From one range to another, unclamped.
extern const Script<Real(Real value, Real min1, Real max1, Real min2, Real max2)> Range;
extern const Script<Value(Value value, Value length)> StringZeroes;
// The bob of what walks or floats: a sine of `rate` radians a second and `height` pixels.
void bob(Instance self, Real dt, Real rate, Real height);
// Calls `func` every `interval` seconds, at most once a frame. Its counters are variables of the caller, named after `label`.
extern const Script<void(Value label, Value interval, Value func, Value start)> IntervalUpdateFunction;
// In place; what is no array is left alone.
extern const Script<void(Value array)> ArrayShuffle;

}  // namespace game
