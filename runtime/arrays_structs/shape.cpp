#include "runtime/arrays_structs/shape.h"

#include <cstring>
#include <memory>

#include "runtime/checks/assert.h"
#include "runtime/program/names.h"
#include "runtime/session/session.h"

namespace arena {
namespace {

// All shapes of a session. Few exist, and objects of a type all walk the same way.
class Shapes {
 public:
  Shapes() { empty_.positions = dictionary_.positions = new_table(nullptr); }
  const Shape* empty() const { return &empty_; }
  const Shape* dictionary() const { return &dictionary_; }

  const Shape* add(const Shape* shape, std::int32_t id) {
    std::uint8_t* const positions = new_table(shape->positions);
    ARENA_ASSERT(positions[id] == kNoPosition);
    positions[id] = static_cast<std::uint8_t>(shape->ids.size());
    Shape& longer = *shapes_.emplace_back(std::make_unique<Shape>());
    longer.positions = positions;
    longer.ids = shape->ids;
    longer.ids.push_back(id);
    shape->next.emplace_back(id, &longer);
    return &longer;
  }

 private:
  std::uint8_t* new_table(const std::uint8_t* copy_of) {
    const std::size_t size = static_cast<std::size_t>(code_name_count()) + 1;
    std::uint8_t* const table = tables_.emplace_back(new std::uint8_t[size]).get();
    if (copy_of != nullptr) {
      std::memcpy(table, copy_of, size);
    } else {
      std::memset(table, kNoPosition, size);
    }
    return table;
  }
  std::vector<std::unique_ptr<std::uint8_t[]>> tables_;
  std::vector<std::unique_ptr<Shape>> shapes_;
  Shape empty_, dictionary_;
};
const Part<Shapes> shapes{PartLevel::kMemory, "shapes"};

}  // namespace

const Shape* empty_shape() { return shapes().empty(); }
const Shape* dictionary_shape() { return shapes().dictionary(); }

const Shape* shape_with(const Shape* shape, std::int32_t id) {
  for (const auto& [next_id, next_shape] : shape->next) {
    if (next_id == id) return next_shape;
  }
  if (id < 0 || id >= code_name_count() || shape->ids.size() >= kLongestRow) return nullptr;
  return shapes().add(shape, id);
}

}  // namespace arena
