#include "engine/formats/hashes.h"

#include <zlib.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace arena::formats {
namespace {

constexpr std::size_t kBlock = 64;  // bytes
enum class ByteOrder { kLowFirst, kHighFirst };

// The words of a block, and what stands behind the last byte: a one, zeroes, the length in bits.
template <ByteOrder order>
class Blocks {
 public:
  explicit Blocks(std::string_view bytes) : bytes_(bytes) {
    rest_ = bytes.substr(bytes.size() / kBlock * kBlock);
    rest_ += '\x80';
    while (rest_.size() % kBlock != kBlock - 8) rest_ += '\0';
    const std::uint64_t bits = static_cast<std::uint64_t>(bytes.size()) * 8;
    for (int i = 0; i < 8; ++i) rest_ += static_cast<char>(bits >> (8 * (order == ByteOrder::kLowFirst ? i : 7 - i)));
  }
  template <class Use>
  void each(Use use) const {
    for (std::size_t at = 0; at + kBlock <= bytes_.size(); at += kBlock) use(words(bytes_.substr(at, kBlock)));
    for (std::size_t at = 0; at < rest_.size(); at += kBlock) use(words(std::string_view(rest_).substr(at, kBlock)));
  }

 private:
  static std::array<std::uint32_t, 16> words(std::string_view block) {
    std::array<std::uint32_t, 16> made{};
    for (std::size_t i = 0; i < kBlock; ++i) {
      const std::size_t shift = 8 * (order == ByteOrder::kLowFirst ? i % 4 : 3 - i % 4);
      made.data()[i / 4] |= static_cast<std::uint32_t>(static_cast<unsigned char>(block[i])) << shift;
    }
    return made;
  }
  std::string_view bytes_;
  std::string rest_;
};

template <std::size_t count>
std::string digits(const std::array<std::uint32_t, count>& state, ByteOrder order) {
  std::string text;
  for (const std::uint32_t word : state) {
    for (int i = 0; i < 4; ++i) {
      const std::uint32_t byte = word >> (8 * (order == ByteOrder::kLowFirst ? i : 3 - i)) & 255;
      text += "0123456789abcdef"[byte >> 4];
      text += "0123456789abcdef"[byte & 15];
    }
  }
  return text;
}

// The whole parts of 2^32 times the sines of 1 to 64, as the standard gives them.
constexpr std::uint32_t kSines[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501, 0x698098d8, 0x8b44f7af, 0xffff5bb1,
    0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821, 0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453,
    0xd8a1e681, 0xe7d3fbc8, 0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a, 0xfffa3942,
    0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70, 0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05,
    0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665, 0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d,
    0x85845dd1, 0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};
constexpr int kTurns[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

constexpr std::uint32_t kRoots[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5, 0xd807aa98, 0x12835b01, 0x243185be,
    0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174, 0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa,
    0x5cb0a9dc, 0x76f988da, 0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967, 0x27b70a85,
    0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85, 0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3,
    0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070, 0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f,
    0x682e6ff3, 0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

void md5_block(std::array<std::uint32_t, 4>& state, const std::array<std::uint32_t, 16>& words) {
  auto [a, b, c, d] = state;
  for (int i = 0; i < 64; ++i) {
    const int round = i / 16;
    const std::uint32_t mixed = round == 0 ? (b & c) | (~b & d) : round == 1 ? (d & b) | (~d & c) : round == 2 ? b ^ c ^ d : c ^ (b | ~d);
    const int word = round == 0 ? i : round == 1 ? (5 * i + 1) % 16 : round == 2 ? (3 * i + 5) % 16 : 7 * i % 16;
    const std::uint32_t sum = a + mixed + kSines[i] + words.data()[word];
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, kTurns[round][i % 4]);
  }
  state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

void sha1_block(std::array<std::uint32_t, 5>& state, const std::array<std::uint32_t, 16>& words) {
  std::array<std::uint32_t, 80> w{};
  std::memcpy(w.data(), words.data(), sizeof words);
  for (std::size_t i = 16; i < 80; ++i) w.data()[i] = std::rotl(w.data()[i - 3] ^ w.data()[i - 8] ^ w.data()[i - 14] ^ w.data()[i - 16], 1);
  auto [a, b, c, d, e] = state;
  for (std::size_t i = 0; i < 80; ++i) {
    const std::uint32_t mixed = i < 20   ? ((b & c) | (~b & d)) + 0x5a827999
                                : i < 40 ? (b ^ c ^ d) + 0x6ed9eba1
                                : i < 60 ? ((b & c) | (b & d) | (c & d)) + 0x8f1bbcdc
                                         : (b ^ c ^ d) + 0xca62c1d6;
    const std::uint32_t next = std::rotl(a, 5) + mixed + e + w.data()[i];
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d, state[4] + e};
}

void sha256_block(std::array<std::uint32_t, 8>& state, const std::array<std::uint32_t, 16>& words) {
  std::array<std::uint32_t, 64> w{};
  std::memcpy(w.data(), words.data(), sizeof words);
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t before = w.data()[i - 15], last = w.data()[i - 2];
    w.data()[i] = w.data()[i - 16] + (std::rotr(before, 7) ^ std::rotr(before, 18) ^ before >> 3) + w.data()[i - 7] +
                  (std::rotr(last, 17) ^ std::rotr(last, 19) ^ last >> 10);
  }
  std::array<std::uint32_t, 8> v = state;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t chosen = (v[4] & v[5]) ^ (~v[4] & v[6]), most = (v[0] & v[1]) ^ (v[0] & v[2]) ^ (v[1] & v[2]);
    const std::uint32_t first = v[7] + (std::rotr(v[4], 6) ^ std::rotr(v[4], 11) ^ std::rotr(v[4], 25)) + chosen + kRoots[i] + w.data()[i];
    const std::uint32_t second = (std::rotr(v[0], 2) ^ std::rotr(v[0], 13) ^ std::rotr(v[0], 22)) + most;
    v = {first + second, v[0], v[1], v[2], v[3] + first, v[4], v[5], v[6]};
  }
  for (std::size_t i = 0; i < 8; ++i) state.data()[i] += v.data()[i];
}

}  // namespace

std::string md5(std::string_view bytes) {
  std::array<std::uint32_t, 4> state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
  Blocks<ByteOrder::kLowFirst>(bytes).each([&](const auto& words) { md5_block(state, words); });
  return digits(state, ByteOrder::kLowFirst);
}

std::string sha1(std::string_view bytes) {
  std::array<std::uint32_t, 5> state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
  Blocks<ByteOrder::kHighFirst>(bytes).each([&](const auto& words) { sha1_block(state, words); });
  return digits(state, ByteOrder::kHighFirst);
}

std::string sha256(std::string_view bytes) {
  std::array<std::uint32_t, 8> state{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  Blocks<ByteOrder::kHighFirst>(bytes).each([&](const auto& words) { sha256_block(state, words); });
  return digits(state, ByteOrder::kHighFirst);
}

std::uint32_t crc32_of(std::string_view bytes) {
  return static_cast<std::uint32_t>(crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

}  // namespace arena::formats
