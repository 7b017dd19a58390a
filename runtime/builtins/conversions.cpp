// Kinds of values: questions and conversions.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/conversions.h"

#include <cmath>

#include "runtime/builtins/implement.h"
#include "runtime/values/operators.h"

namespace arena {
namespace {

double to_real_value(const RValue& value) { return to_real(value); }
std::string type_of(const RValue& value) { return type_name(value); }
RValue to_int64_value(NumberOrPointer value) { return RValue::of_int64(to_int64(value.value)); }
RValue to_pointer_value(NumberOrPointer value) {
  return RValue::of_pointer(reinterpret_cast<void*>(static_cast<std::intptr_t>(to_int64(value.value))));
}
RValue pointer_address(PointerArgument pointer) {
  return RValue::of_int64(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(pointer.pointer)));
}
bool to_bool_value(const RValue& value) { return to_bool(value); }
bool is_real(const RValue& value) { return value.kind() == kNumber; }
bool is_numeric(const RValue& value) { return value.is_numeric() || value.kind() == kInt32 || value.kind() == kInt64; }
bool is_string(const RValue& value) { return value.is_string(); }
bool is_array(const RValue& value) { return value.is_array(); }
bool is_bool(const RValue& value) { return value.kind() == kBool; }
bool is_int32(const RValue& value) { return value.kind() == kInt32; }
bool is_int64(const RValue& value) { return value.kind() == kInt64; }
bool is_undefined(const RValue& value) { return value.is_undefined(); }
bool is_ptr(const RValue& value) { return value.kind() == kPointer; }
bool is_struct(const RValue& value) { return value.is_object() && std::string_view(type_name(value)) == "struct"; }
bool is_method(const RValue& value) { return value.is_object() && std::string_view(type_name(value)) == "method"; }
bool is_nan(const RValue& value) { return value.is_numeric() && std::isnan(value.real); }
bool is_infinity(const RValue& value) { return value.is_numeric() && std::isinf(value.real); }
RValue sum_of_numbers(NumberValue left, NumberValue right) { return op_add(left.value, right.value); }

constexpr Implementation kRows[] = {
    implement<script::real, to_real_value>,
    implement<script::type_of, type_of>,
    implement<script::checked::int64, to_int64_value>,
    implement<script::ptr, to_pointer_value>,
    implement<script::ptr_address, pointer_address>,
    implement<script::bool_of, to_bool_value>,
    implement<script::is_real, is_real>,
    implement<script::checked::is_numeric, is_numeric>,
    implement<script::is_string, is_string>,
    implement<script::checked::is_array, is_array>,
    implement<script::is_bool, is_bool>,
    implement<script::is_int32, is_int32>,
    implement<script::is_int64, is_int64>,
    implement<script::checked::is_undefined, is_undefined>,
    implement<script::is_ptr, is_ptr>,
    implement<script::is_struct, is_struct>,
    implement<script::is_method, is_method>,
    implement<script::is_nan, is_nan>,
    implement<script::is_infinity, is_infinity>,
    implement<script::number_sum, sum_of_numbers>,
};
const BuiltinTable table("Kinds and conversions", "", kRows);

}  // namespace
}  // namespace arena
