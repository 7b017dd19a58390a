#pragma once
// Shapes: the layout of a row of variables, shared by all objects that got the same variables in the same order. Finding a variable is
// one look-up in the shape's table of positions.
#include <cstdint>
#include <utility>
#include <vector>

namespace arena {

inline constexpr std::uint8_t kNoPosition = 0xFF;
inline constexpr std::size_t kLongestRow = 64;  // variables; objects with more become dictionaries

struct Shape {
  const std::uint8_t* positions = nullptr;  // one byte a variable id known at start-up
  std::vector<std::int32_t> ids;            // in order of insertion
  // Shapes live as long as their session.
  mutable std::vector<std::pair<std::int32_t, const Shape*>> next;
};

const Shape* empty_shape();
// The shape of objects that keep their variables in a dictionary: a table in which nothing is found.
const Shape* dictionary_shape();
// The shape with one variable more; null when a table cannot hold it.
const Shape* shape_with(const Shape* shape, std::int32_t id);

}  // namespace arena
