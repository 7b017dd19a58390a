#include "runtime/program/names.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "runtime/checks/assert.h"
#include "runtime/program/builtin_row.h"
#include "runtime/program/functions.h"
#include "runtime/program/messages.h"
#include "runtime/session/session.h"

namespace arena {
namespace {

NameSlot* first_name = nullptr;

// Names in the order of their ids, from `first` on.
class NameTable {
 public:
  std::int32_t first = 0;

  std::int32_t add(std::string_view name) {
    if (names_.size() == names_.capacity()) names_.reserve(std::max<std::size_t>(64, names_.size() * 2));
    const auto [place, is_new] = ids_.emplace(std::string(name), end());
    if (is_new) names_.push_back(&place->first);
    return place->second;
  }
  std::int32_t find(std::string_view name) const {
    const auto found = ids_.find(name);
    return found == ids_.end() ? -1 : found->second;
  }
  const std::string& at(std::int32_t id) const {
    ARENA_ASSERT(id >= first && id < end());
    return *names_[static_cast<std::size_t>(id - first)];
  }
  std::int32_t end() const { return first + static_cast<std::int32_t>(names_.size()); }

 private:
  std::map<std::string, std::int32_t, std::less<>> ids_;
  std::vector<const std::string*> names_;
};

NameTable names_of_code;  // complete before the first session begins

// The names that data and scripts of one game brought along, and what texts meant lately.
struct SessionNames {
  SessionNames() { made.first = names_of_code.end(); }
  NameTable made;
  std::int32_t remembered[256] = {};
};
const Part<SessionNames> session_names{PartLevel::kScripts, "names"};

const std::string& name_at(std::int32_t id) { return id < names_of_code.end() ? names_of_code.at(id) : session_names().made.at(id); }

using Clock = std::chrono::steady_clock;
double milliseconds(Clock::time_point from, Clock::time_point to) { return std::chrono::duration<double, std::milli>(to - from).count(); }

void fill_function_slots(LookupResult& result) {
  for (NameSlot* name = first_name; name != nullptr; name = name->next) {
    if (name->type != NameSlot::Type::kFunction) continue;
    const std::int32_t found = find_builtin(name->text);
    if (found >= 0 && static_cast<const NameSlot*>(builtin_at(found).row) == name) name->slot = found;
    if (name->slot >= 0) {
      ++result.patched_functions;
    } else {
      result.problems.push_back(std::string("built-in function '") + name->text + "' has a row " +
                                (found >= 0 ? "twice" : "but nothing implements it"));
    }
  }
}

void fill_variable_slots(LookupResult& result) {
  std::vector<std::string_view> texts;
  for (NameSlot* name = first_name; name != nullptr; name = name->next) {
    if (name->type == NameSlot::Type::kVariable) texts.emplace_back(name->text);
  }
  std::sort(texts.begin(), texts.end());
  texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
  for (const std::string_view text : texts) names_of_code.add(text);
  for (NameSlot* name = first_name; name != nullptr; name = name->next) {
    if (name->type == NameSlot::Type::kVariable) name->slot = names_of_code.find(name->text);
  }
  result.variables = detail::code_names = names_of_code.end();
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
  return result;
}

std::int32_t search_variable_id(std::string_view name) {
  const std::int32_t found = names_of_code.find(name);
  return found >= 0 ? found : session_names().made.find(name);
}

}  // namespace

std::int32_t detail::code_names = 0;

NameSlot::NameSlot(Type of, const char* name) : text(name), type(of), next(first_name) { first_name = this; }

std::int32_t variable_id(std::string_view name) {
  const std::int32_t found = find_variable_id(name);
  return found >= 0 ? found : session_names().made.add(name);
}

// Scripts ask for the same few texts again and again: what a text at this address meant last time is tried first, and checked.
std::int32_t find_variable_id(std::string_view name) {
  std::int32_t& last = session_names().remembered[(reinterpret_cast<std::uintptr_t>(name.data()) >> 4 ^ name.size()) & 255];
  if (last < variable_id_count() && name_at(last) == name) return last;
  const std::int32_t found = search_variable_id(name);
  if (found >= 0) last = found;
  return found;
}

std::string_view variable_name(std::int32_t id) {
  if (id < 0 || id >= variable_id_count()) return "<unknown>";
  return name_at(id);
}

std::int32_t variable_id_count() { return session_names().made.end(); }

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
