#include "runtime/reports/log_repeats.h"

#include <algorithm>
#include <utility>

namespace arena {
namespace {
constexpr std::size_t kRemembered = 32;
}

void LogRepeats::add(std::string_view text, bool is_note, const Write& write) {
  const auto found = std::find_if(recent_.begin(), recent_.end(), [&](const Message& each) { return each.text == text; });
  if (found != recent_.end() && found->written >= most_) {
    ++found->held_back;
    return;
  }
  write_counts(write);
  Message message = found != recent_.end() ? std::move(*found) : Message{std::string(text), is_note, 0, 0};
  if (found != recent_.end()) recent_.erase(found);
  ++message.written;
  write(message.text, is_note);
  recent_.push_back(std::move(message));
  if (recent_.size() > kRemembered) recent_.pop_front();
}

void LogRepeats::write_counts(const Write& write) {
  // The last message's own count comes first: it stands right below it.
  for (auto each = recent_.rbegin(); each != recent_.rend(); ++each) {
    if (each->held_back == 0) continue;
    const std::string times = std::to_string(std::exchange(each->held_back, 0)) + " more times";
    write(each == recent_.rbegin() ? "(the last message came " + times + ")" : "(came " + times + ": " + each->text + ")", each->is_note);
  }
}

void LogRepeats::finish(const Write& write) {
  write_counts(write);
  recent_.clear();
}

}  // namespace arena
