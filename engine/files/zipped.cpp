#include "engine/files/zipped.h"

#include <zlib.h>

namespace arena::files {

std::uint32_t crc32_of(std::uint32_t before, const void* bytes, std::size_t size) {
  return static_cast<std::uint32_t>(crc32_z(before, static_cast<const unsigned char*>(bytes), size));
}

void unpack(std::uint8_t* into, std::size_t size, const std::uint8_t* packed, std::size_t packed_size) {
  uLongf filled = static_cast<uLongf>(size);
  uncompress(into, &filled, packed, static_cast<uLong>(packed_size));
}

}  // namespace arena::files
