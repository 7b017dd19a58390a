#pragma once
// The in-place operators that compiled code calls where the kinds of the operands are not known: each updates `left` and returns it.
// A failed operator reports and leaves `left` as it was.
#include "runtime/values/value.h"

namespace arena {

enum class Operator : std::uint8_t { kAdd, kSubtract, kMultiply, kDivide, kRemainder };

RValue& operate(Operator op, RValue& left, const RValue& right);

inline RValue& op_add(RValue& left, const RValue& right) {
  if (left.kind_bits == kNumber && right.kind_bits == kNumber) {
    left.real += right.real;
    return left;
  }
  return operate(Operator::kAdd, left, right);
}
inline RValue& op_subtract(RValue& left, const RValue& right) {
  if (left.kind_bits == kNumber && right.kind_bits == kNumber) {
    left.real -= right.real;
    return left;
  }
  return operate(Operator::kSubtract, left, right);
}
inline RValue& op_multiply(RValue& left, const RValue& right) {
  if (left.kind_bits == kNumber && right.kind_bits == kNumber) {
    left.real *= right.real;
    return left;
  }
  return operate(Operator::kMultiply, left, right);
}
inline RValue& op_divide(RValue& left, const RValue& right) {
  if (left.kind_bits == kNumber && right.kind_bits == kNumber) {
    left.real /= right.real;
    return left;
  }
  return operate(Operator::kDivide, left, right);
}
inline RValue& op_remainder(RValue& left, const RValue& right) { return operate(Operator::kRemainder, left, right); }

// The remainder of two reals as the operator computes it; a zero divisor reports.
double remainder_of(double left, double right);
// The nearest whole number, halves to the even one.
double round_half_to_even(double number);
// The value's negative: number kinds keep their kind, others convert to a number.
RValue negate(const RValue& value);

}  // namespace arena
