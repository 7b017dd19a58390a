#pragma once
// Bytes that are checked and packed the way of zlib.
#include <cstddef>
#include <cstdint>

namespace arena::files {

// CRC-32 of these bytes behind those before them, of which it was `before`; 0: there were none.
std::uint32_t crc32_of(std::uint32_t before, const void* bytes, std::size_t size);
// Fills `into` with what is packed there; where that is damaged or less, the rest of it stays as it is.
void unpack(std::uint8_t* into, std::size_t size, const std::uint8_t* packed, std::size_t packed_size);

}  // namespace arena::files
