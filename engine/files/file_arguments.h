#pragma once
// The name of a file or folder as an argument of a built-in function: one that scripts may use, or the call ends with a report.
#include <string>

#include "runtime/builtins/kinds.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {

struct FileName {
  std::string name;
};

namespace files {
FileName check_file_name(const CallContext& call, int at);
// A pattern for names; "" after a suppressed report.
std::string checked_pattern(const CallContext& call, int at);
}  // namespace files

template <>
struct Argument<FileName> {
  static constexpr bool consumes = true;
  static FileName get(const CallContext& call, int at) { return files::check_file_name(call, at); }
};

}  // namespace arena
