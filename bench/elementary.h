#pragma once

namespace bench {
// Prints a table of times beside the C library's; the largest ratio. It is to be at most 2 with glibc, and at most 1 with mingw's own.
double run_elementary();
}  // namespace bench
