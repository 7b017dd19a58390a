#pragma once

namespace bench {
// Prints a table; at most 2 times glibc's time and at most that of mingw's own library.
void run_elementary();
}  // namespace bench
