#pragma once
// What is left of a crash lies together in a folder of its own, crash-N: report.txt, log.txt (the end of the log) and run.rec (the run's
// recording, up to the frame that never ended). A program that crashed may neither allocate nor lock: everything stands ready before.
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace arena::platform {

struct CrashFolder {
  std::filesystem::path crashes;  // where the folders stand, made on demand; empty: there is no such place, or none is wanted
  std::uintptr_t number = 1;      // N, or the first free one behind it
  std::filesystem::path oldest;   // the crash-N that makes room for it; empty: there is room
  std::string trouble;            // the sentence for when the folder cannot be made or written; "": nothing is said
  std::string play;               // words of the shell that play a recording whose path follows ...
  std::string play_until;         // ... and those behind it: up to the fault
};
void prepare_crash_folder(CrashFolder how);
// The last 64 KiB of the lines become log.txt.
void keep_for_crash(std::string_view line);
// What becomes run.rec: the file into which the run that goes on is being recorded, an absolute path; empty: none.
void record_for_crash(const std::filesystem::path& recording);

// After a crash, in this order.
// Makes the folder, with log.txt and run.rec in it. Whether all of it is there; true where no folder is wanted.
bool make_crash_folder();
// The command that plays run.rec up to the fault, as a line; "" without a recording.
const char* crash_command();
// Over what was written before.
bool write_crash_report(const char* text, std::size_t bytes);
// The oldest makes room. What there is to say at the end, as a line: where the folder is, or the trouble; or "".
const char* finish_crash_folder();

}  // namespace arena::platform
