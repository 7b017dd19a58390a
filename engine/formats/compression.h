#pragma once
// Bytes made smaller by zlib, and back.
#include <optional>
#include <string>
#include <string_view>

namespace arena::formats {

std::string compressed(std::string_view bytes);
// Nothing, with a sentence in `problem`, for bytes that are damaged or would become more than `most`.
std::optional<std::string> decompressed(std::string_view bytes, std::size_t most, std::string& problem);

}  // namespace arena::formats
