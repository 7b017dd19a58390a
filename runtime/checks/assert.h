#pragma once
// ARENA_ASSERT(condition): what only a programmer's mistake can break. A script's mistake is reported (reports/report.h), the world's fault
// is answered; this ends the program, with the place and the condition on the standard error stream. On in every build with tests and in
// debug builds (ARENA_CHECKS); elsewhere the condition is compiled but never evaluated, so it may not do anything.
#include <cstdio>
#include <cstdlib>

namespace arena {

#ifdef ARENA_CHECKS
inline constexpr bool kChecksBuild = true;
#else
inline constexpr bool kChecksBuild = false;
#endif

[[noreturn, gnu::cold, gnu::noinline]] inline void assertion_failed(const char* file, int line, const char* condition) {
  std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
  std::abort();
}

}  // namespace arena

#ifdef ARENA_CHECKS
#define ARENA_ASSERT(...) ((__VA_ARGS__) ? static_cast<void>(0) : arena::assertion_failed(__FILE__, __LINE__, #__VA_ARGS__))
#else
#define ARENA_ASSERT(...) static_cast<void>(sizeof((__VA_ARGS__) ? 1 : 0))
#endif
