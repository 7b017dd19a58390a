#include "runtime/variables_calls/names.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "runtime/arrays_structs/shape.h"
#include "runtime/variables_calls/functions.h"
#include "runtime/variables_calls/log.h"
#include "runtime/variables_calls/report.h"

namespace arena {
namespace {

NameSlot* first_name = nullptr;

struct Variables {
  std::map<std::string, std::int32_t, std::less<>> ids;
  std::vector<const std::string*> names;

  std::int32_t add(std::string_view name) {
    if (names.size() == names.capacity()) names.reserve(std::max<std::size_t>(64, names.size() * 2));
    const auto [place, is_new] = ids.emplace(std::string(name), static_cast<std::int32_t>(names.size()));
    if (is_new) names.push_back(&place->first);
    return place->second;
  }
};
Variables& variables() {
  static Variables* const table = new Variables;
  return *table;
}

using Clock = std::chrono::steady_clock;
double milliseconds(Clock::time_point from, Clock::time_point to) { return std::chrono::duration<double, std::milli>(to - from).count(); }

void fill_function_slots(LookupResult& result) {
  for (NameSlot* name = first_name; name != nullptr; name = name->next) {
    if (name->type != NameSlot::Type::kFunction) continue;
    name->slot = find_builtin(name->text);
    if (name->slot < 0) {
      const int script = find_script(name->text);
      if (script >= 0) name->slot = kFirstScriptNumber + script;
    }
    if (name->slot >= 0) {
      ++result.patched_functions;
    } else {
      result.problems.push_back(std::string("function '") + name->text + "' is used but nothing defines it");
    }
  }
}

void fill_variable_slots(LookupResult& result) {
  std::vector<std::string_view> texts;
  for (NameSlot* name = first_name; name != nullptr; name = name->next) {
    if (name->type == NameSlot::Type::kVariable) texts.push_back(name->text);
  }
  std::sort(texts.begin(), texts.end());
  texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
  for (const std::string_view text : texts) variables().add(text);
  for (NameSlot* name = first_name; name != nullptr; name = name->next) {
    if (name->type == NameSlot::Type::kVariable) name->slot = variable_id(name->text);
  }
  result.variables = variable_id_count();
  set_shape_table_size(variable_id_count());
}

LookupResult run_lookup() {
  LookupResult result{};
  const Clock::time_point start = Clock::now();
  result.user_functions = build_function_tables(result.problems);
  fill_function_slots(result);
  const Clock::time_point functions_done = Clock::now();
  fill_variable_slots(result);
  const Clock::time_point variables_done = Clock::now();
  std::sort(result.problems.begin(), result.problems.end());
  result.problems.erase(std::unique(result.problems.begin(), result.problems.end()), result.problems.end());
  const Clock::time_point done = Clock::now();
  result.total_ms = milliseconds(start, done);
  result.functions_ms = milliseconds(start, functions_done);
  result.variables_ms = milliseconds(functions_done, variables_done);
  result.check_ms = milliseconds(variables_done, done);
  std::string report = result.report();
  report.pop_back();  // the log ends its lines itself
  log_note(report);
  return result;
}

std::int32_t search_variable_id(std::string_view name) {
  const auto found = variables().ids.find(name);
  return found == variables().ids.end() ? -1 : found->second;
}

}  // namespace

NameSlot::NameSlot(Type of, const char* name) : text(name), type(of), next(first_name) { first_name = this; }

std::int32_t variable_id(std::string_view name) {
  const std::int32_t found = find_variable_id(name);
  return found >= 0 ? found : variables().add(name);
}

// Scripts ask for the same few texts again and again: what a text at this address meant last time is tried first, and checked.
std::int32_t find_variable_id(std::string_view name) {
  static std::int32_t remembered[256] = {};
  std::int32_t& last = remembered[(reinterpret_cast<std::uintptr_t>(name.data()) >> 4 ^ name.size()) & 255];
  if (last < variable_id_count() && *variables().names[static_cast<std::size_t>(last)] == name) return last;
  const std::int32_t found = search_variable_id(name);
  if (found >= 0) last = found;
  return found;
}

std::string_view variable_name(std::int32_t id) {
  if (id < 0 || id >= variable_id_count()) return "<unknown>";
  return *variables().names[static_cast<std::size_t>(id)];
}

std::int32_t variable_id_count() { return static_cast<std::int32_t>(variables().names.size()); }

std::string LookupResult::report() const {
  constexpr Message<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t> kReport{
      "WBC lookup took %d (%d) (%d) (%d) ms with %d userfuncs %d patched funcs %d vars\n"};
  const auto whole = [](double ms) { return static_cast<std::int32_t>(ms + 0.5); };
  return format_message(kReport, whole(total_ms), whole(functions_ms), whole(variables_ms), whole(check_ms), user_functions,
                        patched_functions, variables);
}

const LookupResult& look_up_names() {
  static const LookupResult result = run_lookup();
  return result;
}

}  // namespace arena
