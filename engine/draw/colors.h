#pragma once
#include <algorithm>
#include <cstdint>

namespace arena::draw {

// Each of the three bytes of a colour between two others; `share` 0 to 1, and what is no number counts as 0.
inline std::uint32_t mixed(std::uint32_t from, std::uint32_t to, float share) {
  std::uint32_t made = 0;
  share = share > 0 ? std::min(share, 1.0f) : 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const float a = static_cast<float>(from >> shift & 255), b = static_cast<float>(to >> shift & 255);
    made |= static_cast<std::uint32_t>(a + (b - a) * share) << shift;
  }
  return made;
}

}  // namespace arena::draw
