#include "toolkit/support/structs.h"

#include <cctype>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "runtime/script/native.h"

namespace game {
namespace {

bool is_struct(const Value& value) { return value.is_object() && value.object->object_kind == ObjectKind::kStruct; }

// Copies containers, however deep and in whatever circles they stand: each once. What is found is filled in later, not by recursion.
class DeepCopy {
 public:
  Value of(const Value& value) {
    const Value copy = known_or_new(value);
    while (!pending_.empty()) {
      const auto [from, into] = pending_.back();
      pending_.pop_back();
      fill(from, into);
    }
    return copy;
  }

 private:
  Value known_or_new(const Value& value) {
    if (!is_array(value) && !is_struct(value)) return value;
    const auto [place, is_new] = copies_.try_emplace(value.pointer);
    if (is_new) {
      place->second = is_array(value) ? array_create(0) : struct_of({});
      pending_.emplace_back(value, place->second);
    }
    return place->second;
  }
  void fill(const Value& from, const Value& into) {
    if (is_array(from)) {
      for (const Value& each : elements(from)) array_push(into, known_or_new(each));
      return;
    }
    const Value names = variable_struct_get_names(from);
    for (const Value& each : elements(names)) variable_struct_set(into, each, known_or_new(variable_struct_get(from, each)));
  }

  std::map<const void*, Value> copies_;
  std::vector<std::pair<Value, Value>> pending_;  // from, into
};

void merge(const Value& whole_into, const Value& whole_from) {
  DeepCopy copy;
  std::set<const void*> seen{whole_from.pointer};
  std::vector<std::pair<Value, Value>> pending{{whole_into, whole_from}};
  while (!pending.empty()) {
    const auto [into, from] = pending.back();
    pending.pop_back();
    const Value names = variable_struct_get_names(from);
    for (const Value& each : elements(names)) {
      const Value ours = variable_struct_get(into, each), theirs = variable_struct_get(from, each);
      if (!is_struct(ours) || !is_struct(theirs)) {
        variable_struct_set(into, each, copy.of(theirs));
      } else if (seen.insert(theirs.pointer).second) {
        pending.emplace_back(ours, theirs);
      }
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
}  // namespace game

SCRIPT(struct_copy_deep, Value of) { return DeepCopy().of(of); }

SCRIPT(struct_merge, Value into, Value from) {
  if (!is_struct(into) || !is_struct(from)) return into;
  merge(into, from);
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

SCRIPT(string_has_length, Value text, Value shortest, Value longest) {
  if (!text.is_string()) return false;
  const Real length = string_length(text);
  return length >= shortest && length <= longest;
}

SCRIPT(string_has_only, Value text, Value allowed) {
  if (!text.is_string() || !allowed.is_string()) return false;
  for (Real i = 1; i <= string_length(text); i += 1) {
    if (string_pos(string_char_at(text, i), allowed) == 0) return false;
  }
  return true;
}
