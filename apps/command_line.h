#pragma once
// What the program was started with.
#include <string>
#include <vector>

namespace arena::apps {

// The arguments without the program's name, in UTF-8. On Windows, where a program with windows has no terminal, this also joins the one
// that it was started from.
std::vector<std::string> command_line(int argc, char** argv);

}  // namespace arena::apps
