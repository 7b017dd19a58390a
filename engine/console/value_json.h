#pragma once
// Values as the console writes them.
#include <nlohmann/json.hpp>

#include "runtime/values/value.h"

namespace arena::console {

// Of very large or deep values a part: "..." stands where something was left out.
nlohmann::ordered_json value_to_json(const RValue& value);
// Whole reals without a point; NaN and infinities as texts.
nlohmann::ordered_json real_to_json(double number);

}  // namespace arena::console
