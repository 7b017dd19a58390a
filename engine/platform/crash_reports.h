#pragma once
// What the program leaves behind when it crashes: not a script's error, which is reported and caught, but a fault of its own.
#include <filesystem>
#include <string>

namespace arena::platform {

// From now on a crash (a bad access, a stack overflow, an abort, an exception that nobody catches) writes `file`: the heading, what
// happened, the native addresses, relative to the program's image, and the scripts that ran, the innermost first. The program then ends
// as it would have without. A box with
// the title shows the same text, where the system can still show one; "": no box. A second call replaces the first.
void report_crashes(const std::filesystem::path& file, const std::string& heading, const std::string& dialog_title);

}  // namespace arena::platform
