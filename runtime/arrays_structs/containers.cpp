#include "runtime/arrays_structs/containers.h"

#include "runtime/values/conversions.h"
#include "runtime/values/strings.h"

namespace arena {

ContainerTable<DsList>& ds_lists() {
  static ContainerTable<DsList> table;
  return table;
}
ContainerTable<DsMap>& ds_maps() {
  static ContainerTable<DsMap> table;
  return table;
}
ContainerTable<DsGrid>& ds_grids() {
  static ContainerTable<DsGrid> table;
  return table;
}

void reset_containers() {
  ds_lists().clear();
  ds_maps().clear();
  ds_grids().clear();
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
