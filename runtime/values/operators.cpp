#include "runtime/values/operators.h"

#include <cmath>
#include <utility>

#include "runtime/reports/report.h"
#include "runtime/values/conversions.h"
#include "runtime/values/strings.h"
#include "runtime/values/text.h"

namespace arena {
namespace {

constexpr const char* kOperatorTexts[] = {"+=", "-=", "*=", "/=", "%="};

RValue& type_error(Operator op, RValue& left, const RValue& right) {
  report_error(messages::kOperatorTypes, kOperatorTexts[static_cast<int>(op)], text_for_message(left),
               static_cast<std::int32_t>(left.kind()), text_for_message(right), static_cast<std::int32_t>(right.kind()));
  return left;
}

// A conversion may report; after a suppressed report the left operand must stay as it was.
class FailureWatch {
 public:
  bool failed() const { return error_count() != before_; }

 private:
  std::uint64_t before_ = error_count();
};

RValue& set_real(RValue& left, double number) {
  left.real = number;
  left.flags = 0;
  left.kind_bits = kNumber;
  return left;
}
RValue& set_int32(RValue& left, std::int32_t number) {
  left = RValue::of_int32(number);
  return left;
}
RValue& set_int64(RValue& left, std::int64_t number) {
  left = RValue::of_int64(number);
  return left;
}

double real_result(Operator op, double left, double right) {
  switch (op) {
    case Operator::kAdd: return left + right;
    case Operator::kSubtract: return left - right;
    case Operator::kMultiply: return left * right;
    case Operator::kDivide: return left / right;
    case Operator::kRemainder: return remainder_of(left, right);
  }
  return 0;
}

// Wraps around at the width of the type; INT_MIN / -1 wraps too. The divisor is not zero.
template <class Signed, class Unsigned>
Signed integer_result(Operator op, Signed left, Signed right) {
  const Unsigned a = static_cast<Unsigned>(left), b = static_cast<Unsigned>(right);
  switch (op) {
    case Operator::kAdd: return static_cast<Signed>(a + b);
    case Operator::kSubtract: return static_cast<Signed>(a - b);
    case Operator::kMultiply: return static_cast<Signed>(a * b);
    case Operator::kDivide: return right == -1 ? static_cast<Signed>(0 - a) : static_cast<Signed>(left / right);
    case Operator::kRemainder: return right == -1 ? 0 : static_cast<Signed>(left % right);
  }
  return 0;
}

bool divides(Operator op) { return op == Operator::kDivide || op == Operator::kRemainder; }

bool divisor_is_zero(Operator op, std::int64_t divisor) {
  if (!divides(op) || divisor != 0) return false;
  if (op == Operator::kDivide) {
    report_error(messages::kDivideByZero);
  } else {
    report_error(messages::kModByZero);
  }
  return true;
}

RValue& operate_real(Operator op, RValue& left, double left_number, const RValue& right) {
  // A pointer divides nothing; only under an int32 is that noticed as a failed conversion.
  if (op == Operator::kDivide && right.kind() == kPointer && left.is_numeric()) return type_error(op, left, right);
  const FailureWatch watch;
  const double right_number = to_real(right);
  const double result = watch.failed() ? 0 : real_result(op, left_number, right_number);
  return watch.failed() ? left : set_real(left, result);
}

RValue& operate_int32(Operator op, RValue& left, const RValue& right) {
  const bool is_integer = right.kind() == kInt32 || right.kind() == kInt64;
  if (right.kind() == kNumber || (op == Operator::kDivide && !is_integer)) return operate_real(op, left, left.i32, right);
  if (right.kind() == kInt64) {
    if (divisor_is_zero(op, right.i64)) return left;
    return set_int64(left, integer_result<std::int64_t, std::uint64_t>(op, left.i32, right.i64));
  }
  const FailureWatch watch;
  const std::int32_t number = to_int32(right);
  if (watch.failed() || divisor_is_zero(op, number)) return left;
  return set_int32(left, integer_result<std::int32_t, std::uint32_t>(op, left.i32, number));
}

RValue& operate_int64(Operator op, RValue& left, const RValue& right) {
  const bool is_integer = right.kind() == kInt32 || right.kind() == kInt64;
  if (op == Operator::kDivide && right.kind() == kPointer) return type_error(op, left, right);
  if (right.kind() == kNumber || (op == Operator::kDivide && !is_integer)) {
    return operate_real(op, left, static_cast<double>(left.i64), right);
  }
  const FailureWatch watch;
  const std::int64_t number = to_int64(right);
  if (watch.failed() || divisor_is_zero(op, number)) return left;
  return set_int64(left, integer_result<std::int64_t, std::uint64_t>(op, left.i64, number));
}

RValue& operate_string(Operator op, RValue& left, const RValue& right) {
  if (op == Operator::kAdd) {
    if (!right.is_string()) {
      report_error(messages::kNumberToString);
      return left;
    }
    left = concatenate(left, right);
    return left;
  }
  if (op != Operator::kDivide) return type_error(op, left, right);
  const FailureWatch watch;
  const double quotient_of = to_real(left), divisor = to_real(right);
  if (!watch.failed()) left = RValue(quotient_of / divisor);
  return left;
}

}  // namespace

double remainder_of(double left, double right) {
  if (right == 0) {
    report_error(messages::kModByZero);
    return left;
  }
  return std::fmod(left, right);
}

double round_half_to_even(double number) {
  const double below = std::floor(number), rest = number - below;
  if (rest != 0.5) return rest < 0.5 ? below : below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

RValue& operate(Operator op, RValue& left, const RValue& right) {
  switch (left.kind()) {
    case kNumber:
    case kBool: return operate_real(op, left, left.real, right);
    case kString: return operate_string(op, left, right);
    case kInt32: return operate_int32(op, left, right);
    case kInt64: return operate_int64(op, left, right);
    default: return type_error(op, left, right);
  }
}

RValue negate(const RValue& value) {
  if (value.kind() == kInt32) return RValue::of_int32(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(value.i32)));
  if (value.kind() == kInt64) return RValue::of_int64(static_cast<std::int64_t>(0ull - static_cast<std::uint64_t>(value.i64)));
  return RValue(-to_real(value));
}

}  // namespace arena
