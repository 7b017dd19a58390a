#pragma once
// One frame of the game, in this order:
//
//   input, clock, previous positions, begin step, alarms (by number, then by name), timers, keys, mouse, wheel, pointer, window, step,
//   built-in motion, collisions, who left the room or a view, end step, animation, room changes, drawing (world, then GUI layer), restart,
//   changes of objects, waking, collection
//
// Within an event all instances of all handling types run in order of creation. A new instance takes part from the next pass on.
#include <cstdint>

#include "runtime/instances_loop/world.h"

namespace arena {

// What the drawing service does around the draw events. Null entries are skipped: a world without drawing runs the same.
struct DrawHooks {
  void (*begin_world)() = nullptr;
  void (*draw_background)(const Layer& layer) = nullptr;
  void (*draw_instance)(CInstance& instance) = nullptr;  // the default drawing of a type without a Draw event
  void (*begin_gui)() = nullptr;
  void (*end_frame)() = nullptr;
  void (*before_handler)(const CInstance& instance, EventKey key) = nullptr;  // of drawing events
};
void set_draw_hooks(const DrawHooks& hooks);

// Runs one frame that stands for so much time. Nothing happens once the game has ended.
void run_frame(std::int64_t microseconds);
// The drawing pass alone, as for a screenshot of a still world.
void draw_frame();

}  // namespace arena
