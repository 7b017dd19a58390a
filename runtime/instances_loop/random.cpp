#include "runtime/instances_loop/random.h"

#include <bit>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "runtime/input/outside.h"
#include "runtime/session/session.h"

namespace arena {
namespace {
constexpr std::uint64_t kVisualSeed = 1;

struct Generators {
  RandomGenerator game;
  RandomGenerator visual{kVisualSeed};
  std::optional<std::uint64_t> fixed_seed;

  void restart() {
    game.reseed(fixed_seed.value_or(0));
    visual.reseed(kVisualSeed);
  }
  static constexpr auto fields() {
    return std::tuple(field("game", &Generators::game), field("visual", &Generators::visual), field("fixed_seed", &Generators::fixed_seed));
  }
};
const StatePart<Generators> part{PartLevel::kWorld, "generators"};

}  // namespace

void RandomGenerator::reseed(std::uint64_t seed) {
  seed_ = seed;
  for (std::uint64_t& word : state) {
    seed += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = seed;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBu;
    word = mixed ^ mixed >> 31;
  }
}

std::uint64_t RandomGenerator::next() {
  const std::uint64_t result = std::rotl(state[1] * 5, 7) * 9;
  const std::uint64_t shifted = state[1] << 17;
  state[2] ^= state[0];
  state[3] ^= state[1];
  state[1] ^= state[2];
  state[0] ^= state[3];
  state[2] ^= shifted;
  state[3] = std::rotl(state[3], 45);
  return result;
}

double RandomGenerator::unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

std::int64_t RandomGenerator::integer(std::int64_t low, std::int64_t high) {
  if (low > high) std::swap(low, high);
  const std::uint64_t span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low) + 1;
  if (span == 0) return static_cast<std::int64_t>(next());
  // Numbers above the last whole multiple of the span are drawn again, so that all results are equally likely.
  const std::uint64_t limit = UINT64_MAX - UINT64_MAX % span;
  std::uint64_t drawn = next();
  while (drawn >= limit) drawn = next();
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + drawn % span);
}

RandomGenerator& game_random() { return part().game; }
RandomGenerator& visual_random() { return part().visual; }

void fix_random_seed(std::uint64_t seed) {
  part().fixed_seed = seed;
  game_random().reseed(seed);
}

std::uint64_t randomize_game() {
  const auto clock = [] { return std::to_string(std::chrono::system_clock::now().time_since_epoch().count() & 0xFFFFFFFF); };
  const std::uint64_t seed = part().fixed_seed ? *part().fixed_seed : std::strtoull(answer_from_outside(clock).c_str(), nullptr, 10);
  game_random().reseed(seed);
  return seed;
}

}  // namespace arena
