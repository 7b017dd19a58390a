#pragma once
// Which drawing service the built-in functions of scripts reach.
#include "engine/draw/draw.h"

namespace arena {

class CInstance;

namespace draw {

void use_draw_service(Draw* draw);  // null: nobody looks
Draw* draw_service();
// Colour, alpha, font, alignment and blend mode of the session.
DrawState& draw_state();
// A drawing pass leaves no setting behind: it carries through the pass, and is back to what it was at its end.
void begin_draw_pass();
void end_draw_pass();
// The state as a handler found it, and back to it when the handler ended by an error.
void save_draw_state();
void restore_draw_state();
void draw_instance_default(CInstance& instance);

}  // namespace draw
}  // namespace arena
