#include "runtime/instances_loop/stage_times.h"

#include "runtime/session/session.h"

namespace arena {
namespace {

struct Clocks {
  StageTimes now, last;
};
const Part<Clocks> clocks{PartLevel::kWorld, "stage times"};

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
