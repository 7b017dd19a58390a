// Rooms, time and the game itself.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/game.h"

#include "runtime/arrays_structs/struct.h"
#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/caught_errors.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/moments.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/log.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/access.h"

namespace arena {
namespace {

bool room_exists(std::int32_t room) { return world().has_room(room); }
void room_goto(std::int32_t room) {
  if (require_room(room, current_builtin_name())) world().room_wanted = room;
}
void room_restart() { world().room_wanted = world().room; }
std::string room_get_name(std::int32_t room) {
  return require_room(room, current_builtin_name()) ? world().room_definition(room).name : std::string();
}
void game_restart() { world().restart_wanted = true; }
void game_end() { world().ended = true; }
void debug_message(const RValue& value) { log_message(to_text(value)); }
double get_timer() { return static_cast<double>(game_clock().total_microseconds); }

// A struct of the stages' names and their microseconds, in the runtime's order.
RValue frame_stage_times() {
  RValue made = make_struct();
  for (int stage = 0; stage < kStages; ++stage) {
    store_variable(property_object(made), variable_id(kStageNames[stage]), RValue(last_stage_times().stages[stage]));
  }
  return made;
}

constexpr Implementation kRows[] = {
    implement<script::room_goto, room_goto>,
    implement<script::room_restart, room_restart>,
    implement<script::room_get_name, room_get_name>,
    implement<script::room_exists, room_exists>,
    implement<script::game_restart, game_restart>,
    implement<script::game_end, game_end>,
    implement<script::show_debug_message, debug_message>,
    implement<script::get_timer, get_timer>,
    implement<script::moment_mark, mark_moment>,
    implement<script::frame_stage_times, frame_stage_times>,
    implement<script::exception_unhandled_handler, set_unhandled_handler>,
};
const BuiltinTable table("Game and rooms",
                         "What `frame_stage_times` gives are times of the machine, so nothing in a game may depend on them.", kRows);

}  // namespace
}  // namespace arena
