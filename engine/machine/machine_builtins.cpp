// What scripts ask of the machine besides the date.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>

#include "engine/machine/machine_in_use.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/machine.h"
#include "runtime/input/outside.h"

namespace arena::machine {
namespace {

std::int32_t argument_count() {
  const std::string answer = answer_from_outside([] { return std::to_string(machine_in_use().arguments.size()); });
  return static_cast<std::int32_t>(std::strtol(answer.c_str(), nullptr, 10));
}
std::string argument_get(std::int32_t nth) {
  return answer_from_outside([&] {
    const std::vector<std::string>& all = machine_in_use().arguments;
    return nth >= 0 && static_cast<std::size_t>(nth) < all.size() ? all[static_cast<std::size_t>(nth)] : std::string();
  });
}

// A name with '=' or a zero in it is that of another variable, or of none.
std::string environment_get(std::string_view name) {
  return answer_from_outside([&] {
    const bool is_name = !name.empty() && name.find_first_of(std::string_view("=\0", 2)) == std::string_view::npos;
    return is_name ? in_use().environment(std::string(name)) : std::string();
  });
}
std::string locale_get() {
  return answer_from_outside([] { return in_use().locale(); });
}

// The address goes to a program of the system: only what stands in every address, so that none reads it as anything else.
bool is_address(std::string_view text) {
  constexpr std::size_t kLongest = 2048;
  const std::size_t begins = text.starts_with("https://") ? 8 : text.starts_with("http://") ? 7 : 0;
  constexpr std::string_view kSigns = "-._~:/?#[]@!$&()*+,;=%";
  const auto fits = [&](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || kSigns.find(c) != std::string_view::npos;
  };
  return begins > 0 && text.size() > begins && text.size() <= kLongest && text[begins] != '-' &&
         std::all_of(text.begin(), text.end(), fits);
}

bool open_address(const CallContext& call, std::string_view address) {
  if (!is_address(address)) {
    report_argument_type(call, 0, "address that begins with http:// or https://");
    return false;
  }
  return answer_from_outside([&] { return std::string(in_use().open_address(std::string(address)) ? "1" : ""); }) == "1";
}

constexpr Implementation kRows[] = {
    implement<script::argument_count, argument_count>,   implement<script::argument_get, argument_get>,
    implement<script::environment_get, environment_get>, implement<script::locale_get, locale_get>,
    implement<script::open_address, open_address>,
};
const BuiltinTable table("Machine",
                         "Every answer is recorded with the run, so that a replay is the same on another machine. A headless run has no "
                         "environment, speaks en-US and opens nothing.",
                         kRows);

}  // namespace
}  // namespace arena::machine
