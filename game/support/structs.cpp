#include "game/support/structs.h"

#include <cctype>
#include <map>

#include "runtime/script/native.h"

namespace arena::game {
namespace {

const Builtin string_length{"string_length"}, string_char_at{"string_char_at"}, string_pos{"string_pos"};

using Copies = std::map<const void*, Value>;

bool is_struct(const Value& value) { return value.is_object() && value.object->object_kind == ObjectKind::kStruct; }

Value copy_of(const Value& of, Copies& copies) {
  if (!is_array(of) && !is_struct(of)) return of;
  const void* const identity = of.pointer;
  if (const auto known = copies.find(identity); known != copies.end()) return known->second;
  if (is_array(of)) {
    const Value made = array_create(0);
    copies.emplace(identity, made);
    for (const Value& each : elements(of)) array_push(made, copy_of(each, copies));
    return made;
  }
  const Value made = struct_of({});
  copies.emplace(identity, made);
  const Value names = variable_struct_get_names(of);
  for (const Value& each : elements(names)) variable_struct_set(made, each, copy_of(variable_struct_get(of, each), copies));
  return made;
}

void merge(const Value& into, const Value& from, std::map<const void*, bool>& done, Copies& copies) {
  if (done[from.pointer]) return;
  done[from.pointer] = true;
  const Value names = variable_struct_get_names(from);
  for (const Value& each : elements(names)) {
    const Value ours = variable_struct_get(into, each), theirs = variable_struct_get(from, each);
    if (is_struct(ours) && is_struct(theirs)) {
      merge(ours, theirs, done, copies);
    } else {
      variable_struct_set(into, each, copy_of(theirs, copies));
    }
  }
}

// The text of a value, or nothing for what is none.
std::string plain(const Value& value) { return value.is_string() ? std::string(text_of(value)) : std::string(); }

std::size_t digits(const std::string& text, std::size_t from) {
  std::size_t at = from;
  while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0) ++at;
  return at - from;
}
std::size_t sign_length(const std::string& text, std::size_t at) {
  return at < text.size() && (text[at] == '-' || text[at] == '+') ? 1 : 0;
}

}  // namespace
}  // namespace arena::game

SCRIPT(struct_copy_deep, Value of) {
  Copies copies;
  return copy_of(of, copies);
}

SCRIPT(struct_merge, Value into, Value from) {
  if (!is_struct(into) || !is_struct(from)) return into;
  std::map<const void*, bool> done;
  Copies copies;
  merge(into, from, done, copies);
  return into;
}

SCRIPT(string_is_empty, Value text) { return plain(text).find_first_not_of(" \t\r\n") == std::string::npos; }

SCRIPT(string_is_integer, Value text) {
  const std::string all = plain(text);
  const std::size_t from = sign_length(all, 0), count = digits(all, from);
  return count > 0 && from + count == all.size();
}

SCRIPT(string_is_number, Value text) {
  const std::string all = plain(text);
  std::size_t at = sign_length(all, 0);
  std::size_t count = digits(all, at);
  at += count;
  if (at < all.size() && all[at] == '.') {
    const std::size_t behind = digits(all, at + 1);
    count += behind;
    at += 1 + behind;
  }
  if (count == 0) return false;
  if (at < all.size() && (all[at] == 'e' || all[at] == 'E')) {
    const std::size_t from = at + 1 + sign_length(all, at + 1), power = digits(all, from);
    if (power == 0) return false;
    at = from + power;
  }
  return at == all.size();
}

SCRIPT(string_is_email, Value text) {
  const std::string all = plain(text);
  const std::size_t at = all.find('@'), dot = all.rfind('.');
  const bool has_parts = at != std::string::npos && at > 0 && dot != std::string::npos && dot > at + 1 && dot + 1 < all.size();
  return has_parts && all.find('@', at + 1) == std::string::npos && all.find_first_of(" \t\r\n") == std::string::npos &&
         all.find("..") == std::string::npos;
}

SCRIPT(string_has_length, Value text, Real shortest, Real longest) {
  if (!text.is_string()) return false;
  const Real length = string_length(text);
  return length >= shortest && length <= longest;
}

SCRIPT(string_has_only, Value text, Value allowed) {
  if (!text.is_string() || !allowed.is_string()) return false;
  for (Real i = 1; i <= Real(string_length(text)); i += 1) {
    if (Real(string_pos(string_char_at(text, i), allowed)) == 0) return false;
  }
  return true;
}
