#pragma once
// The two tables that calls go through: the compiled functions (scripts, methods, constructors, event handlers) and the built-in ones.
// Both are filled from static storage and put in order of their names by the start-up lookup.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace arena {

class BuiltinRow;
class CInstance;
class NameSlot;
class WBObjectBase;
struct RValue;

using EventHandler = void (*)(CInstance* self, CInstance* other);
using ScriptFunction = RValue& (*)(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, const RValue** args);
using BuiltinFunction = void (*)(RValue& result, WBObjectBase* self, WBObjectBase* other, std::int32_t argc, RValue* args);

inline constexpr std::int32_t kFirstScriptNumber = 100000;  // script n is the number 100000 + n

// One compiled function. Static storage; the constructor enters it into the table.
class CompiledFunction {
 public:
  CompiledFunction(const char* full_name, const char* source_file, EventHandler event_handler);
  CompiledFunction(const char* full_name, const char* source_file, ScriptFunction entry, bool constructs = false);
  const char* const name;  // "ksl_Script_Approach"
  const char* const file;
  const EventHandler handler = nullptr;
  const ScriptFunction script = nullptr;
  const bool is_constructor = false;
  std::int32_t index = -1;  // scripts: number - 100000
  CompiledFunction* next;
};

// A row and the function that does what it says, bound by implement<row, function> (builtins/implement.h).
struct Implementation {
  const BuiltinRow* row;
  BuiltinFunction function;
};

// The functions of one family, with what is to be said of all of them. Static storage.
class BuiltinTable {
 public:
  template <std::size_t N>
  BuiltinTable(const char* family_title, const char* family_notes, const Implementation (&table)[N])
      : BuiltinTable(family_title, family_notes, table, N) {}
  BuiltinTable(const char* family_title, const char* family_notes, const Implementation* table, std::size_t length);
  const char* const title;
  const char* const notes;
  const Implementation* const entries;
  const std::size_t count;
  BuiltinTable* next;
};

struct BuiltinEntry {
  const char* name;
  BuiltinFunction function;
  const BuiltinRow* row;
  const BuiltinTable* family;
};

std::int32_t builtin_count();
const BuiltinEntry& builtin_at(std::int32_t index);
std::int32_t find_builtin(std::string_view name);  // -1: none

// Scripts, methods and constructors, by number - 100000.
std::int32_t script_count();
CompiledFunction& script_at(std::int32_t index);
// By the name that scripts use ("Approach") or the full one ("ksl_Script_Approach"); -1: none.
std::int32_t find_script(std::string_view name);
CompiledFunction* find_handler(std::string_view full_name);
std::vector<const CompiledFunction*> all_handlers();
// The source file of a compiled function; "" when the name is unknown.
std::string source_file_of(std::string_view full_name);

// A method that stands in the statics of a constructor: every struct it makes, and those of the constructors based on it, have it without
// holding it. Static storage.
class StaticMethod {
 public:
  StaticMethod(CompiledFunction& owner, const NameSlot& name, CompiledFunction& code);
  CompiledFunction& owner;
  const NameSlot& name;
  CompiledFunction& code;
  StaticMethod* next;
};
// A constructor whose statics go on where those of another one end. Static storage.
class StaticsChain {
 public:
  StaticsChain(CompiledFunction& derived, CompiledFunction& base);
  CompiledFunction& derived;
  CompiledFunction& base;
  StaticsChain* next;
};

// Those that stand in the statics of `owner`, in order of the names of their code.
std::vector<const StaticMethod*> static_methods_of(const CompiledFunction& owner);
// Null: the statics of `derived` are the end of the chain.
CompiledFunction* base_of(const CompiledFunction& derived);

// For the start-up lookup: orders both tables, notes what is defined twice, returns the number of compiled functions.
int build_function_tables(std::vector<std::string>& problems);

}  // namespace arena
