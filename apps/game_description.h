#pragma once
// What the program knows of the game that it runs. The game's line of CMake writes it down (cmake/Game.cmake).
#include <memory>

namespace arena::apps {

// Plays a game by pressing keys and moving the pointer, through the input queue.
class Autoplayer {
 public:
  virtual ~Autoplayer() = default;
  // Decides what to press before the next frame. The game's session is the current one.
  virtual void play() = 0;
};

struct GameDescription {
  const char* name;                                  // of the program, its data file and its folders: "arena"
  const char* title;                                 // of its window and dialogs: "Arena"
  const char* version;                               // "1.0.0"
  std::unique_ptr<Autoplayer> (*make_autoplayer)();  // null: the game cannot play itself
  bool is_single = false;                            // it does not start where it runs already
};
const GameDescription& game_description();

// Defined by the games that have one.
std::unique_ptr<Autoplayer> make_autoplayer();

}  // namespace arena::apps
