#pragma once
// Lists, maps and grids: data structures that scripts name by number. They hold their values themselves, whatever the collector does.
//
// Handles are small numbers per kind, given again after a structure was destroyed. A stale handle is reported, not followed.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "runtime/arrays_structs/holder.h"

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
    auto operator<=>(const Key&) const = default;
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
  DsGrid(std::int32_t across, std::int32_t down) : width(across), height(down), cells(size(), RValue(0.0)) {}
  void visit_values(ValueVisitor& visitor) override {
    for (const RValue& value : cells) visitor(value);
  }
  bool has(std::int32_t column, std::int32_t row) const { return column >= 0 && column < width && row >= 0 && row < height; }
  RValue& at(std::int32_t column, std::int32_t row) {
    return cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column)];
  }
  std::size_t size() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
  std::int32_t width, height;
  std::vector<RValue> cells;  // row by row
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
