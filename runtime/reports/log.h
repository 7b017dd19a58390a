#pragma once
// Notes, debug messages and warnings. They go to the log sink (the log file, standard error) and are kept for whoever asks for them. What
// is said again and again is counted: "(the last message came 299 more times)".
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace arena {

// For who looks into what happened; nothing that a player must see.
void log_note(std::string_view text);
void log_message(std::string_view text);
void log_warning(std::string_view text);
// What was logged since last asked: at most the newest 10,000 lines, 8 MiB together; the same message ten times, then its count.
std::vector<std::string> take_log();
// Where each line goes besides, the same message once, then its count; by default nowhere. The counts that the sink before was still owed
// are told to it.
using LogSink = std::function<void(std::string_view line, bool is_note)>;
void set_log_sink(LogSink sink);

}  // namespace arena
