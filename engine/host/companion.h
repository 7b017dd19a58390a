#pragma once
// A session beside a game, over its picture: what only looks and listens (a replay's time line, debris, banners). It has the game's data
// and scripts, and a heap, a world, a clock and input of its own; the game it sees through script/watched.h. The game runs as if it were
// not there: with the same state and the same hash.
#include <cstdint>
#include <string_view>

#include "engine/host/game.h"

namespace arena::host {

class Companion {
 public:
  // One instance of the object, a type of the data or a ToolObject, stands alone in a room of its own. The window, not owned or null, is
  // the one that its scripts reach. `game` outlives it; the game's session is the current one afterwards.
  Companion(Game& game, std::string_view object, platform::Window* window);
  ~Companion();
  Companion(const Companion&) = delete;
  Companion& operator=(const Companion&) = delete;

  Session& session() { return session_; }
  // So much time passes with the next picture of the game that is shown. Without it, none.
  void advance(std::int64_t microseconds) { microseconds_ += microseconds; }
  // Global variables of its session: what a host tells its scripts and hears from them.
  void tell(std::string_view name, const RValue& value);
  void tell_text(std::string_view name, std::string_view text);
  double hear(std::string_view name);  // 0: no number stands there
  // False when there is no such object, or once it ended itself or one of its scripts failed (the log says how): it is not seen any more.
  bool is_there() const { return is_there_; }

 private:
  void begin(std::string_view object, platform::Window* window);
  void draw_above();
  template <class Work>
  void run_guarded(Work work);
  Game& game_;
  std::int64_t microseconds_ = 0;
  bool is_there_ = false;
  Session session_;
};

}  // namespace arena::host
