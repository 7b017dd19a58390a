#include "runtime/values/text.h"

#include <algorithm>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/object.h"
#include "runtime/instances_loop/instance_id.h"
#include "runtime/values/number_text.h"
#include "runtime/values/refs.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/names.h"
#include "runtime/variables_calls/report.h"

namespace arena {
namespace {

constexpr std::size_t kLongestInMessage = 200;  // bytes of an operand shown in an error

// Writes one value; remembers the containers it is inside of, so that cycles are cut. Ends early, past `longest` bytes.
class TextWriter {
 public:
  TextWriter(bool reports_unset, std::size_t longest) : reports_unset_(reports_unset), longest_(longest) {}
  std::string text;

  void write(const RValue& value, bool is_nested) {
    if (text.size() > longest_) return;
    switch (value.kind()) {
      case kNumber: text += real_to_text(value.real); break;
      case kBool: text += value.real > 0.5 ? "true" : "false"; break;
      case kString: write_string(value, is_nested); break;
      case kArray: write_array(value); break;
      case kPointer: text += pointer_text(value); break;
      case kUndefined: text += "undefined"; break;
      case kObject: write_object(value); break;
      case kInt32: text += std::to_string(value.i32); break;
      case kInt64: text += std::to_string(value.i64); break;
      case kNull: text += "null"; break;
      case kRef: write_ref(value); break;
      case kUnset:
        if (reports_unset_) {
          report_error(messages::kTextUnset);
        } else {
          text += "unset";
        }
        break;
      default: text += type_name(value); break;
    }
  }

 private:
  void write_string(const RValue& value, bool is_nested) {
    if (is_nested) text += '"';
    text += text_of(value);
    if (is_nested) text += '"';
  }

  static std::string pointer_text(const RValue& value) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits(16, '0');
    std::uint64_t rest = static_cast<std::uint64_t>(value.i64);
    for (std::size_t i = 16; i-- > 0; rest >>= 4) digits[i] = kDigits[rest & 15];
    return digits;
  }

  bool enter(const void* container, const char* warning) {
    if (std::find(inside_.begin(), inside_.end(), container) != inside_.end()) {
      text += warning;
      return false;
    }
    if (inside_.size() >= kDeepestShown) {
      text += "...";
      return false;
    }
    inside_.push_back(container);
    return true;
  }

  void write_array(const RValue& value) {
    if (value.array == nullptr) {
      text += "[]";
      return;
    }
    if (!enter(value.array, "\"Warning: recursive array found\"")) return;
    text += '[';
    for (std::int32_t i = 0; i < value.array->length && text.size() <= longest_; ++i) {
      if (i > 0) text += ',';
      write(value.array->elements[i], true);
    }
    text += ']';
    inside_.pop_back();
  }

  void write_object(const RValue& value) {
    if (value.object == nullptr) {
      text += "null";
      return;
    }
    switch (value.object->object_kind) {
      case ObjectKind::kMethod:
      case ObjectKind::kScriptRef: text += "[[Method]]"; return;
      case ObjectKind::kInstance: text += "ref instance " + std::to_string(instance_id_of(*value.object)); return;
      default: break;
    }
    if (value.object->is_exception) {
      text += "[[WBKSLException]]";
      return;
    }
    if (!enter(value.object, "\"Warning: recursive struct found\"")) return;
    text += '{';
    PropertyObject* object = property_object(value);
    bool first = true;
    for (const std::int32_t id : object->variable_ids()) {
      if (!first) text += ',';
      first = false;
      text += variable_name(id);
      text += ':';
      write(*object->find_variable(id), true);
    }
    text += '}';
    inside_.pop_back();
  }

  void write_ref(const RValue& value) {
    const RefKind* const kind = find_ref_kind(value.ref_type());
    const std::string name = kind != nullptr && kind->name_of != nullptr ? kind->name_of(value.i32) : std::string();
    text += std::string("ref ") + (kind != nullptr ? kind->name : "unknown") + " " + (name.empty() ? std::to_string(value.i32) : name);
  }

  bool reports_unset_;
  std::size_t longest_;
  std::vector<const void*> inside_;
};

}  // namespace

std::string to_text(const RValue& value) {
  TextWriter writer(true, kLongestText);
  writer.write(value, false);
  if (!check_text_length(writer.text.size())) return {};
  return std::move(writer.text);
}

std::string text_for_message(const RValue& value) {
  TextWriter writer(false, kLongestInMessage);
  writer.write(value, false);
  if (writer.text.size() > kLongestInMessage) writer.text.resize(kLongestInMessage);
  return std::move(writer.text);
}

}  // namespace arena
