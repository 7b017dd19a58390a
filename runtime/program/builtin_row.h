#pragma once
// The description of a built-in function: one row of its family's table, from which come the checks of its arguments, the face that
// compiled code calls, the documents, the console's help and the random calls of the tests.
#include <limits>
#include <string_view>
#include <vector>

#include "runtime/program/names.h"

namespace arena {

// What a parameter takes, in words, with the bounds of a number where it has some of its own.
struct ParameterKind {
  const char* word;
  double low = -std::numeric_limits<double>::infinity(), high = std::numeric_limits<double>::infinity();
  bool may_be_left_out = false;
  bool takes_the_rest = false;  // any number of arguments from here on
  bool has_default = false;     // what a left out one counts as
  double default_value = 0;
  bool is_bounded() const { return low > -std::numeric_limits<double>::infinity(); }
};

struct Parameter {
  std::string_view name;
  const ParameterKind& kind;
};

// Static storage. The slot is the function's number in the table, from the start-up lookup on.
class BuiltinRow : public NameSlot {
 public:
  BuiltinRow(const char* name, const char* parameter_names, const ParameterKind* parameter_kinds, int parameter_count,
             const char* result_word, const char* what_it_does)
      : NameSlot(Type::kFunction, name),
        names(parameter_names),
        kinds(parameter_kinds),
        count(parameter_count),
        gives(result_word),
        sentence(what_it_does) {}
  std::vector<Parameter> parameters() const;

  const char* const names;  // "x, y, radius"
  const ParameterKind* const kinds;
  const int count;
  const char* const gives;  // in a word, "" when there is none
  const char* const sentence;
};

}  // namespace arena
