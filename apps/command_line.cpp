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
std::vector<std::string> command_line(int, char**) {
  // Streams that someone else reads or writes are there already.
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  if ((output == nullptr || output == INVALID_HANDLE_VALUE) && AttachConsole(ATTACH_PARENT_PROCESS) != 0) {
    std::freopen("CONOUT$", "w", stdout);
    std::freopen("CONOUT$", "w", stderr);
  }
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
