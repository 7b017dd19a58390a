#include "runtime/builtins/describe.h"

#include <cstring>
#include <map>

#include "runtime/builtins/kinds.h"
#include "runtime/program/functions.h"
#include "runtime/values/number_text.h"

namespace arena {
namespace {

// A star first takes nothing; where what follows does not fit, the last one takes a character more.
bool fits(std::string_view pattern, std::string_view name) {
  std::size_t at = 0, in_name = 0, star = std::string_view::npos, taken_to = 0;
  while (in_name < name.size()) {
    if (at < pattern.size() && pattern[at] == '*') {
      star = at++;
      taken_to = in_name;
    } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == name[in_name])) {
      ++at;
      ++in_name;
    } else if (star != std::string_view::npos) {
      at = star + 1;
      in_name = ++taken_to;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

std::string parameter_text(const Parameter& parameter) {
  const ParameterKind& kind = parameter.kind;
  std::string text = std::string(parameter.name) + ": " + kind.word;
  if (kind.is_bounded()) text += " from " + real_to_text(kind.low) + " to " + real_to_text(kind.high);
  if (kind.takes_the_rest) return text + " ...";
  if (kind.has_default) text += " = " + default_text(kind);
  return kind.may_be_left_out ? "[" + text + "]" : text;
}

std::string line_of(const BuiltinRow& row) {
  std::string arguments;
  for (const Parameter& parameter : row.parameters()) arguments += (arguments.empty() ? "" : ", ") + parameter_text(parameter);
  return std::string("| `") + row.text + "` | " + arguments + " | " + row.gives + " | " + row.sentence + " |\n";
}

}  // namespace

std::string default_text(const ParameterKind& kind) {
  if (std::strcmp(kind.word, script::Flag::kDescription.word) == 0) return kind.default_value > 0.5 ? "true" : "false";
  return real_to_text(kind.default_value);
}

std::vector<const BuiltinRow*> builtins_like(std::string_view pattern) {
  std::vector<const BuiltinRow*> found;
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    if (fits(pattern, builtin_at(i).name)) found.push_back(builtin_at(i).row);
  }
  return found;
}

std::string builtins_document() {
  look_up_names();
  std::map<std::string_view, std::string> families;  // by title
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    const BuiltinEntry& entry = builtin_at(i);
    std::string& section = families[entry.family->title];
    if (section.empty()) {
      section = std::string("\n## ") + entry.family->title + "\n\n";
      if (*entry.family->notes != '\0') section += std::string(entry.family->notes) + "\n\n";
      section += "| name | arguments | result | |\n|---|---|---|---|\n";
    }
    section += line_of(*entry.row);
  }
  std::string document =
      "# Built-in functions\n\n"
      "What scripts may call, as `arena --builtins` writes it from the rows in `runtime/builtins/`. Distances are pixels. Arguments in\n"
      "brackets may be left out; those followed by dots may be any number. A number is converted from any kind of number; what stands in\n"
      "for something (a sprite, a list) is a number, too.\n";
  for (const auto& [title, section] : families) document += section;
  return document;
}

}  // namespace arena
