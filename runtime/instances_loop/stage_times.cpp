#include "runtime/instances_loop/stage_times.h"

#include "runtime/arrays_structs/struct.h"
#include "runtime/session/session.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/arguments.h"
#include "runtime/variables_calls/names.h"

namespace arena {
namespace {

struct Clocks {
  StageTimes now, last;
};
const Part<Clocks> clocks{PartLevel::kWorld, "stage times"};

// A struct of the stages' names and their microseconds, in the runtime's order.
RValue frame_stage_times() {
  RValue made = make_struct();
  for (int stage = 0; stage < kStages; ++stage) {
    store_variable(property_object(made), variable_id(kStageNames[stage]), RValue(clocks().last.stages[stage]));
  }
  return made;
}

const BuiltinEntry kEntries[] = {{"frame_stage_times", builtin<frame_stage_times>}};
const BuiltinTable table(kEntries);

}  // namespace

const StageTimes& last_stage_times() { return clocks().last; }

void begin_stage_times() { clocks().now = {}; }

void end_stage_times(double collection_microseconds) {
  clocks().last = clocks().now;
  clocks().last.collection = collection_microseconds;
}

StageTimer::~StageTimer() { clocks().now.stages[static_cast<int>(stage_)] += microseconds(); }

double StageTimer::microseconds() const {
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start_).count();
}

}  // namespace arena
