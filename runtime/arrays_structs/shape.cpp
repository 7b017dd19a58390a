#include "runtime/arrays_structs/shape.h"

#include <cstring>
#include <memory>

namespace arena {
namespace {

std::int32_t table_size = 0;
// Never destroyed: every shape hangs on them.
Shape& empty = *new Shape;
Shape& dictionary = *new Shape;

std::uint8_t* new_table(const std::uint8_t* copy_of) {
  std::uint8_t* table = new std::uint8_t[static_cast<std::size_t>(table_size) + 1];
  if (copy_of != nullptr) {
    std::memcpy(table, copy_of, static_cast<std::size_t>(table_size) + 1);
  } else {
    std::memset(table, kNoPosition, static_cast<std::size_t>(table_size) + 1);
  }
  return table;
}

}  // namespace

const Shape* empty_shape() { return &empty; }
const Shape* dictionary_shape() { return &dictionary; }
std::int32_t shape_table_size() { return table_size; }

void set_shape_table_size(std::int32_t variable_count) {
  table_size = variable_count;
  empty.positions = new_table(nullptr);
  dictionary.positions = empty.positions;
  empty.next.clear();
}

const Shape* shape_with(const Shape* shape, std::int32_t id) {
  for (const auto& [next_id, next_shape] : shape->next) {
    if (next_id == id) return next_shape;
  }
  if (id < 0 || id >= table_size || shape->ids.size() >= kLongestRow) return nullptr;
  std::unique_ptr<std::uint8_t[]> positions(new_table(shape->positions));
  positions[static_cast<std::size_t>(id)] = static_cast<std::uint8_t>(shape->ids.size());
  std::unique_ptr<Shape> longer(new Shape);
  longer->ids = shape->ids;
  longer->ids.push_back(id);
  shape->next.emplace_back(id, longer.get());
  longer->positions = positions.release();
  return longer.release();
}

}  // namespace arena
