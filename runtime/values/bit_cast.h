#pragma once
// The bits of one type as another of the same size. Every compiler has it; not every standard library that we build with has std::bit_cast.
#include <type_traits>

namespace arena {

template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
  static_assert(sizeof(To) == sizeof(From) && std::is_trivially_copyable_v<To> && std::is_trivially_copyable_v<From>);
  return __builtin_bit_cast(To, from);
}

}  // namespace arena
