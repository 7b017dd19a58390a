#include "apps/command_line.h"

#ifdef _WIN32
#include <windows.h>
// After what it needs.
#include <shellapi.h>

#include <cstdio>

#include "engine/files/paths.h"
#endif

namespace arena::apps {

#ifdef _WIN32
namespace {

bool is_missing(DWORD stream) {
  const HANDLE handle = GetStdHandle(stream);
  return handle == nullptr || handle == INVALID_HANDLE_VALUE;
}

// For what it shows, and for its Ctrl+C. Streams that someone else reads or writes are there already.
void join_terminal() {
  const bool needs_output = is_missing(STD_OUTPUT_HANDLE), needs_errors = is_missing(STD_ERROR_HANDLE);
  if (AttachConsole(ATTACH_PARENT_PROCESS) == 0) return;
  if (needs_output) std::freopen("CONOUT$", "w", stdout);
  if (needs_errors) std::freopen("CONOUT$", "w", stderr);
}

}  // namespace

std::vector<std::string> command_line(int, char**) {
  join_terminal();
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(files::utf8_of(words[i]));
  LocalFree(words);
  return arguments;
}
#else
std::vector<std::string> command_line(int argc, char** argv) { return {argv + 1, argv + argc}; }
#endif

}  // namespace arena::apps
