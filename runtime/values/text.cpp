#include "runtime/values/text.h"

#include <algorithm>

#include "runtime/reports/report.h"
#include "runtime/values/array_record.h"
#include "runtime/values/number_text.h"
#include "runtime/values/object_base.h"
#include "runtime/values/refs.h"
#include "runtime/values/strings.h"

namespace arena {
namespace {

constexpr std::size_t kLongestInMessage = 200;  // bytes of an operand shown in an error

std::string pointer_text(const RValue& value) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string digits(16, '0');
  std::uint64_t rest = static_cast<std::uint64_t>(value.i64);
  for (std::size_t i = 16; i-- > 0; rest >>= 4) digits[i] = kDigits[rest & 15];
  return digits;
}

}  // namespace

void TextWriter::write(const RValue& value, bool is_nested) {
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

void TextWriter::write_string(const RValue& value, bool is_nested) {
  if (is_nested) text += '"';
  text += text_of(value);
  if (is_nested) text += '"';
}

bool TextWriter::enter(const void* container, const char* warning) {
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

void TextWriter::write_array(const RValue& value) {
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

void TextWriter::write_object(const RValue& value) {
  if (value.object == nullptr) {
    text += "null";
    return;
  }
  switch (value.object->object_kind) {
    case ObjectKind::kMethod:
    case ObjectKind::kScriptRef: text += "[[Method]]"; return;
    case ObjectKind::kInstance: text += "ref instance " + std::to_string(value.object->as_number()); return;
    default: break;
  }
  if (value.object->is_exception) {
    text += "[[WBKSLException]]";
    return;
  }
  if (!enter(value.object, "\"Warning: recursive struct found\"")) return;
  text += '{';
  value.object->write_variables(*this);
  text += '}';
  inside_.pop_back();
}

void TextWriter::write_ref(const RValue& value) {
  const RefKind* const kind = find_ref_kind(value.ref_type());
  const std::string name = kind != nullptr && kind->name_of != nullptr ? kind->name_of(value.i32) : std::string();
  text += std::string("ref ") + (kind != nullptr ? kind->name : "unknown") + " " + (name.empty() ? std::to_string(value.i32) : name);
}

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
