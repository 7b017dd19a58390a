#pragma once
// Which drawing service the built-in functions of scripts reach.
#include "engine/draw/draw.h"

namespace arena {

class CInstance;

namespace draw {

void use_draw_service(Draw* draw);  // null: nobody looks
Draw* draw_service();
// Colour, alpha, font, alignment and blend mode as at start.
void reset_draw_state();
// The state as a handler found it, and back to it when the handler ended by an error.
void save_draw_state();
void restore_draw_state();
void draw_instance_default(CInstance& instance);

}  // namespace draw
}  // namespace arena
