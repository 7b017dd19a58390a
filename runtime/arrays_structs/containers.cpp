#include "runtime/arrays_structs/containers.h"

#include "runtime/session/session.h"
#include "runtime/values/conversions.h"
#include "runtime/values/strings.h"

namespace arena {

namespace {
const StatePart<ContainerTable<DsList>> lists{PartLevel::kScripts, "lists"};
const StatePart<ContainerTable<DsMap>> maps{PartLevel::kScripts, "maps"};
const StatePart<ContainerTable<DsGrid>> grids{PartLevel::kScripts, "grids"};
}  // namespace

ContainerTable<DsList>& ds_lists() { return lists(); }
ContainerTable<DsMap>& ds_maps() { return maps(); }
ContainerTable<DsGrid>& ds_grids() { return grids(); }

void DsGrid::clear(const RValue& value) {
  const bool is_same = value.i64 == ground_.i64 && value.kind_bits == ground_.kind_bits && value.flags == ground_.flags;
  if (is_same && !value.owns_heap() && written_.size() < kMostRemembered) {
    for (const std::uint32_t index : written_) cells_[index] = value;
  } else {
    std::fill(cells_.begin(), cells_.end(), value);
    ground_ = value.owns_heap() ? RValue() : value;
    if (value.owns_heap()) ground_.kind_bits = kUnset;
  }
  written_.clear();
}

DsMap::Key DsMap::key_of(const RValue& value) {
  Key key;
  key.is_text = value.is_string();
  if (key.is_text) {
    key.text = text_of(value);
  } else {
    key.number = to_real(value);
  }
  return key;
}

RValue DsMap::value_of(const Key& key) { return key.is_text ? make_string(key.text) : RValue(key.number); }

}  // namespace arena
