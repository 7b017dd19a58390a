// Text. Positions count characters (not bytes) from 1; a position out of range is moved to the nearest end.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "runtime/values/elementary.h"
#include "runtime/values/number_text.h"
#include "runtime/values/operators.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {
namespace {

bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::int32_t characters(std::string_view text) {
  return static_cast<std::int32_t>(std::count_if(text.begin(), text.end(), [](char byte) { return !continues(byte); }));
}

// The byte at which character `position` (from 1) starts; the end when there are fewer.
std::size_t byte_at(std::string_view text, std::int32_t position) {
  std::size_t at = 0;
  for (std::int32_t passed = 1; passed < position && at < text.size(); ++passed) {
    ++at;
    while (at < text.size() && continues(text[at])) ++at;
  }
  return at;
}

std::string_view piece(std::string_view text, std::int32_t from, std::int32_t count) {
  if (count <= 0) return {};
  const std::size_t start = byte_at(text, std::max(from, 1));
  return text.substr(start, byte_at(text.substr(start), count < INT32_MAX ? count + 1 : count));
}

std::string replaced(std::string_view text, std::string_view part, std::string_view by, bool all) {
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = 0; !part.empty() && (at = text.find(part, from)) != std::string_view::npos;) {
    result.append(text.substr(from, at - from)).append(by);
    from = at + part.size();
    if (!all) break;
  }
  return result.append(text.substr(from));
}

template <class Change>
std::string mapped(std::string_view text, Change change) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), change);
  return result;
}

// "{0}" and so on are replaced by the arguments.
std::string string_of(const RValue& value, Rest values) {
  std::string text = to_text(value);
  for (std::size_t i = 0; i < values.size(); ++i) text = replaced(text, "{" + std::to_string(i) + "}", to_text(values[i]), true);
  return text;
}
std::string string_concat(Rest values) {
  std::string text;
  for (const RValue& value : values) text += to_text(value);
  return text;
}
double string_to_real(const CallContext& call, const RValue& value) {
  (void)call;
  return to_real(value);
}
std::int32_t string_length(std::string_view text) { return characters(text); }
std::int32_t string_byte_length(std::string_view text) { return static_cast<std::int32_t>(text.size()); }
std::int32_t string_pos(std::string_view part, std::string_view text) {
  const std::size_t at = text.find(part);
  return at == std::string_view::npos ? 0 : characters(text.substr(0, at)) + 1;
}
std::string_view string_copy(std::string_view text, std::int32_t from, std::int32_t count) { return piece(text, from, count); }
std::string_view string_char_at(std::string_view text, std::int32_t position) { return piece(text, position, 1); }
std::string string_delete(std::string_view text, std::int32_t from, std::int32_t count) {
  const std::string_view gone = piece(text, from, count);
  if (gone.empty()) return std::string(text);
  const std::size_t start = static_cast<std::size_t>(gone.data() - text.data());
  return std::string(text.substr(0, start)).append(text.substr(start + gone.size()));
}
std::string string_insert(std::string_view part, std::string_view text, std::int32_t position) {
  return std::string(text).insert(byte_at(text, position), part);
}
std::string string_replace(std::string_view text, std::string_view part, std::string_view by) { return replaced(text, part, by, false); }
std::string string_replace_all(std::string_view text, std::string_view part, std::string_view by) { return replaced(text, part, by, true); }
std::int32_t string_count(std::string_view part, std::string_view text) {
  std::int32_t count = 0;
  for (std::size_t at = 0; !part.empty() && (at = text.find(part, at)) != std::string_view::npos; at += part.size()) ++count;
  return count;
}
std::string string_upper(std::string_view text) {
  return mapped(text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
}
std::string string_lower(std::string_view text) {
  return mapped(text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
}
std::string string_repeat(std::string_view text, std::int32_t count) {
  std::string result;
  if (!check_text_length(text.size() * static_cast<std::size_t>(std::max(count, 0)))) return result;
  for (std::int32_t i = 0; i < count && !text.empty(); ++i) result += text;
  return result;
}
std::string string_digits(std::string_view text) {
  std::string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), [](char c) { return c >= '0' && c <= '9'; });
  return result;
}
std::string string_letters(std::string_view text) {
  std::string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), [](char c) { return (c | 32) >= 'a' && (c | 32) <= 'z'; });
  return result;
}
std::string string_trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}
bool string_starts_with(std::string_view text, std::string_view part) { return text.starts_with(part); }
bool string_ends_with(std::string_view text, std::string_view part) { return text.ends_with(part); }
RValue string_split(std::string_view text, std::string_view separator) {
  RValue parts = make_array();
  std::size_t from = 0;
  for (std::size_t at; !separator.empty() && (at = text.find(separator, from)) != std::string_view::npos; from = at + separator.size()) {
    array_append(*parts.array, make_string(text.substr(from, at - from)));
  }
  array_append(*parts.array, make_string(text.substr(from)));
  return parts;
}
std::string string_join(std::string_view separator, Rest values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) text.append(i > 0 ? separator : std::string_view()).append(to_text(values[i]));
  return text;
}
std::string string_format(double number, std::int32_t width, std::int32_t decimals) {
  const double scale = elementary::pow(10.0, std::clamp(decimals, 0, 15));
  const bool negative = number < 0;
  const std::string digits = real_to_text(std::floor(std::fabs(number) * scale + 0.5));
  std::string text = digits;
  if (decimals > 0) {
    const std::size_t places = static_cast<std::size_t>(std::min(decimals, 15));
    if (text.size() <= places) text.insert(0, places + 1 - text.size(), '0');
    text.insert(text.size() - places, ".");
  }
  if (negative) text.insert(0, "-");
  const std::size_t wanted = static_cast<std::size_t>(std::max(width, 0)) + (decimals > 0 ? static_cast<std::size_t>(decimals) + 1 : 0);
  return text.size() < wanted ? std::string(wanted - text.size(), ' ') + text : text;
}
std::string chr(std::uint32_t code) {
  std::string text;
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 63))};
  } else if (code < 0x10000) {
    text += {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 63)), static_cast<char>(0x80 | (code & 63))};
  } else {
    text += {static_cast<char>(0xF0 | (code >> 18 & 7)), static_cast<char>(0x80 | (code >> 12 & 63)),
             static_cast<char>(0x80 | (code >> 6 & 63)), static_cast<char>(0x80 | (code & 63))};
  }
  return text;
}
std::int32_t ord(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned char lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::int32_t code = length == 1 ? lead : lead & (0x7F >> length);
  for (std::size_t i = 1; i < length && i < text.size(); ++i) code = code << 6 | (static_cast<unsigned char>(text[i]) & 63);
  return code;
}
std::string type_of(const RValue& value) { return type_name(value); }

// Conversions and questions of kind
RValue to_int64_value(NumberOrPointer value) { return RValue::of_int64(to_int64(value.value)); }
RValue to_pointer_value(NumberOrPointer value) {
  return RValue::of_pointer(reinterpret_cast<void*>(static_cast<std::intptr_t>(to_int64(value.value))));
}
RValue pointer_address(PointerArgument pointer) {
  return RValue::of_int64(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(pointer.pointer)));
}
bool to_bool_value(const RValue& value) { return to_bool(value); }
bool is_real(const RValue& value) { return value.kind() == kNumber; }
bool is_numeric(const RValue& value) { return value.is_numeric() || value.kind() == kInt32 || value.kind() == kInt64; }
bool is_string(const RValue& value) { return value.is_string(); }
bool is_array(const RValue& value) { return value.is_array(); }
bool is_bool(const RValue& value) { return value.kind() == kBool; }
bool is_int32(const RValue& value) { return value.kind() == kInt32; }
bool is_int64(const RValue& value) { return value.kind() == kInt64; }
bool is_undefined(const RValue& value) { return value.is_undefined(); }
bool is_ptr(const RValue& value) { return value.kind() == kPointer; }
bool is_struct(const RValue& value) { return value.is_object() && std::string_view(type_name(value)) == "struct"; }
bool is_method(const RValue& value) { return value.is_object() && std::string_view(type_name(value)) == "method"; }
bool is_nan(const RValue& value) { return value.is_numeric() && std::isnan(value.real); }
bool is_infinity(const RValue& value) { return value.is_numeric() && std::isinf(value.real); }
RValue sum_of_numbers(NumberValue left, NumberValue right) { return op_add(left.value, right.value); }

const BuiltinEntry kEntries[] = {
    {"string", builtin<string_of>},
    {"string_concat", builtin<string_concat>},
    {"real", builtin<string_to_real>},
    {"string_length", builtin<string_length>},
    {"string_byte_length", builtin<string_byte_length>},
    {"string_pos", builtin<string_pos>},
    {"string_copy", builtin<string_copy>},
    {"string_char_at", builtin<string_char_at>},
    {"string_delete", builtin<string_delete>},
    {"string_insert", builtin<string_insert>},
    {"string_replace", builtin<string_replace>},
    {"string_replace_all", builtin<string_replace_all>},
    {"string_count", builtin<string_count>},
    {"string_upper", builtin<string_upper>},
    {"string_lower", builtin<string_lower>},
    {"string_repeat", builtin<string_repeat>},
    {"string_digits", builtin<string_digits>},
    {"string_letters", builtin<string_letters>},
    {"string_trim", builtin<string_trim>},
    {"string_starts_with", builtin<string_starts_with>},
    {"string_ends_with", builtin<string_ends_with>},
    {"string_split", builtin<string_split>},
    {"string_join", builtin<string_join>},
    {"string_format", builtin<string_format>},
    {"chr", builtin<chr>},
    {"ord", builtin<ord>},
    {"typeof", builtin<type_of>},
    {"int64", builtin<to_int64_value>},
    {"ptr", builtin<to_pointer_value>},
    {"ptr_address", builtin<pointer_address>},
    {"bool", builtin<to_bool_value>},
    {"is_real", builtin<is_real>},
    {"is_numeric", builtin<is_numeric>},
    {"is_string", builtin<is_string>},
    {"is_array", builtin<is_array>},
    {"is_bool", builtin<is_bool>},
    {"is_int32", builtin<is_int32>},
    {"is_int64", builtin<is_int64>},
    {"is_undefined", builtin<is_undefined>},
    {"is_ptr", builtin<is_ptr>},
    {"is_struct", builtin<is_struct>},
    {"is_method", builtin<is_method>},
    {"is_nan", builtin<is_nan>},
    {"is_infinity", builtin<is_infinity>},
    {"number_sum", builtin<sum_of_numbers>},
};
const BuiltinTable table(kEntries);

}  // namespace
}  // namespace arena
