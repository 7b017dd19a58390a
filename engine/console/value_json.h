#pragma once
// Values as the console writes them.
#include <nlohmann/json.hpp>

#include "runtime/values/value.h"

namespace arena::console {

nlohmann::json value_to_json(const RValue& value);
// Whole reals without a point; NaN and infinities as texts.
nlohmann::json real_to_json(double number);

}  // namespace arena::console
