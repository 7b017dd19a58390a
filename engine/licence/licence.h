#pragma once
// The licence flag of this build: its edition and the features that it has, fixed when it was compiled (ARENA_EDITION and ARENA_FEATURES of
// CMake). Nothing is asked of a network or of a key. A data file may ask for an edition or for features (data::missing_in_build).
#include <string>
#include <string_view>
#include <vector>

namespace arena::licence {

std::string_view edition();
// In the order in which they were given; all letters count.
const std::vector<std::string>& features();
bool has_feature(std::string_view feature);
// "edition standard, features network, mods"
std::string in_words();

}  // namespace arena::licence
