#pragma once
// One JSON request a line, one JSON reply a line. Any line of garbage gets an error reply, and the game goes on.
#include <memory>
#include <string>

namespace arena {
namespace host {
class Game;
}

namespace console {

class Console {
 public:
  // `game` must outlive the console. Script errors of handlers are kept from here on instead of ending the program.
  explicit Console(host::Game& game);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  std::string answer(const std::string& line);
  bool has_quit() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace console
}  // namespace arena
