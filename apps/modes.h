#pragma once
// The ways to run a game: from outside, as fast as it goes, in a window, or by itself where there is no display. Each ends within a frame
// of an end request.
#include <string>

#include "apps/options.h"

namespace arena {
namespace host {
class Game;
}
namespace platform {
class Window;
}

namespace apps {

// Answers requests; frames run only when asked. These two give what went wrong with the streams or files that they use; "" is fine.
std::string run_console(host::Game& game, const Options& options);
std::string run_headless(host::Game& game, const Options& options);
void run_window(host::Game& game, platform::Window& window, const Options& options);
void run_show(host::Game& game, const Options& options);

}  // namespace apps
}  // namespace arena
