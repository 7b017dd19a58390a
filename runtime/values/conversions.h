#pragma once
// From a value to what built-in functions need. Each reports what it cannot convert; after a suppressed report the result is 0 or
// false. Numbers out of range saturate, NaN becomes 0.
#include <cstdint>

#include "runtime/values/value.h"

namespace arena {

double to_real_slow(const RValue& value);
inline double to_real(const RValue& value) { return value.kind_bits == kNumber ? value.real : to_real_slow(value); }

std::int32_t to_int32(const RValue& value);
std::int64_t to_int64(const RValue& value);
void* to_pointer(const RValue& value);

bool to_bool_slow(const RValue& value);
// The truth of a condition: a real above 0.5.
inline bool to_bool(const RValue& value) {
  return value.kind_bits == kNumber || value.kind_bits == kBool ? value.real > 0.5 : to_bool_slow(value);
}

}  // namespace arena
