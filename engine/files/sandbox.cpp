#include "engine/files/sandbox.h"

#include <algorithm>
#include <cstdint>

#include "engine/formats/utf8.h"

namespace arena::files {
namespace {

bool is_between(std::uint32_t each, std::uint32_t low, std::uint32_t high) { return each >= low && each <= high; }

// Beyond ASCII: nothing that cannot be seen, turns the direction of writing, or is no character. Wide and small forms look like / \ : . and
// are read as them by some.
bool is_odd(std::uint32_t each) {
  if (each < 0x80) return false;
  return is_between(each, 0x80, 0xA0) || each == 0xAD || is_between(each, 0x300, 0x36F) || is_between(each, 0x2000, 0x206F) ||
         is_between(each, 0x2215, 0x2216) || each == 0x2044 || each == 0x29F5 || each == 0x29F8 || is_between(each, 0x3000, 0x3000) ||
         is_between(each, 0xD800, 0xF8FF) || is_between(each, 0xFE00, 0xFE6F) || is_between(each, 0xFEFF, 0xFF65) || each == 0x61C ||
         each == 0x180E || each >= 0xFFE0;
}

constexpr std::string_view kForbidden = "<>:\"|?*\\~";
constexpr std::string_view kWildcards = "*?";

std::string lower(std::string_view text) {
  std::string made(text);
  for (char& each : made) each = each >= 'A' && each <= 'Z' ? static_cast<char>(each + 32) : each;
  return made;
}

// Whatever stands behind a point: "aux.txt" is the device, too.
bool is_device(std::string_view part) {
  std::string name = lower(part.substr(0, part.find('.')));
  while (!name.empty() && name.back() == ' ') name.pop_back();
  for (const char* const each : {"con", "prn", "aux", "nul", "conin$", "conout$", "clock$", "config$"}) {
    if (name == each) return true;
  }
  if (name.size() < 4 || (!name.starts_with("com") && !name.starts_with("lpt"))) return false;
  const std::string_view number = std::string_view(name).substr(3);
  return (number.size() == 1 && number[0] >= '0' && number[0] <= '9') || number == "\xC2\xB9" || number == "\xC2\xB2" ||
         number == "\xC2\xB3";
}

std::string_view flaw_of_part(std::string_view part) {
  if (part.empty()) return "there is nothing between two /, or at an end";
  if (part == "." || part == "..") return "it leads to where it stands, or upwards";
  if (part.front() == ' ' || part.back() == ' ' || part.back() == '.')
    return "a part begins with a blank, or ends with one or with a point";
  return is_device(part) ? "it is a device on some systems" : "";
}

std::string_view flaw(std::string_view name, bool is_pattern) {
  if (name.empty()) return "it is empty";
  if (name.size() > kLongestName) return "it is too long";
  if (name.front() == '/') return "it does not begin in the save folder";
  const std::size_t last = name.rfind('/') + 1;  // 0 where there is none
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t place = at;
    const std::uint32_t each = formats::next_character(name, at);
    if (each == formats::kNoCharacter) return "it is no UTF-8";
    const bool is_wild = is_pattern && place >= last && each < 0x80 && kWildcards.find(static_cast<char>(each)) != std::string_view::npos;
    const bool is_forbidden =
        each < 0x20 || each == 0x7F || (each < 0x80 && kForbidden.find(static_cast<char>(each)) != std::string_view::npos);
    if ((is_forbidden && !is_wild) || is_odd(each)) return "it has a character that names cannot have";
  }
  std::size_t parts = 0;
  for (std::size_t begin = 0; begin <= name.size(); ++parts) {
    const std::size_t end = std::min(name.find('/', begin), name.size());
    if (const std::string_view found = flaw_of_part(name.substr(begin, end - begin)); !found.empty()) return found;
    begin = end + 1;
  }
  return parts > kDeepestName ? "it leads too deep" : "";
}

}  // namespace

std::string_view flaw_of_name(std::string_view name) { return flaw(name, false); }
std::string_view flaw_of_pattern(std::string_view pattern) { return flaw(pattern, true); }

// A ? takes a whole character.
bool fits_pattern(std::string_view pattern, std::string_view name) {
  const auto behind = [&](std::size_t place) {
    do ++place;
    while (place < name.size() && (static_cast<unsigned char>(name[place]) & 0xC0) == 0x80);
    return place;
  };
  std::size_t at = 0, in_name = 0, star = std::string_view::npos, taken_to = 0;
  while (in_name < name.size()) {
    if (at < pattern.size() && pattern[at] == '*') {
      star = at++;
      taken_to = in_name;
    } else if (at < pattern.size() && pattern[at] == '?') {
      ++at;
      in_name = behind(in_name);
    } else if (at < pattern.size() && pattern[at] == name[in_name]) {
      ++at;
      ++in_name;
    } else if (star != std::string_view::npos) {
      at = star + 1;
      in_name = taken_to = behind(taken_to);
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', std::min(at, pattern.size())) == std::string_view::npos;
}

std::string folder_of(std::string_view name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string_view::npos ? std::string() : std::string(name.substr(0, slash + 1));
}

}  // namespace arena::files
