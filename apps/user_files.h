#pragma once
// The files that the program keeps for its user: the log, recordings, what is left of crashes, screenshots.
#include <filesystem>
#include <string>

#include "engine/platform/crash_folder.h"

namespace arena::apps {

// From now on messages go to standard error and, with notes, to the log in the user's data folder, which bears the game's name (arena.log).
// It has 8 MiB at most; what came before, in this run or another, is kept as arena-1.log.
void start_log();
// Writes what the log still owes and closes it.
void end_log();
// Where the next crash leaves its folder: crashes/crash-N beside the log; the oldest of the last ten makes room for it. Without a place
// for it, only the trouble is told. Its command plays the run with that data file; "": with the program's own.
platform::CrashFolder next_crash_folder(const std::string& data);
// Where screenshots go: Screenshots beside the game, where the game is a folder that the user unpacked, or in the current one; a folder
// named after the game in the user's pictures when nothing can be written there.
std::string screenshot_folder();
// Where scripts save: the folder saves beside the log. Empty when there is no such place.
std::string save_folder();
// Where the run that begins is recorded; the oldest of the last twenty makes room. Empty when there is no such place.
std::filesystem::path new_recording_file();

}  // namespace arena::apps
