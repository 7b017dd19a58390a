#pragma once
// Lists, maps and grids: data structures that scripts name by number. They hold their values themselves, whatever the collector does.
//
// Handles are small numbers per kind, given again after a structure was destroyed. A stale handle is reported, not followed.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "runtime/arrays_structs/holder.h"
#include "runtime/values/compare.h"

namespace arena {

class DsList final : public Holder {
 public:
  void visit_values(ValueVisitor& visitor) override {
    for (const RValue& value : values) visitor(value);
  }
  std::vector<RValue> values;
};

// Keys are numbers or texts, exactly compared; iteration goes in order of the keys, numbers first.
class DsMap final : public Holder {
 public:
  struct Key {
    bool is_text = false;
    double number = 0;
    std::string text;
    // NaN is a key like any other, behind the numbers.
    bool operator<(const Key& other) const {
      if (is_text != other.is_text) return other.is_text;
      return is_text ? text < other.text : sorts_before(number, other.number);
    }
  };
  void visit_values(ValueVisitor& visitor) override {
    for (const auto& [key, value] : values) visitor(value);
  }
  static Key key_of(const RValue& value);
  static RValue value_of(const Key& key);
  std::map<Key, RValue> values;
};

class DsGrid final : public Holder {
 public:
  DsGrid(std::int32_t across, std::int32_t down)
      : width(across), height(down), cells_(static_cast<std::size_t>(across) * static_cast<std::size_t>(down), RValue(0.0)) {}
  void visit_values(ValueVisitor& visitor) override {
    for (const RValue& value : cells_) visitor(value);
  }
  bool has(std::int32_t column, std::int32_t row) const { return column >= 0 && column < width && row >= 0 && row < height; }
  const RValue& at(std::int32_t column, std::int32_t row) const { return cells_[place(column, row)]; }
  void set(std::int32_t column, std::int32_t row, const RValue& value) {
    const std::size_t index = place(column, row);
    if (written_.size() < kMostRemembered) written_.push_back(static_cast<std::uint32_t>(index));
    cells_[index] = value;
  }
  // Every cell becomes the value. A grid that is cleared to the same plain value again and again only touches what was written since.
  void clear(const RValue& value);
  const std::int32_t width, height;

 private:
  static constexpr std::size_t kMostRemembered = 4096;
  std::size_t place(std::int32_t column, std::int32_t row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column);
  }
  std::vector<RValue> cells_;           // row by row
  std::vector<std::uint32_t> written_;  // cells since the last clearing; once full it knows nothing
  RValue ground_{0.0};                  // what the others hold
};

template <class Structure>
class ContainerTable {
 public:
  template <class... Given>
  std::int32_t create(Given... given) {
    for (std::size_t i = 0; i < all_.size(); ++i) {
      if (all_[i] != nullptr) continue;
      all_[i] = std::make_unique<Structure>(given...);
      return static_cast<std::int32_t>(i);
    }
    all_.push_back(std::make_unique<Structure>(given...));
    return static_cast<std::int32_t>(all_.size()) - 1;
  }
  Structure* find(std::int32_t handle) const {
    return handle >= 0 && static_cast<std::size_t>(handle) < all_.size() ? all_[static_cast<std::size_t>(handle)].get() : nullptr;
  }
  void destroy(std::int32_t handle) { all_[static_cast<std::size_t>(handle)].reset(); }
  void clear() { all_.clear(); }

 private:
  std::vector<std::unique_ptr<Structure>> all_;
};

ContainerTable<DsList>& ds_lists();
ContainerTable<DsMap>& ds_maps();
ContainerTable<DsGrid>& ds_grids();
// Destroys all: a restart of the game.
void reset_containers();

}  // namespace arena
