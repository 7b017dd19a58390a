#pragma once
// Comparison with the script's tolerance. Sorting, keys and depths do not use it: a tolerant order is no order.
#include "runtime/session/session.h"
#include "runtime/values/value.h"

namespace arena {

// Exact order of numbers for sorting, NaN after all others.
inline bool sorts_before(double left, double right) { return left < right || (left == left && right != right); }

inline constexpr int kUnordered = -2;

// The tolerance of every script comparison. A difference counts as at most the tolerance up to one part in 10^9 above it:
// 1 == 1.00001 must hold in doubles.
inline constexpr double kEpsilonSlack = 1.0 + 1e-9;
inline double comparison_epsilon() { return session().comparison_epsilon; }
inline double tolerance() { return session().comparison_tolerance; }
inline void set_comparison_epsilon(double epsilon) {
  session().comparison_epsilon = epsilon;
  session().comparison_tolerance = epsilon * kEpsilonSlack;
}

// -1, 0, 1, or kUnordered. `strict` makes an array operand an error.
int compare(const RValue& left, const RValue& right, double epsilon, bool strict);
int compare_reals(double left, double right, double epsilon);

inline int compare(const RValue& left, const RValue& right) { return compare(left, right, comparison_epsilon(), false); }
// For searches: as values_equal, but a text and what is no text are simply different, and nothing is reported.
bool values_match(const RValue& left, const RValue& right);
inline bool values_equal(const RValue& left, const RValue& right) { return compare(left, right) == 0; }

}  // namespace arena
