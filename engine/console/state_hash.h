#pragma once
// A number for the whole state of the game: every instance and variable, the globals, what holders keep, the generator and the clock.
// The same state gives the same number on every platform; ids of variables and addresses do not enter.
#include <cstdint>
#include <string>

namespace arena::console {

std::uint64_t state_hash();
// What the hash sees, a value a line, with the clock left out and instances numbered by their order: two runs that differ in nothing but
// when they began and which ids they were given have the same text, and where texts differ a comparison by lines shows what does.
std::string describe_state();

}  // namespace arena::console
