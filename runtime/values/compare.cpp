#include "runtime/values/compare.h"

#include <cmath>

#include "runtime/reports/report.h"
#include "runtime/values/conversions.h"
#include "runtime/values/object_base.h"
#include "runtime/values/strings.h"

namespace arena {
namespace {

int sign_of(double difference, double epsilon) {
  if (std::isnan(difference)) return kUnordered;
  if (std::fabs(difference) <= epsilon * kEpsilonSlack) return 0;
  return difference < 0 ? -1 : 1;
}

bool is_integer(const RValue& value) { return value.kind() == kInt32 || value.kind() == kInt64 || value.kind() == kRef; }
bool is_instance_value(const RValue& value) { return value.is_object() && value.object->object_kind == ObjectKind::kInstance; }
bool is_identity(const RValue& value) { return value.kind() == kObject || value.kind() == kPointer; }
std::int64_t integer_of(const RValue& value) { return value.kind() == kInt64 ? value.i64 : value.i32; }

int compare_text(std::string_view left, std::string_view right) {
  const int order = left.compare(right);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

// A real beside an int32 or a ref: single precision on purpose.
int compare_single(double left, double right, double epsilon) {
  const float a = static_cast<float>(left), b = static_cast<float>(right);
  if (std::isinf(a) && a == b) return 0;
  return sign_of(static_cast<double>(a - b), epsilon);
}

int compare_integers(const RValue& left, const RValue& right, double epsilon) {
  if (left.kind() == kRef && right.kind() == kRef) return left.i64 == right.i64 ? 0 : left.i64 < right.i64 ? -1 : 1;
  const std::int64_t a = integer_of(left), b = integer_of(right);
  if (a == b) return 0;
  const std::uint64_t distance =
      a < b ? static_cast<std::uint64_t>(b) - static_cast<std::uint64_t>(a) : static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b);
  if (static_cast<double>(distance) <= epsilon * kEpsilonSlack) return 0;
  return a < b ? -1 : 1;
}

int compare_string(const RValue& text, const RValue& number, double epsilon) {
  return compare_reals(to_real(text), to_real(number), epsilon);
}

int reversed(int order) { return order == kUnordered ? order : -order; }

}  // namespace

int compare_reals(double left, double right, double epsilon) {
  double difference = left - right;
  if (std::isnan(difference) && std::isinf(left) && std::isinf(right)) difference = 0;
  return sign_of(difference, epsilon);
}

int compare(const RValue& left, const RValue& right, double epsilon, bool strict) {
  if (left.is_numeric() && right.is_numeric()) return compare_reals(left.real, right.real, epsilon);
  if (left.is_unset() || right.is_unset()) {
    report_error(messages::kCompareUnset);
    return kUnordered;
  }
  if (left.is_undefined() || right.is_undefined()) return left.is_undefined() && right.is_undefined() ? 0 : kUnordered;
  if (left.is_array() || right.is_array()) {
    if (strict) report_error(messages::kIllegalArrayUse);
    return 1;
  }
  if (is_identity(left) && is_identity(right)) return left.pointer == right.pointer ? 0 : 1;
  if (left.is_string() && right.is_string()) return compare_text(text_of(left), text_of(right));
  const bool left_counts = left.is_numeric() || is_integer(left), right_counts = right.is_numeric() || is_integer(right);
  if (left.is_string() && right_counts) return compare_string(left, right, epsilon);
  if (right.is_string() && left_counts) return reversed(compare_string(right, left, epsilon));
  if (left_counts && right_counts) {
    if (is_integer(left) && is_integer(right)) return compare_integers(left, right, epsilon);
    const RValue& whole = is_integer(left) ? left : right;
    if (whole.kind() == kInt64) return compare_reals(to_real(left), to_real(right), epsilon);
    return compare_single(to_real(left), to_real(right), epsilon);
  }
  // An instance stands for its id, so that it equals the number that names it.
  if (left.kind() == kObject && right_counts && is_instance_value(left)) return compare_reals(to_real(left), to_real(right), epsilon);
  if (right.kind() == kObject && left_counts && is_instance_value(right)) return compare_reals(to_real(left), to_real(right), epsilon);
  return left.kind() == right.kind() && left.i64 == right.i64 ? 0 : kUnordered;
}

bool values_match(const RValue& left, const RValue& right) {
  if (left.is_string() != right.is_string()) return false;
  if (left.is_unset() || right.is_unset()) return left.is_unset() && right.is_unset();
  return values_equal(left, right);
}

}  // namespace arena
