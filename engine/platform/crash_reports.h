#pragma once
// What the program leaves behind when it crashes.
#include <string>

#include "engine/platform/crash_folder.h"

namespace arena::platform {

// From now on a crash (a bad access, a stack overflow, an abort, an exception that nobody catches) fills a folder: its report has the
// heading, what happened, the command that plays the run up to there, the native addresses, relative to the program's image, and the
// scripts that ran, the innermost first. It goes to standard error, too; the program then ends as it would have without. A box with the
// title shows the same text, where the system can still show one; "": no box. A second call replaces the first.
void report_crashes(CrashFolder folder, const std::string& heading, const std::string& dialog_title);

// The same folder for an error that was caught, whose report is given: the report with the command, and a line that says where the folder
// is or why there is none.
std::string leave_crash(const std::string& report);

}  // namespace arena::platform
