#pragma once
// Tests that draw or repeat go on for longer where the environment asks for it, as the preset "soak" does: ARENA_ROUNDS=50 makes 50 rounds
// of what is usually one; ARENA_SEED=7 makes them others than usual.
#include <algorithm>
#include <cstdlib>

namespace arena::test {

inline unsigned long from_environment(const char* name, unsigned long otherwise) {
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtoul(text, nullptr, 10) : otherwise;
}
inline int longer() { return static_cast<int>(std::clamp(from_environment("ARENA_ROUNDS", 1), 1ul, 10000ul)); }

}  // namespace arena::test
