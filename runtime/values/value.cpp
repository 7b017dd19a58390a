#include "runtime/values/value.h"

#include "runtime/values/array_record.h"
#include "runtime/values/object_base.h"
#include "runtime/values/strings.h"

namespace arena {
namespace {

constexpr const char* kTypeNames[] = {"number", "string", "array", "ptr",      "vec3", "undefined", "struct",   "int32",
                                      "vec4",   "vec44",  "int64", "accessor", "null", "bool",      "iterator", "ref"};

}  // namespace

void RValue::add_reference() noexcept {
  if (kind() == kString) {
    add_string_reference(string);
  } else if (kind() == kArray) {
    count_array_reference(array);
  } else if (kind() == kPointer) {
    flags &= ~kFlagOwnsPointer;
  }
}

void RValue::drop_reference() noexcept { release(*this); }

void release(RValue& value) {
  switch (value.kind()) {
    case kString:
      release_string(value.string);
      value.string = nullptr;
      break;
    case kArray: discount_array_reference(value.array); break;
    case kPointer:
      if ((value.flags & kFlagOwnsPointer) == 0) break;
      delete static_cast<OwnedObject*>(value.pointer);
      value.pointer = nullptr;
      value.flags &= ~kFlagOwnsPointer;
      break;
    default: break;
  }
}

const char* type_name(const RValue& value) {
  const std::uint32_t kind = value.kind();
  if (kind >= sizeof kTypeNames / sizeof *kTypeNames) return "unknown";
  if (kind == kObject && value.object != nullptr && value.object->object_kind == ObjectKind::kMethod) return "method";
  return kTypeNames[kind];
}

}  // namespace arena
