#include "engine/console/value_json.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/instances_loop/resolve.h"
#include "runtime/values/strings.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/names.h"

namespace arena::console {
namespace {

using json = nlohmann::ordered_json;

json convert(const RValue& value, std::vector<const void*>& inside);

json convert_array(const ArrayRecord* array, std::vector<const void*>& inside) {
  if (array == nullptr) return json::array();
  if (std::find(inside.begin(), inside.end(), array) != inside.end()) return "Warning: recursive array found";
  inside.push_back(array);
  json list = json::array();
  for (std::int32_t i = 0; i < array->length; ++i) list.push_back(convert(array->elements[i], inside));
  inside.pop_back();
  return list;
}

json convert_object(const RValue& value, std::vector<const void*>& inside) {
  if (value.object == nullptr) return nullptr;
  if (const CInstance* instance = instance_of(value.object)) return {{"instance", instance->id}, {"object", object_name_of(*instance)}};
  if (value.object->object_kind == ObjectKind::kMethod || value.object->object_kind == ObjectKind::kScriptRef) return "[[Method]]";
  if (std::find(inside.begin(), inside.end(), value.object) != inside.end()) return "Warning: recursive struct found";
  inside.push_back(value.object);
  json fields = json::object();
  PropertyObject* object = property_object(value);
  for (const std::int32_t id : object->variable_ids()) fields[std::string(variable_name(id))] = convert(*object->find_variable(id), inside);
  inside.pop_back();
  return fields;
}

json convert(const RValue& value, std::vector<const void*>& inside) {
  switch (value.kind()) {
    case kNumber: return real_to_json(value.real);
    case kBool: return value.real > 0.5;
    case kString: return text_of(value);
    case kArray: return convert_array(value.array, inside);
    case kObject: return convert_object(value, inside);
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
  std::vector<const void*> inside;
  return convert(value, inside);
}

}  // namespace arena::console
