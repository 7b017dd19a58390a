#pragma once
// The one clock: time stands still between frames and moves in whole microseconds.
#include <cstdint>

namespace arena {

struct GameClock {
  std::int64_t frame_microseconds = 16667;  // delta_time: the time that this frame stands for
  std::int64_t total_microseconds = 0;      // since start; current_time is this in milliseconds
  std::int64_t frame = 0;                   // frames begun
};

GameClock& game_clock();

}  // namespace arena
