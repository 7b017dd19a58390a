#pragma once
// What of a stream of messages is worth writing: a message that came so often among the last different ones is only counted, and its count
// is written when something else is.
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace arena {

class LogRepeats {
 public:
  using Write = std::function<void(std::string_view line, bool is_note)>;
  // A message is written `most` times.
  explicit LogRepeats(int most) : most_(most) {}
  void add(std::string_view text, bool is_note, const Write& write);
  // Writes the counts that are held back, and forgets all messages.
  void finish(const Write& write);

 private:
  struct Message {
    std::string text;
    bool is_note;
    int written;
    std::int64_t held_back;
  };
  void write_counts(const Write& write);

  int most_;
  std::deque<Message> recent_;  // all different, the one written last at the end
};

}  // namespace arena
