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
}

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

// Plays a recording at its own pace, or with --verify as fast as it goes; then says in problem() where the run is another one.
std::unique_ptr<Mode> replay_mode(host::Game& game, platform::Window* window, recording::Replay& replay, const Options& options);
// Game, window, replay and options outlive the mode.
std::unique_ptr<Mode> console_mode(host::Game& game, const Options& options);
std::unique_ptr<Mode> headless_mode(host::Game& game, const Options& options);
std::unique_ptr<Mode> window_mode(host::Game& game, platform::Window& window, const Options& options);
std::unique_ptr<Mode> show_mode(host::Game& game, const Options& options);

}  // namespace apps
}  // namespace arena
