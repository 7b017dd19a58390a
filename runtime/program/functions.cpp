#include "runtime/program/functions.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "runtime/checks/assert.h"
#include "runtime/program/builtin_row.h"
#include "runtime/program/names.h"

namespace arena {
namespace {

CompiledFunction* first_function = nullptr;
BuiltinTable* first_table = nullptr;
StaticMethod* first_static_method = nullptr;
StaticsChain* first_chain = nullptr;
std::vector<CompiledFunction*> scripts, handlers;
std::vector<const StaticMethod*> static_methods;
std::vector<BuiltinEntry> builtins;

constexpr std::string_view kScriptPrefix = "ksl_Script_";

template <class Entry>
bool by_name(const Entry* left, const Entry* right) {
  return std::strcmp(left->name, right->name) < 0;
}

CompiledFunction* find_in(const std::vector<CompiledFunction*>& table, std::string_view name) {
  const auto place = std::lower_bound(table.begin(), table.end(), name,
                                      [](const CompiledFunction* entry, std::string_view wanted) { return entry->name < wanted; });
  return place != table.end() && (*place)->name == name ? *place : nullptr;
}

void note_doubles(const std::vector<CompiledFunction*>& table, std::vector<std::string>& problems) {
  for (std::size_t i = 1; i < table.size(); ++i) {
    if (std::strcmp(table[i - 1]->name, table[i]->name) != 0) continue;
    problems.push_back(std::string("function '") + table[i]->name + "' is defined twice, in " + table[i - 1]->file + " and " +
                       table[i]->file);
  }
}

}  // namespace

CompiledFunction::CompiledFunction(const char* full_name, const char* source_file, EventHandler event_handler)
    : name(full_name), file(source_file), handler(event_handler), next(first_function) {
  first_function = this;
}

CompiledFunction::CompiledFunction(const char* full_name, const char* source_file, ScriptFunction entry, bool constructs)
    : name(full_name), file(source_file), script(entry), is_constructor(constructs), next(first_function) {
  first_function = this;
}

BuiltinTable::BuiltinTable(const char* family_title, const char* family_notes, const Implementation* table, std::size_t length)
    : title(family_title), notes(family_notes), entries(table), count(length), next(first_table) {
  first_table = this;
}

int build_function_tables(std::vector<std::string>& problems) {
  for (CompiledFunction* function = first_function; function != nullptr; function = function->next) {
    (function->handler != nullptr ? handlers : scripts).push_back(function);
  }
  std::sort(scripts.begin(), scripts.end(), by_name<CompiledFunction>);
  std::sort(handlers.begin(), handlers.end(), by_name<CompiledFunction>);
  for (std::size_t i = 0; i < scripts.size(); ++i) scripts[i]->index = static_cast<std::int32_t>(i);
  for (BuiltinTable* table = first_table; table != nullptr; table = table->next) {
    for (const Implementation* each = table->entries; each != table->entries + table->count; ++each) {
      builtins.push_back({each->row->text, each->function, each->row, table});
    }
  }
  std::sort(builtins.begin(), builtins.end(), [](const BuiltinEntry& a, const BuiltinEntry& b) { return std::strcmp(a.name, b.name) < 0; });
  for (const StaticMethod* method = first_static_method; method != nullptr; method = method->next) static_methods.push_back(method);
  std::sort(static_methods.begin(), static_methods.end(), [](const StaticMethod* a, const StaticMethod* b) {
    return std::strcmp(a->code.name, b->code.name) < 0;  // the order of the chain is the linker's
  });
  note_doubles(scripts, problems);
  note_doubles(handlers, problems);
  for (std::size_t i = 1; i < builtins.size(); ++i) {
    if (std::strcmp(builtins[i - 1].name, builtins[i].name) == 0) {
      problems.push_back(std::string("built-in function '") + builtins[i].name + "' is defined twice");
    }
  }
  return static_cast<int>(scripts.size() + handlers.size());
}

std::int32_t builtin_count() { return static_cast<std::int32_t>(builtins.size()); }
const BuiltinEntry& builtin_at(std::int32_t index) {
  ARENA_ASSERT(index >= 0 && index < builtin_count());
  return builtins[static_cast<std::size_t>(index)];
}

std::int32_t find_builtin(std::string_view name) {
  const auto place = std::lower_bound(builtins.begin(), builtins.end(), name,
                                      [](const BuiltinEntry& entry, std::string_view wanted) { return entry.name < wanted; });
  return place != builtins.end() && place->name == name ? static_cast<std::int32_t>(place - builtins.begin()) : -1;
}

std::int32_t script_count() { return static_cast<std::int32_t>(scripts.size()); }
CompiledFunction& script_at(std::int32_t index) {
  ARENA_ASSERT(index >= 0 && index < script_count());
  return *scripts[static_cast<std::size_t>(index)];
}

std::int32_t find_script(std::string_view name) {
  const CompiledFunction* found =
      find_in(scripts, name.starts_with(kScriptPrefix) ? std::string(name) : std::string(kScriptPrefix).append(name));
  return found != nullptr ? found->index : -1;
}

CompiledFunction* find_handler(std::string_view full_name) { return find_in(handlers, full_name); }
std::vector<const CompiledFunction*> all_handlers() { return {handlers.begin(), handlers.end()}; }

std::string source_file_of(std::string_view full_name) {
  const CompiledFunction* found = find_in(scripts, full_name);
  if (found == nullptr) found = find_in(handlers, full_name);
  return found != nullptr ? found->file : "";
}

StaticMethod::StaticMethod(CompiledFunction& of, const NameSlot& called, CompiledFunction& function)
    : owner(of), name(called), code(function), next(first_static_method) {
  first_static_method = this;
}

StaticsChain::StaticsChain(CompiledFunction& from, CompiledFunction& to) : derived(from), base(to), next(first_chain) {
  first_chain = this;
}

std::vector<const StaticMethod*> static_methods_of(const CompiledFunction& owner) {
  std::vector<const StaticMethod*> found;
  std::copy_if(static_methods.begin(), static_methods.end(), std::back_inserter(found),
               [&](const StaticMethod* method) { return &method->owner == &owner; });
  return found;
}

CompiledFunction* base_of(const CompiledFunction& derived) {
  for (const StaticsChain* chain = first_chain; chain != nullptr; chain = chain->next) {
    if (&chain->derived == &derived) return &chain->base;
  }
  return nullptr;
}

}  // namespace arena
