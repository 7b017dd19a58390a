// elementary_bench LIMIT: the table of elementary functions alone; status 1 when one takes more than LIMIT times the C library's time.
#include <cstdlib>

#include "bench/elementary.h"

int main(int argc, char** argv) {
  const double worst = bench::run_elementary();
  return argc > 1 && worst > std::atof(argv[1]) ? 1 : 0;
}
