#pragma once
// The crowd in LuaJIT, in a process of its own that steps when it is asked to: so both are timed under the same load.
#include <cstdio>

namespace bench {

class LuaCrowd {
 public:
  explicit LuaCrowd(int count);
  ~LuaCrowd();
  LuaCrowd(const LuaCrowd&) = delete;
  LuaCrowd& operator=(const LuaCrowd&) = delete;
  // Runs one frame; the milliseconds of processor time it took, 0 where there is no luajit.
  double step();

 private:
  std::FILE* requests_ = nullptr;
  std::FILE* times_ = nullptr;
  int process_ = -1;
};

}  // namespace bench
