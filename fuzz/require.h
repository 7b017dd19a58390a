#pragma once
// What a target promises: broken, it ends the program where the fuzzer sees it.
#include <cstdlib>

inline void require(bool holds) {
  if (!holds) std::abort();
}
