// Without zlib: for builds that show no pictures, whose pages are all that is packed. They stay transparent.
#include "engine/files/zipped.h"

#include <array>

namespace arena::files {
namespace {

constexpr std::array<std::uint32_t, 256> make_table() {
  std::array<std::uint32_t, 256> table = {};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t rest = byte;
    for (int bit = 0; bit < 8; ++bit) rest = rest >> 1 ^ ((rest & 1) != 0 ? 0xEDB88320u : 0u);
    table[byte] = rest;
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kTable = make_table();

}  // namespace

std::uint32_t crc32_of(std::uint32_t before, const void* bytes, std::size_t size) {
  const unsigned char* const at = static_cast<const unsigned char*>(bytes);
  std::uint32_t rest = ~before;
  for (std::size_t i = 0; i < size; ++i) rest = rest >> 8 ^ kTable[(rest ^ at[i]) & 255];
  return ~rest;
}

void unpack(std::uint8_t*, std::size_t, const std::uint8_t*, std::size_t) {}

}  // namespace arena::files
