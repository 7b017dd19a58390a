#include "runtime/values/conversions.h"

#include <algorithm>
#include <string>

#include "runtime/reports/report.h"
#include "runtime/values/number_text.h"
#include "runtime/values/object_base.h"
#include "runtime/values/strings.h"

namespace arena {
namespace {

bool has_text(const RValue& value) { return value.string != nullptr && value.string->text != nullptr; }

bool is_instance(const RValue& value) { return value.is_object() && value.object->object_kind == ObjectKind::kInstance; }

std::int32_t kind_number(const RValue& value) { return static_cast<std::int32_t>(value.kind()); }

}  // namespace

double to_real_slow(const RValue& value) {
  switch (value.kind()) {
    case kNumber:
    case kBool: return value.real;
    case kString:
      if (!has_text(value)) return 0;
      if (const auto number = parse_real(text_of(value))) return *number;
      report_error(messages::kNotANumberText, text_of(value));
      return 0;
    case kInt32:
    case kRef: return value.i32;
    case kInt64: return static_cast<double>(value.i64);
    case kUnset: report_error(messages::kRealUnset); return 0;
    default:
      if (is_instance(value)) return value.object->as_number();
      report_error(messages::kRealWrongType, type_name(value));
      return 0;
  }
}

std::int32_t to_int32(const RValue& value) {
  switch (value.kind()) {
    case kNumber:
    case kBool: return saturate_int32(value.real);
    case kString:
      if (!has_text(value)) return 0;
      if (const auto number = parse_integer(text_of(value)))
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(*number, INT32_MIN, INT32_MAX));
      report_error(messages::kNotAnIntegerText, text_of(value));
      return 0;
    case kArray: report_error(messages::kInt32Array); return 0;
    case kUndefined: report_error(messages::kInt32Undefined); return 0;
    case kInt32:
    case kRef:
    case kInt64:
    case kPointer: return value.i32;
    case kUnset: report_error(messages::kInt32Unset); return 0;
    default:
      if (is_instance(value)) return value.object->as_number();
      report_error(messages::kInt32WrongType, kind_number(value));
      return 0;
  }
}

std::int64_t to_int64(const RValue& value) {
  switch (value.kind()) {
    case kNumber:
    case kBool: return saturate_int64(value.real);
    case kString:
      if (!has_text(value)) return 0;
      if (const auto number = parse_integer(text_of(value))) return *number;
      report_error(messages::kNotAnInt64Text, text_of(value));
      return 0;
    case kArray: report_error(messages::kInt64Array); return 0;
    case kUndefined: report_error(messages::kInt64Undefined); return 0;
    case kInt32:
    case kRef: return value.i32;
    case kInt64:
    case kPointer: return value.i64;
    case kUnset: report_error(messages::kInt64Unset); return 0;
    default:
      if (is_instance(value)) return value.object->as_number();
      report_error(messages::kInt64WrongType, kind_number(value));
      return 0;
  }
}

bool to_bool_slow(const RValue& value) {
  switch (value.kind()) {
    case kNumber:
    case kBool: return value.real > 0.5;
    case kString:
      if (!has_text(value)) return false;
      if (const auto truth = parse_bool(text_of(value))) return *truth;
      report_error(messages::kNotABoolText, text_of(value));
      return false;
    case kArray: report_error(messages::kBoolArray); return false;
    case kUndefined: return false;
    case kObject: return value.object != nullptr;
    case kInt32:
    case kRef: return value.i32 > 0;
    case kInt64: return value.i64 > 0;
    case kPointer: return value.pointer != nullptr;
    case kUnset: report_error(messages::kBoolUnset); return false;
    default: report_error(messages::kBoolWrongType, kind_number(value)); return false;
  }
}

void* to_pointer(const RValue& value) {
  switch (value.kind()) {
    case kPointer: return value.pointer;
    case kUndefined: report_error(messages::kPointerUndefined); return nullptr;
    case kUnset: report_error(messages::kPointerUnset); return nullptr;
    default: report_error(messages::kPointerWrongType, kind_number(value)); return nullptr;
  }
}

}  // namespace arena
