#pragma once
// Functions that compile straight into script code because the hot loops of a game call them millions of times a second: arithmetic,
// array and grid access. Each is also in the table of built-in functions, where it is the same code behind argument checks.
#include <algorithm>

#include "runtime/arrays_structs/containers.h"
#include "runtime/instances_loop/random.h"
#include "runtime/script/define.h"
#include "runtime/values/elementary.h"
#include "runtime/values/text.h"

namespace arena::script {

// Numbers. Angles of the plain functions are radians, of the d- and length functions degrees.
using arena::saturate_int32;

inline Real sin(Real angle) { return elementary::sin(angle.number()); }
inline Real cos(Real angle) { return elementary::cos(angle.number()); }
inline Real tan(Real angle) { return elementary::tan(angle.number()); }
inline Real exp(Real power_of_e) { return elementary::exp(power_of_e.number()); }
inline Real power(Real base, Real exponent) { return elementary::pow(base.number(), exponent.number()); }
inline Real sqrt(Real number) { return elementary::sqrt(number.number()); }
inline Real abs(Real number) { return std::fabs(number.number()); }
inline Real floor(Real number) { return std::floor(number.number()); }
inline Real ceil(Real number) { return std::ceil(number.number()); }
inline Real sign(Real number) { return number > 0 ? 1 : number < 0 ? -1 : 0; }
inline Real min(Real a, Real b) { return b.number() < a.number() ? b : a; }
inline Real max(Real a, Real b) { return a.number() < b.number() ? b : a; }
inline Real clamp(Real value, Real low, Real high) { return min(high, max(low, value)); }  // low above high gives high
inline Real lerp(Real from, Real to, Real amount) { return from + (to - from) * amount; }
inline Real degtorad(Real degrees) { return degrees * (elementary::kPi / 180.0); }

// Points and directions: degrees, counter-clockwise, y downwards.
inline Real point_direction(Real x1, Real y1, Real x2, Real y2) {
  return arena::point_direction(x1.number(), y1.number(), x2.number(), y2.number());
}
inline Real point_distance(Real x1, Real y1, Real x2, Real y2) {
  return arena::point_distance(x1.number(), y1.number(), x2.number(), y2.number());
}
inline Real lengthdir_x(Real length, Real angle) { return arena::lengthdir_x(length.number(), angle.number()); }
inline Real lengthdir_y(Real length, Real angle) { return arena::lengthdir_y(length.number(), angle.number()); }

// Chance. `random(x)` lies in [0, x); the integer ones include both ends.
inline Real random(Real below) { return game_random().unit() * below.number(); }
inline Real random_range(Real low, Real high) { return low + random(high - low); }
inline Real irandom(Real high) { return static_cast<double>(game_random().integer(0, saturate_int64(high.number()))); }
inline Real irandom_range(Real low, Real high) {
  return static_cast<double>(game_random().integer(saturate_int64(low.number()), saturate_int64(high.number())));
}
template <class... Choices>
Value choose(const Choices&... choices) {
  const Value all[] = {Value(as_value(choices))...};
  return all[game_random().integer(0, static_cast<std::int64_t>(sizeof...(Choices)) - 1)];
}

// Arrays, in place whoever holds them.
inline bool is_array(const Value& value) { return value.is_array() && value.array != nullptr; }
inline Real array_length(const Value& array) { return array.is_array() && array.array != nullptr ? array.array->length : 0; }
void array_push_slow(const Value& array, const Value& element);
inline void array_push(const Value& array, const Value& element, Here = Here(__builtin_LINE())) {
  if (array.is_array() && array.array != nullptr && array.array->flags == 0) [[likely]] {
    array_append(*array.array, element);
  } else {
    array_push_slow(array, element);
  }
}
// Copies elements over those of `target` from `to` on, which grows as needed; what lies outside `source` is left out.
void array_copy(const Value& target, Real to, const Value& source, Real from, Real count, Here = Here(__builtin_LINE()));
Value array_create(Real length, const Value& fill = 0);
void array_swap(const Value& array, Real first, Real second, Here = Here(__builtin_LINE()));

// Grids. A Grid is one whose handle was resolved once, for loops over its cells; columns and rows must be inside.
Value ds_grid_get(const Value& grid, Real column, Real row, Here = Here(__builtin_LINE()));
void ds_grid_set(const Value& grid, Real column, Real row, const Value& value, Here = Here(__builtin_LINE()));
class Grid {
 public:
  Grid(const Value& handle);
  Grid(VariableAccess&& handle) : Grid(Value(static_cast<VariableAccess&&>(handle))) {}
  bool has(int column, int row) const { return grid_->has(column, row); }
  const Value& at(int column, int row) const { return static_cast<const Value&>(grid_->at(column, row)); }
  void set(int column, int row, const Value& value) { grid_->set(column, row, value); }

  // The cells that exist among (column, row) and the eight around it, row by row. Their arrays are fetched into the cache together:
  // waiting for one after the other took a third of a crowd's frame.
  class Around {
   public:
    Around(DsGrid& grid, int column, int row) {
      column = std::clamp(column, -2, grid.width + 1);  // what lies far outside is as good as beside
      row = std::clamp(row, -2, grid.height + 1);
      for (int beside = row - 1; beside <= row + 1; ++beside) {
        for (int along = column - 1; along <= column + 1; ++along) {
          if (!grid.has(along, beside)) continue;
          const RValue& cell = grid.at(along, beside);
          cells_[count_++] = &cell;
          if (!cell.is_array()) continue;
          __builtin_prefetch(&cell.array->length);
          __builtin_prefetch(cell.array + 1);  // where the first few elements stand; asking the record would wait for it
        }
      }
    }
    struct Iterator {
      const RValue* const* at;
      const Value& operator*() const { return static_cast<const Value&>(**at); }
      Iterator& operator++() { return ++at, *this; }
      bool operator!=(const Iterator& other) const { return at != other.at; }
    };
    Iterator begin() const { return {cells_}; }
    Iterator end() const { return {cells_ + count_}; }

   private:
    const RValue* cells_[9];
    int count_ = 0;
  };
  Around around(int column, int row) const { return {*grid_, column, row}; }

 private:
  DsGrid* grid_;
};

// Fields by name. What is missing reads undefined.
Value variable_struct_get(const Value& target, const Value& name, Here = Here(__builtin_LINE()));
bool variable_struct_exists(const Value& target, const Value& name);

inline bool is_undefined(const Value& value) { return value.RValue::is_undefined(); }
inline bool instance_exists(const Value& target) {
  if (target.kind_bits != kNumber && target.kind_bits != kObject) return false;
  const CInstance* found = target.is_object() ? instance_of(target.object) : resolve_instance(to_int32(target));
  return found != nullptr && (found->is_alive || found->is_asleep);
}
// The value's text, as string() gives it.
inline Value string(const Value& value) { return make_string(to_text(value)); }

// Elements of an array, for `for (const Value& each : elements(list))`. The array may change meanwhile; the loop ends at its old length, or
// where it ends now when that comes first.
// The loop holds the array, whatever becomes of the variable it came from.
class Elements {
 public:
  explicit Elements(const Value& array)
      : array_(is_array(array) ? array.array : nullptr), count_(is_array(array) ? array.array->length : 0) {}
  struct Iterator {
    const ArrayRecord* array;
    std::int32_t at;
    const Value& operator*() const { return static_cast<const Value&>(array->elements[at]); }
    Iterator& operator++() { return ++at, *this; }
    bool operator!=(const Iterator& other) const { return at < other.at && at < array->length; }
  };
  Iterator begin() const { return {array_.get(), 0}; }
  Iterator end() const { return {array_.get(), count_}; }

 private:
  const ArrayHold array_;
  std::int32_t count_;
};
// The instances that an array names by id, each resolved (and reported when it is gone) as the loop arrives at it. The next few are
// fetched into the cache ahead.
class Instances {
 public:
  explicit Instances(const Value& array)
      : array_(is_array(array) ? array.array : nullptr), count_(is_array(array) ? array.array->length : 0) {
    for (std::int32_t i = 0; i < kAhead && i < count_; ++i) fetch(i);
  }
  struct Iterator {
    const Instances* over;
    std::int32_t at;
    Instance operator*() const { return Instance(static_cast<const Value&>(over->array_->elements[at])); }
    Iterator& operator++() {
      ++at;
      if (at + kAhead <= std::min(over->count_, over->array_->length)) over->fetch(at + kAhead - 1);
      return *this;
    }
    bool operator!=(const Iterator& other) const { return at < other.at && at < over->array_->length; }
  };
  Iterator begin() const { return {this, 0}; }
  Iterator end() const { return {this, count_}; }

 private:
  static constexpr std::int32_t kAhead = 8;
  void fetch(std::int32_t at) const {
    const RValue& element = array_->elements[at];
    if (element.kind_bits != kNumber) return;
    if (const CInstance* found = world().find(saturate_int32(element.real))) __builtin_prefetch(&found->x);
  }
  const ArrayHold array_;
  std::int32_t count_;
};
inline Instances instances(const Value& array) { return Instances(array); }
inline Elements elements(const Value& array) { return Elements(array); }

}  // namespace arena::script

// A using-directive alone would leave these beside the functions of C.
namespace game {
using arena::script::abs;
using arena::script::alarm;
using arena::script::ceil;
using arena::script::cos;
using arena::script::exp;
using arena::script::floor;
using arena::script::random;
using arena::script::sin;
using arena::script::sqrt;
using arena::script::tan;
}  // namespace game
