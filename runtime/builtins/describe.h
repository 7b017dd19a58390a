#pragma once
// What the rows of the built-in functions say, for people: the document docs/builtins.md and look-ups by name.
#include <string>
#include <string_view>
#include <vector>

#include "runtime/program/builtin_row.h"

namespace arena {

// Those whose names fit a pattern, in their order: * stands for any characters, ? for one.
std::vector<const BuiltinRow*> builtins_like(std::string_view pattern);
// The default of a parameter that has one, as a script would write it.
std::string default_text(const ParameterKind& kind);
// All families, as docs/builtins.md holds them.
std::string builtins_document();

}  // namespace arena
