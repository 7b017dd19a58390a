#pragma once
// A key, a button, a finger on the glass, the threshold of an axis: what is down or up. Of one switch a frame takes at most one press and
// one release, in the order in which they came; what comes beyond waits for the next frame. So each press is seen in exactly one frame,
// and so is each release, however fast they follow and however slow the game is.
#include <cstdint>
#include <tuple>

#include "runtime/session/state.h"

namespace arena {

struct Switch {
  bool down = false, pressed = false, released = false;
  // Changes that are still to come, each the opposite of the one before: all that has to be known of them is how many.
  std::uint32_t waiting = 0;
  static constexpr auto fields() {
    return std::tuple(field("down", &Switch::down), field("pressed", &Switch::pressed), field("released", &Switch::released),
                      field("waiting", &Switch::waiting));
  }

  // It was found down or up. What is no change has no effect.
  void turn(bool now) {
    if (now == (down != (waiting % 2 == 1))) return;
    if (now ? pressed : released) {  // whenever something waits, this frame has both
      ++waiting;
    } else {
      change();
    }
  }
  // A new frame: the edges of the last one are over, and what waited comes in.
  void begin_frame() {
    pressed = released = false;
    for (; waiting > 0 && !(down ? released : pressed); --waiting) change();
  }
  bool is_held_throughout() const { return down && !pressed; }

 private:
  void change() {
    down = !down;
    (down ? pressed : released) = true;
  }
};

}  // namespace arena
