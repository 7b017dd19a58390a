#include "engine/formats/base64.h"

#include <cstdint>

namespace arena::formats {
namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = bytes.size() - at < 3 ? bytes.size() - at : 3;
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) bits = bits << 8 | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0u);
    for (std::size_t i = 0; i < 4; ++i) text += i <= count ? kLetters[bits >> (18 - 6 * i) & 63] : '=';
  }
  return text;
}

std::optional<std::string> from_base64(std::string_view text, std::string& problem) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 3);
  std::uint32_t bits = 0;
  int held = 0;  // bits that are no whole byte yet
  std::size_t letters = 0, fillers = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char each = text[at];
    if (each == ' ' || each == '\t' || each == '\r' || each == '\n') continue;
    const std::size_t place = kLetters.find(each);
    if (each == '=' && ++fillers <= 2) continue;
    if (place == std::string_view::npos || fillers > 0) {
      problem = "character " + std::to_string(at + 1) + " is none of base 64";
      return std::nullopt;
    }
    bits = bits << 6 | static_cast<std::uint32_t>(place);
    ++letters;
    held += 6;
    if (held < 8) continue;
    held -= 8;
    bytes += static_cast<char>(bits >> held & 255);
  }
  if (letters % 4 == 1 || (fillers > 0 && (letters + fillers) % 4 != 0)) {
    problem = "the text ends in the middle of a byte";
    return std::nullopt;
  }
  return bytes;
}

}  // namespace arena::formats
