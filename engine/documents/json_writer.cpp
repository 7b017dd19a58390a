#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/documents/json_values.h"
#include "engine/formats/utf8.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/containers.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/program/names.h"
#include "runtime/values/number_text.h"
#include "runtime/values/refs.h"
#include "runtime/values/strings.h"

namespace arena::documents {
namespace {

class Writer {
 public:
  Writer(bool in_lines, std::string& into, std::string& problem) : in_lines_(in_lines), out_(into), problem_(problem) {}

  bool write(const RValue& value) {
    if (out_.size() > kLongestJson) return fail("the text would have more than " + std::to_string(kLongestJson) + " bytes");
    switch (value.kind()) {
      case kNumber: return number(value.real);
      case kBool: return put(value.real > 0.5 ? "true" : "false");
      case kInt32: return put(std::to_string(value.i32));
      case kInt64: return put(std::to_string(value.i64));
      case kString: return text(text_of(value));
      case kNull: return put("null");
      case kUndefined: return special("undefined");
      case kArray: return array(value);
      case kObject: return object(value);
      case kRef: return reference(value);
      default: return fail(std::string("a ") + type_name(value) + " cannot be kept as JSON");
    }
  }

 private:
  bool fail(const std::string& what) {
    problem_ = what;
    return false;
  }
  bool put(std::string_view words) {
    out_ += words;
    return true;
  }
  bool special(std::string_view word) { return put("{\"@@value\":\"") && put(word) && put("\"}"); }
  bool number(double real) {
    if (std::isnan(real)) return special("NaN");
    if (std::isinf(real)) return special(real > 0 ? "inf" : "-inf");
    const std::string exact = real_to_exact_text(real);
    return put(exact) && (exact.find_first_of(".e") != std::string::npos || put(".0"));
  }
  bool text(std::string_view bytes) {
    if (!formats::is_utf8(bytes)) return fail("a text that is no UTF-8 cannot be kept as JSON");
    out_ += '"';
    for (const char each : bytes) {
      switch (each) {
        case '"': out_ += "\\\""; break;
        case '\\': out_ += "\\\\"; break;
        case '\n': out_ += "\\n"; break;
        case '\r': out_ += "\\r"; break;
        case '\t': out_ += "\\t"; break;
        default:
          if (static_cast<unsigned char>(each) < ' ' || each == 127) {
            out_ += "\\u00";
            out_ += "0123456789abcdef"[each >> 4];
            out_ += "0123456789abcdef"[each & 15];
          } else {
            out_ += each;
          }
      }
    }
    out_ += '"';
    return true;
  }
  void new_line() {
    if (in_lines_) out_ += '\n' + std::string(2 * inside_.size(), ' ');
  }
  // False after a problem: what holds itself, or stands too deep.
  bool enter(const void* container) {
    if (std::find(inside_.begin(), inside_.end(), container) != inside_.end()) return fail("what holds itself cannot be kept as JSON");
    if (inside_.size() >= kDeepestJson) return fail("more than " + std::to_string(kDeepestJson) + " containers stand inside one another");
    inside_.push_back(container);
    return true;
  }
  // `each` writes one element and gives whether it could.
  template <class Each>
  bool container(const void* which, std::size_t count, char open, char close, Each each) {
    if (!enter(which)) return false;
    out_ += open;
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) out_ += ',';
      new_line();
      if (!each(i)) return false;
    }
    inside_.pop_back();
    if (count > 0) new_line();
    out_ += close;
    return true;
  }
  bool key(std::string_view name) { return text(name) && put(in_lines_ ? ": " : ":"); }
  bool array(const RValue& value) {
    const ArrayRecord* const elements = value.array;
    const std::size_t count = elements != nullptr ? static_cast<std::size_t>(elements->length) : 0;
    return container(elements, count, '[', ']', [&](std::size_t at) { return write(elements->elements[at]); });
  }
  bool object(const RValue& value) {
    if (value.object == nullptr) return put("null");
    if (value.object->object_kind != ObjectKind::kStruct) {
      return fail(value.object->object_kind == ObjectKind::kInstance ? "an instance cannot be kept as JSON"
                                                                     : "a method cannot be kept as JSON");
    }
    PropertyObject* const fields = property_object(value);
    std::vector<std::int32_t> ids = fields->variable_ids();
    std::erase_if(ids, [&](std::int32_t id) { return fields->find_variable(id)->is_unset(); });
    return container(fields, ids.size(), '{', '}',
                     [&](std::size_t at) { return key(variable_name(ids[at])) && write(*fields->find_variable(ids[at])); });
  }
  bool reference(const RValue& value) {
    const std::int32_t handle = static_cast<std::int32_t>(value.i64 & 0xFFFFFFFF);
    if (DsList* const list = value.ref_type() == ref_type::kList ? ds_lists().find(handle) : nullptr)
      return container(list, list->values.size(), '[', ']', [&](std::size_t at) { return write(list->values[at]); });
    DsMap* const map = value.ref_type() == ref_type::kMap ? ds_maps().find(handle) : nullptr;
    if (map == nullptr) return fail("a reference to what is no list and no map cannot be kept as JSON");
    auto next = map->values.begin();
    return container(map, map->values.size(), '{', '}', [&](std::size_t) {
      const auto& [name, content] = *next++;
      if (!name.is_text) return fail("a map with a number as its key cannot be kept as JSON");
      return key(name.text) && write(content);
    });
  }

  bool in_lines_;
  std::string& out_;
  std::string& problem_;
  std::vector<const void*> inside_;
};

}  // namespace

bool write_json(const RValue& value, bool in_lines, std::string& into, std::string& problem) {
  into.clear();
  problem.clear();
  return Writer(in_lines, into, problem).write(value);
}

}  // namespace arena::documents
