#pragma once
// A number for the whole state of the game: every instance and variable, the globals, what holders keep, the generator and the clock.
// The same state gives the same number on every platform; ids of variables and addresses do not enter.
#include <cstdint>

namespace arena::console {

std::uint64_t state_hash();

}  // namespace arena::console
