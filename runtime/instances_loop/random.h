#pragma once
// The one generator of the game's randomness, and a second one for purely visual effects. xoshiro256** seeded through splitmix64: the
// same seed gives the same numbers on every platform.
#include <array>
#include <cstdint>
#include <tuple>

#include "runtime/session/state.h"

namespace arena {

class RandomGenerator {
 public:
  explicit RandomGenerator(std::uint64_t seed = 0) { reseed(seed); }
  void reseed(std::uint64_t seed);
  std::uint64_t next();
  double unit();                                              // [0, 1)
  std::int64_t integer(std::int64_t low, std::int64_t high);  // low <= result <= high, whichever way round they come
  std::uint64_t seed() const { return seed_; }
  std::array<std::uint64_t, 4> state;
  static constexpr auto fields() { return std::tuple(field("state", &RandomGenerator::state), field("seed", &RandomGenerator::seed_)); }

 private:
  std::uint64_t seed_ = 0;
};

RandomGenerator& game_random();
RandomGenerator& visual_random();

// What randomize_game() uses: the command line's seed, or the clock's when none was given.
void fix_random_seed(std::uint64_t seed);
std::uint64_t randomize_game();

}  // namespace arena
