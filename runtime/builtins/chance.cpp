// Chance: all of it comes from the game's generator.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/chance.h"

#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/random.h"

namespace arena {
namespace {

double random_below(double x) { return game_random().unit() * x; }
double random_between(double low, double high) { return low + game_random().unit() * (high - low); }
double random_integer(double high) { return static_cast<double>(game_random().integer(0, saturate_int64(high))); }
double random_integer_between(double low, double high) {
  return static_cast<double>(game_random().integer(saturate_int64(low), saturate_int64(high)));
}
RValue choose_one(Rest values) {
  if (values.empty()) return {};
  return values[static_cast<std::size_t>(game_random().integer(0, static_cast<std::int64_t>(values.size()) - 1))];
}
double randomize_seed() { return static_cast<double>(randomize_game()); }
void random_set_seed(double seed) { game_random().reseed(static_cast<std::uint64_t>(saturate_int64(seed))); }
double random_get_seed() { return static_cast<double>(game_random().seed()); }

constexpr Implementation kRows[] = {
    implement<script::checked::random, random_below>,    implement<script::checked::random_range, random_between>,
    implement<script::checked::irandom, random_integer>, implement<script::checked::irandom_range, random_integer_between>,
    implement<script::checked::choose, choose_one>,      implement<script::randomize, randomize_seed>,
    implement<script::random_set_seed, random_set_seed>, implement<script::random_get_seed, random_get_seed>,
};
const BuiltinTable table("Chance", "", kRows);

}  // namespace
}  // namespace arena
