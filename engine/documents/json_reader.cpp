#include <nlohmann/json.hpp>
#include <vector>

#include "engine/documents/json_values.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/containers.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/program/names.h"
#include "runtime/values/refs.h"
#include "runtime/values/strings.h"

namespace arena::documents {
namespace {

// Builds values as the parser tells what it meets. A false ends the reading; nothing is thrown.
class Builder {
 public:
  using number_integer_t = nlohmann::json::number_integer_t;
  using number_unsigned_t = nlohmann::json::number_unsigned_t;
  using number_float_t = nlohmann::json::number_float_t;
  using string_t = nlohmann::json::string_t;
  using binary_t = nlohmann::json::binary_t;

  Builder(std::string_view text, bool as_maps, std::string& problem) : text_(text), as_maps_(as_maps), problem_(problem) {}

  bool null() { return add(RValue::null()); }
  bool boolean(bool value) { return add(RValue::of_bool(value)); }
  bool number_integer(number_integer_t value) { return add(RValue::of_int64(value)); }
  bool number_unsigned(number_unsigned_t value) {
    return add(value <= static_cast<number_unsigned_t>(INT64_MAX) ? RValue::of_int64(static_cast<std::int64_t>(value))
                                                                  : RValue(static_cast<double>(value)));
  }
  bool number_float(number_float_t value, const string_t&) { return add(RValue(value)); }
  bool string(string_t& value) { return add(make_string(value)); }
  bool binary(binary_t&) { return false; }
  bool start_array(std::size_t) { return begin(false); }
  bool end_array() { return end(); }
  bool start_object(std::size_t) { return begin(true); }
  bool key(string_t& value) {
    open_.back().key = value;
    return true;
  }
  bool end_object() { return end(); }
  bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception& error) {
    if (!problem_.empty()) return false;
    // The library's sentence behind its number and place, and what it says of its own state.
    std::string what = error.what();
    const std::size_t colon = what.find(": ");
    if (colon != std::string::npos) what.erase(0, colon + 2);
    if (what.starts_with("syntax error ") && what.find(" - ") != std::string::npos) what.erase(0, what.find(" - ") + 3);
    if (const std::size_t last_read = what.find("; last read: "); last_read != std::string::npos) what.erase(last_read);
    problem_ = place(position > 0 ? position - 1 : 0) + what;
    return false;
  }

  RValue take() { return static_cast<RValue&&>(root_); }

 private:
  struct Open {
    RValue value;
    std::string key;
  };
  std::string place(std::size_t at) const {
    std::size_t line = 1, begin = 0;
    at = std::min(at, text_.size());
    for (std::size_t i = 0; i < at; ++i) {
      if (text_[i] != '\n') continue;
      ++line;
      begin = i + 1;
    }
    return "line " + std::to_string(line) + ", column " + std::to_string(at - begin + 1) + ": ";
  }
  // A value is whole: it goes where it belongs.
  bool add(const RValue& value) {
    if (open_.empty()) {
      root_ = value;
      return true;
    }
    Open& holder = open_.back();
    if (holder.value.kind() == kRef) {
      const std::int32_t handle = static_cast<std::int32_t>(holder.value.i64 & 0xFFFFFFFF);
      if (holder.value.ref_type() == ref_type::kList) {
        ds_lists().find(handle)->values.push_back(value);
      } else {
        ds_maps().find(handle)->values[DsMap::key_of(make_string(holder.key))] = value;
      }
    } else if (holder.value.is_array()) {
      if (holder.value.array->length >= kLongestArray) return problem_ = "an array is too long", false;
      array_append(*holder.value.array, value);
    } else {
      store_variable(property_object(holder.value), variable_id(holder.key), value);
    }
    return true;
  }
  bool begin(bool is_object) {
    if (open_.size() >= kDeepestJson)
      return problem_ = "more than " + std::to_string(kDeepestJson) + " containers stand inside one another", false;
    RValue made;
    if (as_maps_) {
      made = is_object ? RValue::of_ref(ref_type::kMap, ds_maps().create()) : RValue::of_ref(ref_type::kList, ds_lists().create());
      made_.push_back(made);
    } else {
      made = is_object ? make_struct() : make_array();
    }
    open_.push_back({made, ""});
    return true;
  }
  bool end() {
    const RValue whole = as_maps_ ? meant_by_map(open_.back().value) : meant(open_.back().value);
    open_.pop_back();
    return add(whole);
  }
  // What stands for a value that JSON has not.
  static RValue meant(const RValue& value) {
    PropertyObject* const object = property_object(value);
    if (object == nullptr || object->variable_count() != 1) return value;
    const RValue* const found = object->find_variable(find_variable_id("@@value"));
    return found != nullptr && found->is_string() ? named(text_of(*found), value) : value;
  }
  RValue meant_by_map(const RValue& value) {
    if (value.ref_type() != ref_type::kMap) return value;
    const std::int32_t handle = static_cast<std::int32_t>(value.i64 & 0xFFFFFFFF);
    const auto& values = ds_maps().find(handle)->values;
    if (values.size() != 1 || values.begin()->first.text != "@@value" || !values.begin()->second.is_string()) return value;
    const RValue special = named(text_of(values.begin()->second), value);
    if (special.kind() == kRef) return value;
    ds_maps().destroy(handle);
    made_.pop_back();  // nothing was made since
    return special;
  }
  static RValue named(std::string_view word, const RValue& otherwise) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (word == "undefined") return RValue();
    if (word == "NaN") return RValue(std::numeric_limits<double>::quiet_NaN());
    return word == "inf" ? RValue(kInfinity) : word == "-inf" ? RValue(-kInfinity) : otherwise;
  }

 public:
  // Of a text that turned out to be none.
  void destroy_made() {
    for (const RValue& each : made_) {
      const std::int32_t handle = static_cast<std::int32_t>(each.i64 & 0xFFFFFFFF);
      each.ref_type() == ref_type::kList ? ds_lists().destroy(handle) : ds_maps().destroy(handle);
    }
  }

 private:
  std::string_view text_;
  bool as_maps_;
  std::string& problem_;
  RValue root_;
  std::vector<Open> open_;
  std::vector<RValue> made_;  // lists and maps
};

}  // namespace

bool parse_json(std::string_view text, bool as_maps, RValue& into, std::string& problem) {
  problem.clear();
  if (text.size() > kLongestJson) {
    problem = "the text has more than " + std::to_string(kLongestJson) + " bytes";
    return false;
  }
  Builder builder(text, as_maps, problem);
  if (nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) {
    into = builder.take();
    return true;
  }
  builder.destroy_made();
  if (problem.empty()) problem = "the text is no JSON";
  return false;
}

}  // namespace arena::documents
