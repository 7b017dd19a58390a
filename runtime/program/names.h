#pragma once
// Names are objects: a variable name, a built-in function name and a script name are each a C++ object of static storage that holds
// its text and one 32-bit slot, -1 until the start-up lookup fills it. Objects with the same text get the same id. Ids are given in
// sorted order of the texts, so they do not depend on the linker; nothing that a script sees depends on an id's value.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace arena {

class NameSlot {
 public:
  enum class Type : std::uint8_t { kVariable, kFunction };
  NameSlot(Type type, const char* text);
  const char* text;
  std::int32_t slot = -1;
  Type type;
  NameSlot* next;
};

// Variable ids: one id space for instances, structs and the global object. Names met in data or made at run time get ids above those of
// start-up; they belong to the session and end with it.
std::int32_t variable_id(std::string_view name);       // finds or allocates
std::int32_t find_variable_id(std::string_view name);  // -1: nobody ever used the name
std::string_view variable_name(std::int32_t id);       // "<unknown>" for an id that does not exist
std::int32_t variable_id_count();
// Those that code holds, 0 to count - 1: the ids that the tables of shapes cover.
namespace detail {
extern std::int32_t code_names;
}
inline std::int32_t code_name_count() { return detail::code_names; }

struct LookupResult {
  double total_ms, functions_ms, variables_ms, check_ms;
  int user_functions, patched_functions, variables;
  std::vector<std::string> problems;  // one line each: names without a function, functions defined twice
  // "WBC lookup took ..."
  std::string report() const;
};
// Fills every slot. Called once, before any session begins; a later call does nothing and gives the first result.
const LookupResult& look_up_names();

}  // namespace arena
