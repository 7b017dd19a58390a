#pragma once
// Figures for the whole state of the game: every instance and variable, and every other part of the session that a frame may change. The
// same state gives the same figures on every platform; ids of variables and addresses do not enter.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace arena::host {

// Of a part of the session, or of the instances of one object type.
struct StateFigure {
  std::string name;
  std::uint64_t hash;
};
// In a fixed order. What several lead to counts for the first.
std::vector<StateFigure> state_figures();
// All of them in one.
std::uint64_t hash_of(const std::vector<StateFigure>& figures);
std::uint64_t state_hash();
// What the hash sees, a value a line, with the clock left out and instances numbered by their order: two runs that differ in nothing but
// when they began and which ids they were given have the same text, and where texts differ a comparison by lines shows what does.
std::string describe_state();
// The first line in which two such descriptions differ, and where it stands: "oEnemy, instance 17: hp: 12 here, 13 there"; "" for equal
// ones.
std::string first_difference(std::string_view here, std::string_view there);

}  // namespace arena::host
