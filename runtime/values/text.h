#pragma once
// Any value as text: what string() gives, what concatenation of converted values and messages use.
#include <cstddef>
#include <string>
#include <vector>

#include "runtime/values/value.h"

namespace arena {

// Containers within containers, as text or as a tool's output; "..." stands for what lies deeper.
inline constexpr std::size_t kDeepestShown = 200;

// Writes one value; remembers the containers it is inside of, so that cycles are cut. Ends early, past `longest` bytes.
class TextWriter {
 public:
  TextWriter(bool reports_unset, std::size_t longest) : reports_unset_(reports_unset), longest_(longest) {}
  // `is_nested`: inside a container, where texts stand in quotes.
  void write(const RValue& value, bool is_nested);
  std::string text;

 private:
  void write_string(const RValue& value, bool is_nested);
  void write_array(const RValue& value);
  void write_object(const RValue& value);
  void write_ref(const RValue& value);
  bool enter(const void* container, const char* warning);

  bool reports_unset_;
  std::size_t longest_;
  std::vector<const void*> inside_;
};

// Reports an unset value or a text that is too long; a suppressed report yields "".
std::string to_text(const RValue& value);
// The same without any report: an unset value reads "unset", long texts are cut.
std::string text_for_message(const RValue& value);

}  // namespace arena
