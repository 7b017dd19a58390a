#include "runtime/variables_calls/log.h"

#include <deque>
#include <mutex>
#include <utility>

#include "runtime/variables_calls/log_repeats.h"

namespace arena {
namespace {

constexpr std::size_t kMostKeptLines = 10000, kMostKeptBytes = 8 << 20, kLongestLine = 64 << 10;

std::deque<std::string> lines;
std::size_t kept_bytes = 0;
LogRepeats kept_repeats(10), sink_repeats(1);
LogSink sink;
std::mutex mutex;  // warnings may come from worker threads

void keep(std::string_view line, bool) {
  lines.emplace_back(line);
  kept_bytes += line.size();
  for (; lines.size() > kMostKeptLines || kept_bytes > kMostKeptBytes; lines.pop_front()) kept_bytes -= lines.front().size();
}

// Cut between characters.
std::string shortened(std::string_view text) {
  std::size_t end = kLongestLine;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return std::string(text.substr(0, end)) + "... (" + std::to_string(text.size() - end) + " more bytes)";
}

void log(std::string_view text, bool is_note) {
  const std::string cut = text.size() > kLongestLine ? shortened(text) : std::string();
  if (!cut.empty()) text = cut;
  const std::lock_guard lock(mutex);
  kept_repeats.add(text, is_note, keep);
  if (sink) sink_repeats.add(text, is_note, sink);
}

}  // namespace

void log_note(std::string_view text) { log(text, true); }
void log_message(std::string_view text) { log(text, false); }
void log_warning(std::string_view text) { log_message("WARNING: " + std::string(text)); }

std::vector<std::string> take_log() {
  const std::lock_guard lock(mutex);
  kept_repeats.finish(keep);
  std::vector<std::string> taken(lines.begin(), lines.end());
  lines.clear();
  kept_bytes = 0;
  return taken;
}

void set_log_sink(LogSink new_sink) {
  const std::lock_guard lock(mutex);
  if (sink) sink_repeats.finish(sink);
  sink = std::move(new_sink);
}

}  // namespace arena
