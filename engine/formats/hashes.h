#pragma once
// Hashes of bytes, in hexadecimal digits as everybody writes them. MD5 and SHA-1 tell damage, not forgery.
#include <cstdint>
#include <string>
#include <string_view>

namespace arena::formats {

std::string md5(std::string_view bytes);
std::string sha1(std::string_view bytes);
std::string sha256(std::string_view bytes);
std::uint32_t crc32_of(std::string_view bytes);

}  // namespace arena::formats
