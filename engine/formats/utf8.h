#pragma once
// Text as characters, for those who must know whether it is one.
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace arena::formats {

inline constexpr std::uint32_t kNoCharacter = 0xFFFFFFFF;

// The character at `at`, which moves behind it; kNoCharacter where the bytes are no UTF-8: cut off, longer than they need to be, halves
// of pairs, or beyond the last one.
inline std::uint32_t next_character(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t place) { return static_cast<std::uint32_t>(static_cast<unsigned char>(text[place])); };
  const std::uint32_t first = byte(at);
  const std::size_t more = first < 0x80 ? 0 : first >= 0xC2 && first < 0xE0 ? 1 : first >= 0xE0 && first < 0xF0 ? 2 : 3;
  if ((first >= 0x80 && first < 0xC2) || first > 0xF4 || text.size() - at <= more) return kNoCharacter;
  std::uint32_t made = more == 0 ? first : first & (0x3Fu >> more);
  for (std::size_t i = 1; i <= more; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return kNoCharacter;
    made = made << 6 | (byte(at + i) & 0x3F);
  }
  const bool is_too_long = (more == 2 && made < 0x800) || (more == 3 && made < 0x10000);
  if (is_too_long || (made >= 0xD800 && made < 0xE000) || made > 0x10FFFF) return kNoCharacter;
  at += more + 1;
  return made;
}

inline bool is_utf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    if (next_character(text, at) == kNoCharacter) return false;
  }
  return true;
}

}  // namespace arena::formats
