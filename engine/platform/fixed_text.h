#pragma once
// Text in memory of its own, for where nothing may be allocated.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace arena::platform {

// Text that fits is kept, the rest falls off.
template <std::size_t kSize>
class FixedText {
 public:
  void clear() { text_[length_ = 0] = 0; }
  FixedText& operator<<(const char* text) {
    const std::size_t added = std::min(std::strlen(text), kSize - 1 - length_);
    std::memcpy(text_ + length_, text, added);
    text_[length_ += added] = 0;
    return *this;
  }
  FixedText& number(std::uintptr_t value, unsigned base) {
    char digits[24] = {};
    char* at = digits + sizeof digits - 1;
    do *--at = "0123456789abcdef"[value % base];
    while ((value /= base) != 0);
    return *this << at;
  }
  const char* text() const { return text_; }
  std::size_t length() const { return length_; }

 private:
  char text_[kSize] = {};
  std::size_t length_ = 0;
};

}  // namespace arena::platform
