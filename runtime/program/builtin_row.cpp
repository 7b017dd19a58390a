#include "runtime/program/builtin_row.h"

#include <algorithm>

namespace arena {

std::vector<Parameter> BuiltinRow::parameters() const {
  constexpr std::string_view kBetween = ", ";
  std::vector<Parameter> found;
  std::string_view left = names;
  for (int i = 0; i < count; ++i) {
    found.push_back({left.substr(0, left.find(kBetween)), kinds[i]});
    left.remove_prefix(std::min(left.size(), found.back().name.size() + kBetween.size()));
  }
  return found;
}

}  // namespace arena
