#include "engine/console/value_json.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/program/names.h"
#include "runtime/values/strings.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::console {
namespace {

using json = nlohmann::ordered_json;

constexpr const char* kLeftOut = "...";  // what lies too deep, or comes too late

struct Walk {
  std::vector<const void*> inside;
  int left = 1000000;  // values
  bool is_inside(const void* container) const { return std::find(inside.begin(), inside.end(), container) != inside.end(); }
  bool goes_on() const { return left > 0 && inside.size() < kDeepestShown; }
};

json convert(const RValue& value, Walk& walk);

json convert_array(const ArrayRecord* array, Walk& walk) {
  if (array == nullptr) return json::array();
  if (walk.is_inside(array)) return "Warning: recursive array found";
  if (!walk.goes_on()) return kLeftOut;
  walk.inside.push_back(array);
  json list = json::array();
  for (std::int32_t i = 0; i < array->length && walk.left > 0; ++i) list.push_back(convert(array->elements[i], walk));
  walk.inside.pop_back();
  return list;
}

json convert_object(const RValue& value, Walk& walk) {
  if (value.object == nullptr) return nullptr;
  if (const CInstance* instance = instance_of(value.object)) return {{"instance", instance->id}, {"object", instance->called()}};
  if (value.object->object_kind == ObjectKind::kMethod || value.object->object_kind == ObjectKind::kScriptRef) return "[[Method]]";
  if (walk.is_inside(value.object)) return "Warning: recursive struct found";
  if (!walk.goes_on()) return kLeftOut;
  walk.inside.push_back(value.object);
  json fields = json::object();
  PropertyObject* object = property_object(value);
  for (const std::int32_t id : object->variable_ids()) fields[std::string(variable_name(id))] = convert(*object->find_variable(id), walk);
  walk.inside.pop_back();
  return fields;
}

json convert(const RValue& value, Walk& walk) {
  --walk.left;
  switch (value.kind()) {
    case kNumber: return real_to_json(value.real);
    case kBool: return value.real > 0.5;
    case kString: return text_of(value);
    case kArray: return convert_array(value.array, walk);
    case kObject: return convert_object(value, walk);
    case kInt32: return value.i32;
    case kInt64: return value.i64;
    case kRef: return {{"ref", value.ref_type()}, {"index", value.i32}};
    case kPointer: return text_for_message(value);
    case kUnset: return "unset";
    default: return nullptr;
  }
}

}  // namespace

json real_to_json(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  if (number == std::floor(number) && std::fabs(number) < 9007199254740992.0) return static_cast<std::int64_t>(number);
  return number;
}

json value_to_json(const RValue& value) {
  Walk walk;
  return convert(value, walk);
}

}  // namespace arena::console
