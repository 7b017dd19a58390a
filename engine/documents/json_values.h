#pragma once
// Values of scripts as JSON text and back, kind by kind and bit by bit:
//
//   number      with a point or an exponent: 5.0, 0.1, 1e+22      int64 (and int32)   without: 5
//   text        in UTF-8                                          bool, null          true, false, null
//   array       [...]                                             struct              {...}, keys in their order
//   undefined, NaN, infinities    {"@@value": "undefined"}, "NaN", "inf", "-inf": no struct of a script has such a key
//   references to lists and maps  as arrays and structs of what they hold
//
// Nothing else can be written. What other programs wrote is read by the standard's rules; whole numbers beyond an int64 become numbers.
#include <optional>
#include <string>
#include <string_view>

#include "runtime/values/value.h"

namespace arena::documents {

inline constexpr std::size_t kDeepestJson = 500;        // containers inside one another
inline constexpr std::size_t kLongestJson = 64u << 20;  // bytes

// False with a sentence in `problem`, for a text with the line and the column. `as_maps`: objects become maps and arrays lists, by
// reference.
bool parse_json(std::string_view text, bool as_maps, RValue& into, std::string& problem);
bool write_json(const RValue& value, bool in_lines, std::string& into, std::string& problem);

}  // namespace arena::documents
