#pragma once
// Numbers and texts as the bytes of a recording. Small numbers are short: seven bits a byte, the lowest first, the eighth says that more
// follow. Signed ones are folded first: 0, -1, 1, -2, 2 are 0, 1, 2, 3, 4.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "runtime/values/bit_cast.h"

namespace arena::recording {

inline std::uint64_t fold(std::int64_t number) {
  return static_cast<std::uint64_t>(number) << 1 ^ (number < 0 ? ~std::uint64_t{0} : std::uint64_t{0});
}
inline std::int64_t unfold(std::uint64_t bits) {
  return static_cast<std::int64_t>(bits >> 1 ^ ((bits & 1) != 0 ? ~std::uint64_t{0} : std::uint64_t{0}));
}

inline void put_number(std::string& out, std::uint64_t number) {
  for (; number > 127; number >>= 7) out += static_cast<char>((number & 127) | 128);
  out += static_cast<char>(number);
}
inline void put_signed(std::string& out, std::int64_t number) { put_number(out, fold(number)); }
inline void put_text(std::string& out, std::string_view text) {
  put_number(out, text.size());
  out += text;
}
// So many bytes, the lowest first.
inline void put_fixed(std::string& out, std::uint64_t number, int bytes) {
  for (int i = 0; i < bytes; ++i, number >>= 8) out += static_cast<char>(number & 255);
}

// The whole pixels from one place to the other; false where they do not lead there exactly.
inline bool steps_between(double from, double to, std::int64_t& steps) {
  const double difference = to - from;
  if (!(std::fabs(difference) < 1e9) || difference != std::floor(difference)) return false;
  steps = static_cast<std::int64_t>(difference);
  return bit_cast<std::uint64_t>(from + static_cast<double>(steps)) == bit_cast<std::uint64_t>(to);
}

// Reads them again. Past the end everything reads 0 and `is_good` stays false.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}
  bool is_good() const { return is_good_; }
  bool is_at_end() const { return at_ == bytes_.size(); }
  std::size_t position() const { return at_; }
  // Whether more bytes were asked for than there are; `is_good` is false then, too.
  bool has_run_out() const { return has_run_out_; }
  void spoil() { is_good_ = false; }

  std::uint8_t byte() { return static_cast<std::uint8_t>(fixed(1)); }
  std::uint64_t fixed(std::size_t bytes) {
    if (!has(bytes)) return 0;
    std::uint64_t number = 0;
    for (std::size_t i = bytes; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes_[at_ + i]);
    at_ += bytes;
    return number;
  }
  std::uint64_t number() {
    std::uint64_t result = 0;
    for (int shift = 0; shift < 64; shift += 7) {
      const std::uint8_t next = byte();
      if (shift == 63 && next > 1) spoil();
      result |= static_cast<std::uint64_t>(next & 127) << shift;
      if (next < 128) return is_good_ ? result : 0;
    }
    spoil();
    return 0;
  }
  std::int64_t signed_number() { return unfold(number()); }
  std::int32_t whole() {
    const std::int64_t read = signed_number();
    if (read < INT32_MIN || read > INT32_MAX) spoil();
    return is_good_ ? static_cast<std::int32_t>(read) : 0;
  }
  std::string text() {
    const std::uint64_t size = number();
    if (!has(size)) return {};
    const std::string_view found = bytes_.substr(at_, static_cast<std::size_t>(size));
    at_ += found.size();
    return std::string(found);
  }
  double real() {
    const std::uint64_t bits = fixed(8);
    double result;
    std::memcpy(&result, &bits, sizeof result);
    return result;
  }

 private:
  bool has(std::uint64_t bytes) {
    if (is_good_ && bytes > bytes_.size() - at_) {
      has_run_out_ = true;
      spoil();
    }
    return is_good_;
  }
  std::string_view bytes_;
  std::size_t at_ = 0;
  bool is_good_ = true, has_run_out_ = false;
};

}  // namespace arena::recording
