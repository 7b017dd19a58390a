#include "runtime/instances_loop/stage_times.h"

#include "runtime/arrays_structs/struct.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/arguments.h"
#include "runtime/variables_calls/names.h"

namespace arena {
namespace {

StageTimes now, last;

// A struct of the stages' names and their microseconds, in the runtime's order.
RValue frame_stage_times() {
  RValue made = make_struct();
  for (int stage = 0; stage < kStages; ++stage) {
    store_variable(property_object(made), variable_id(kStageNames[stage]), RValue(last.stages[stage]));
  }
  return made;
}

const BuiltinEntry kEntries[] = {{"frame_stage_times", builtin<frame_stage_times>}};
const BuiltinTable table(kEntries);

}  // namespace

const StageTimes& last_stage_times() { return last; }

void begin_stage_times() { now = {}; }

void end_stage_times(double collection_microseconds) {
  last = now;
  last.collection = collection_microseconds;
}

StageTimer::~StageTimer() { now.stages[static_cast<int>(stage_)] += microseconds(); }

double StageTimer::microseconds() const {
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start_).count();
}

}  // namespace arena
