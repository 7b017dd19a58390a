#pragma once
// Debug messages and warnings. They go to the log sink (standard error, the log file) and are kept for whoever asks for them.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace arena {

void log_message(std::string_view text);
void log_warning(std::string_view text);
// What was logged since last asked. At most the newest 10,000 lines are kept.
std::vector<std::string> take_log();
// Where each line goes besides; by default nowhere.
void set_log_sink(std::function<void(std::string_view)> sink);

}  // namespace arena
