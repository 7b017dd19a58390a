#pragma once
// Any value as text: what string() gives, what concatenation of converted values and messages use.
#include <cstddef>
#include <string>

#include "runtime/values/value.h"

namespace arena {

// Containers within containers, as text or as a tool's output; "..." stands for what lies deeper.
inline constexpr std::size_t kDeepestShown = 200;

// Reports an unset value or a text that is too long; a suppressed report yields "".
std::string to_text(const RValue& value);
// The same without any report: an unset value reads "unset", long texts are cut.
std::string text_for_message(const RValue& value);

}  // namespace arena
