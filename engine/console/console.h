#pragma once
// One JSON request a line, one JSON reply a line. Any line of garbage gets an error reply, and the game goes on.
#include <functional>
#include <memory>
#include <string>

namespace arena {
namespace host {
class Game;
}

namespace console {

inline constexpr std::size_t kLongestRequest = 16 << 20;  // bytes of a line; a longer one gets an error reply

// What else takes part in the frames of a step; either may be empty.
struct StepHooks {
  std::function<void()> before_frame;
  std::function<bool()> must_end;  // asked before each frame: true ends the step early
};

class Console {
 public:
  // `game` must outlive the console. Script errors of handlers are kept from here on instead of ending the program.
  explicit Console(host::Game& game, StepHooks hooks = {});
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  std::string answer(const std::string& line);
  bool has_quit() const;
  // Whether a request stepped the game and none let it run again: beside a window that shows it, its frames wait for requests then.
  bool holds_clock() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace console
}  // namespace arena
