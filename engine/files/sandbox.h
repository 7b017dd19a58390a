#pragma once
// Which names scripts may give to files and folders: relative ones, with / between folders, that every system reads as the same place
// inside the save folder.
#include <string>
#include <string_view>

namespace arena::files {

inline constexpr std::size_t kLongestName = 200;  // bytes
inline constexpr std::size_t kDeepestName = 12;   // parts

// What is wrong with a name, as in "it leads upwards"; "" when nothing is. Refused are absolute names, drives, "." and "..", what stands
// for a device somewhere, characters that a system does not take, shows otherwise or gives a meaning (all but letters, digits and marks of
// any writing, blanks inside, and !#$%&'()+,-.;=@[]^_`{}), and bytes that are no UTF-8.
std::string_view flaw_of_name(std::string_view name);
// The same for patterns: * and ? may stand in the last part.
std::string_view flaw_of_pattern(std::string_view pattern);
bool fits_pattern(std::string_view pattern, std::string_view name);

// "a/b/" of "a/b/c"; "" of "c".
std::string folder_of(std::string_view name);

}  // namespace arena::files
