#pragma once
// The one clock: time stands still between frames and moves in whole microseconds.
#include <cstdint>
#include <tuple>

#include "runtime/session/state.h"

namespace arena {

struct GameClock {
  std::int64_t frame_microseconds = 16667;  // delta_time: the time that this frame stands for
  std::int64_t total_microseconds = 0;      // since start; current_time is this in milliseconds
  std::int64_t frame = 0;                   // frames begun

  void restart() { frame_microseconds = GameClock().frame_microseconds; }  // no frame of the new run has passed; time goes on
  void visit_content(StateVisitor& visitor) { visitor.clock(total_microseconds); }
  static constexpr auto fields() {
    return std::tuple(field("frame_microseconds", &GameClock::frame_microseconds),
                      derived("total_microseconds", &GameClock::total_microseconds), derived("frame", &GameClock::frame));
  }
};

GameClock& game_clock();

}  // namespace arena
