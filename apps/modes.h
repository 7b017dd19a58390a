#pragma once
// The ways to run a game: from outside, as fast as it goes, in a window, or by itself where there is no display. Each ends within a tick
// of an end request.
#include <memory>
#include <string>

#include "apps/options.h"
#include "engine/platform/main_loop.h"

namespace arena {
namespace host {
class Game;
}
namespace platform {
class Window;
}
namespace recording {
class Replay;
struct Recording;
}  // namespace recording

namespace apps {

class Mode {
 public:
  virtual ~Mode() = default;
  // One frame, or one request.
  virtual platform::NextTick tick() = 0;
  // What went wrong with the streams or files that it uses; "": nothing.
  const std::string& problem() const { return problem_; }

 protected:
  platform::NextTick fail(std::string problem) {
    problem_ = std::move(problem);
    return platform::NextTick::kNever;
  }

 private:
  std::string problem_;
};

// Game, window, replay, recording and options outlive the mode.
// Plays a recording as fast as it goes, and with --verify says in problem() where the run is another one.
std::unique_ptr<Mode> replay_mode(host::Game& game, recording::Replay& replay, const Options& options);
// The same in another build of the program, too; says in problem() where that one differs.
std::unique_ptr<Mode> compare_mode(host::Game& game, recording::Replay& replay, const Options& options);
// The game was started without the window. `ending` is a sentence about what comes behind the last frame; "": nothing does.
std::unique_ptr<Mode> viewer_mode(host::Game& game, platform::Window& window, recording::Replay& replay,
                                  const recording::Recording& recorded, const std::string& ending, const Options& options);
std::unique_ptr<Mode> console_mode(host::Game& game, const Options& options);
std::unique_ptr<Mode> headless_mode(host::Game& game, const Options& options);
std::unique_ptr<Mode> window_mode(host::Game& game, platform::Window& window, const Options& options);
std::unique_ptr<Mode> show_mode(host::Game& game, const Options& options);

// "FRAME HASH" of the current session.
std::string hash_line(std::size_t frame);

}  // namespace apps
}  // namespace arena
