#include "runtime/reports/log.h"

#include <deque>
#include <mutex>
#include <utility>

#include "runtime/reports/log_repeats.h"
#include "runtime/session/session.h"

namespace arena {
namespace {

constexpr std::size_t kMostKeptLines = 10000, kMostKeptBytes = 8 << 20, kLongestLine = 64 << 10;

// What a session said, for whoever asks.
struct Kept {
  std::deque<std::string> lines;
  std::size_t bytes = 0;
  LogRepeats repeats{10};
};
const Part<Kept> kept{PartLevel::kMemory, "log"};

// Where the process writes down what its sessions say.
LogRepeats sink_repeats(1);
LogSink sink;
std::mutex mutex;  // sessions and worker threads may speak at once

void keep(std::string_view line, bool) {
  Kept& log = kept();
  log.lines.emplace_back(line);
  log.bytes += line.size();
  for (; log.lines.size() > kMostKeptLines || log.bytes > kMostKeptBytes; log.lines.pop_front()) log.bytes -= log.lines.front().size();
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
  if (detail::current_session != nullptr) kept().repeats.add(text, is_note, keep);  // else the program speaks, before any game
  if (sink) sink_repeats.add(text, is_note, sink);
}

}  // namespace

void log_note(std::string_view text) { log(text, true); }
void log_message(std::string_view text) { log(text, false); }
void log_warning(std::string_view text) { log_message("WARNING: " + std::string(text)); }

std::vector<std::string> take_log() {
  const std::lock_guard lock(mutex);
  Kept& log = kept();
  log.repeats.finish(keep);
  std::vector<std::string> taken(log.lines.begin(), log.lines.end());
  log.lines.clear();
  log.bytes = 0;
  return taken;
}

void set_log_sink(LogSink new_sink) {
  const std::lock_guard lock(mutex);
  if (sink) sink_repeats.finish(sink);
  sink = std::move(new_sink);
}

}  // namespace arena
