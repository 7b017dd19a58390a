// The runtime's elementary functions against the C library's, nanoseconds a call, in one run.
#include "bench/elementary.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "runtime/values/elementary.h"

namespace elementary = arena::elementary;

namespace bench {
namespace {

constexpr std::size_t kArguments = 4096;
constexpr int kRounds = 60;

struct Row {
  const char* name;
  double (*mine)(double, double);
  double (*library)(double, double);
  double low, high, low_second, high_second;
};

// The library's functions behind the same kind of pointer, so that both pay for the call.
const Row kRows[] = {
    {"sin, -10 to 10", [](double x, double) { return elementary::sin(x); }, [](double x, double) { return std::sin(x); }, -10, 10, 0, 0},
    {"sin, to 1e5", [](double x, double) { return elementary::sin(x); }, [](double x, double) { return std::sin(x); }, -1e5, 1e5, 0, 0},
    {"sin, to 1e15", [](double x, double) { return elementary::sin(x); }, [](double x, double) { return std::sin(x); }, -1e15, 1e15, 0, 0},
    {"cos, -10 to 10", [](double x, double) { return elementary::cos(x); }, [](double x, double) { return std::cos(x); }, -10, 10, 0, 0},
    {"tan, -10 to 10", [](double x, double) { return elementary::tan(x); }, [](double x, double) { return std::tan(x); }, -10, 10, 0, 0},
    {"atan2", [](double x, double y) { return elementary::atan2(x, y); }, [](double x, double y) { return std::atan2(x, y); }, -900, 900,
     -900, 900},
    {"exp", [](double x, double) { return elementary::exp(x); }, [](double x, double) { return std::exp(x); }, -20, 20, 0, 0},
    {"log", [](double x, double) { return elementary::log(x); }, [](double x, double) { return std::log(x); }, 0, 1000, 0, 0},
    {"pow", [](double x, double y) { return elementary::pow(x, y); }, [](double x, double y) { return std::pow(x, y); }, 0, 20, -20, 20},
};

double nanoseconds(double (*function)(double, double), const std::vector<double>& first, const std::vector<double>& second) {
  double best = 1e9, sum = 0;
  for (int round = 0; round < kRounds; ++round) {
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < kArguments; ++i) sum += function(first[i], second[i]);
    best = std::min(best, std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count());
  }
  if (sum == 0.5) std::printf(" ");  // the sum is wanted, or nothing would be computed
  return best / kArguments;
}

}  // namespace

double run_elementary() {
  double worst = 0;
  std::printf("\nelementary functions   ns   library's ns   ratio\n");
  std::mt19937_64 random(7);
  for (const Row& row : kRows) {
    std::vector<double> first, second;
    for (std::size_t i = 0; i < kArguments; ++i) {
      first.push_back(std::uniform_real_distribution<double>(row.low, row.high)(random));
      second.push_back(std::uniform_real_distribution<double>(row.low_second, row.high_second + 1e-9)(random));
    }
    const double mine = nanoseconds(row.mine, first, second), library = nanoseconds(row.library, first, second);
    std::printf("  %-16s %8.1f %14.1f %7.2f\n", row.name, mine, library, mine / library);
    worst = std::max(worst, mine / library);
  }
  return worst;
}

}  // namespace bench
