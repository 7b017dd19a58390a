#pragma once
// Lists, maps and grids: data structures that scripts name by number. They hold their values themselves, whatever the collector does.
//
// Handles are small numbers per kind, given again after a structure was destroyed. A stale handle is reported, not followed.
#include <memory>
#include <tuple>
#include <vector>

#include "runtime/arrays_structs/holder.h"
#include "runtime/checks/assert.h"
#include "runtime/session/pooled.h"
#include "runtime/session/state.h"
#include "runtime/values/compare.h"

namespace arena {

class DsList final : public Holder {
 public:
  void visit_values(ValueVisitor& visitor) override {
    for (const RValue& value : values) visitor(value);
  }
  PooledVector<RValue> values;
  static constexpr std::size_t kFieldsBegin = sizeof(Holder);
  static constexpr auto fields() { return std::tuple(field("values", &DsList::values)); }
};

// Keys are numbers or texts, exactly compared; iteration goes in order of the keys, numbers first.
class DsMap final : public Holder {
 public:
  struct Key {
    bool is_text = false;
    double number = 0;
    PooledText text;
    // NaN is a key like any other, behind the numbers.
    bool operator<(const Key& other) const {
      if (is_text != other.is_text) return other.is_text;
      return is_text ? text < other.text : sorts_before(number, other.number);
    }
    static constexpr auto fields() {
      return std::tuple(field("is_text", &Key::is_text), field("number", &Key::number), field("text", &Key::text));
    }
  };
  void visit_values(ValueVisitor& visitor) override {
    for (const auto& [key, value] : values) visitor(value);
  }
  static Key key_of(const RValue& value);
  static RValue value_of(const Key& key);
  PooledMap<Key, RValue> values;
  static constexpr std::size_t kFieldsBegin = sizeof(Holder);
  static constexpr auto fields() { return std::tuple(field("values", &DsMap::values)); }
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
  std::int32_t width, height;

  static constexpr std::size_t kFieldsBegin = sizeof(Holder);
  static constexpr auto fields() {
    return std::tuple(field("width", &DsGrid::width), field("height", &DsGrid::height), field("cells", &DsGrid::cells_),
                      derived("written", &DsGrid::written_), derived("ground", &DsGrid::ground_));
  }

 private:
  static constexpr std::size_t kMostRemembered = 4096;
  std::size_t place(std::int32_t column, std::int32_t row) const {
    ARENA_ASSERT(has(column, row));
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column);
  }
  PooledVector<RValue> cells_;           // row by row
  PooledVector<std::uint32_t> written_;  // cells since the last clearing; once full it knows nothing
  RValue ground_{0.0};                   // what the others hold
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
  // There must be one.
  void destroy(std::int32_t handle) {
    ARENA_ASSERT(find(handle) != nullptr);
    all_[static_cast<std::size_t>(handle)].reset();
  }
  void restart() { all_.clear(); }

  // The structures themselves stand among the session's blocks.
  using State = std::vector<Structure*>;
  void save(State& into) const {
    into.clear();
    for (const auto& each : all_) into.push_back(each.get());
  }
  void load(const State& from) {
    for (auto& each : all_) each.release();
    all_.clear();
    for (Structure* const each : from) all_.emplace_back(each);
  }
  void visit_content(StateVisitor& visitor) {
    for (std::size_t i = 0; i < all_.size(); ++i) {
      if (all_[i] == nullptr) continue;
      visitor.count(i);  // its handle
      visit_state(visitor, *all_[i]);
    }
  }
  static constexpr auto fields() { return std::tuple(derived("all", &ContainerTable::all_)); }

 private:
  std::vector<std::unique_ptr<Structure>> all_;
};

ContainerTable<DsList>& ds_lists();
ContainerTable<DsMap>& ds_maps();
ContainerTable<DsGrid>& ds_grids();

}  // namespace arena
