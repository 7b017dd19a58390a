#pragma once
// The files that the program keeps for its user: the log and reports of errors.
#include <filesystem>
#include <string>

namespace arena::apps {

// From now on messages go to standard error and, with notes, to the log in the user's data folder, which bears the game's name (arena.log).
// It has 8 MiB at most; what came before, in this run or another, is kept as arena-1.log.
void start_log();
// Writes what the log still owes and closes it.
void end_log();
// crash-report.txt beside the log; empty when there is no such folder.
std::filesystem::path crash_report_file();
// Writes it; its path, or "" when that fails.
std::string write_crash_report(const std::string& report);
// Where screenshots go: Screenshots beside the game, where the game is a folder that the user unpacked, or in the current one; a folder
// named after the game in the user's pictures when nothing can be written there.
std::string screenshot_folder();
// Where the run that begins is recorded; the oldest of the last twenty makes room. Empty when there is no such place.
std::filesystem::path new_recording_file();

}  // namespace arena::apps
