#pragma once
// Bytes as letters, digits, + and /, four for three bytes, filled up by =.
#include <optional>
#include <string>
#include <string_view>

namespace arena::formats {

std::string base64(std::string_view bytes);
// Blanks and ends of lines are passed over, and = at the end may be missing. Nothing, with a sentence in `problem` that says where, for
// other characters and for texts that end in the middle of a byte.
std::optional<std::string> from_base64(std::string_view text, std::string& problem);

}  // namespace arena::formats
