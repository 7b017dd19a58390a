#pragma once
// Where logs and crash reports go: the user's data folder.
#include <string>

namespace arena::apps {

// Made when it is not there; "" when there is none to be had.
std::string user_data_folder();
// Starts the log file of this run; lines go to standard error too.
void start_log();
// Writes a report beside the log and gives its path; "" when that fails.
std::string write_crash_report(const std::string& report);

}  // namespace arena::apps
