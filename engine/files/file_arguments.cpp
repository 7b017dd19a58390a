#include "engine/files/file_arguments.h"

#include "engine/files/paths.h"
#include "engine/files/sandbox.h"
#include "engine/formats/utf8.h"
#include "runtime/program/messages.h"

namespace arena::files {
namespace {

constexpr std::size_t kLongestShown = 80;  // bytes of a name in a message

std::string shown(std::string_view name) {
  if (!formats::is_utf8(name)) return "...";
  std::size_t end = name.size() > kLongestShown ? kLongestShown : name.size();
  while (end < name.size() && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
  return on_one_line(std::string(name.substr(0, end))) + (end < name.size() ? "..." : "");
}

std::string checked(const CallContext& call, int at, std::string_view (*flaw)(std::string_view)) {
  const std::string_view name = check_string(call, at);
  const std::string_view found = flaw(name);
  if (!argument_at(call, at).is_string()) return {};  // reported already
  if (found.empty()) return std::string(name);
  report_error(messages::kFileName, current_builtin_name(), at + 1, shown(name), found);
  return {};
}

}  // namespace

FileName check_file_name(const CallContext& call, int at) { return {checked(call, at, flaw_of_name)}; }
std::string checked_pattern(const CallContext& call, int at) { return checked(call, at, flaw_of_pattern); }

}  // namespace arena::files
