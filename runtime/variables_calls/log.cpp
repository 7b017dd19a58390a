#include "runtime/variables_calls/log.h"

#include <deque>
#include <mutex>

namespace arena {
namespace {

constexpr std::size_t kKeptLines = 10000;
std::deque<std::string> lines;
std::function<void(std::string_view)> sink;
std::mutex mutex;  // warnings may come from worker threads

}  // namespace

void log_message(std::string_view text) {
  const std::lock_guard lock(mutex);
  lines.emplace_back(text);
  if (lines.size() > kKeptLines) lines.pop_front();
  if (sink) sink(text);
}

void log_warning(std::string_view text) { log_message("WARNING: " + std::string(text)); }

std::vector<std::string> take_log() {
  const std::lock_guard lock(mutex);
  std::vector<std::string> taken(lines.begin(), lines.end());
  lines.clear();
  return taken;
}

void set_log_sink(std::function<void(std::string_view)> new_sink) { sink = std::move(new_sink); }

}  // namespace arena
