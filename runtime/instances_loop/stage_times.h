#pragma once
// How long the stages of a frame take, by the names that the runtime gives them. Times are the machine's own and no part of the game's
// state: what depends on them is another game on every machine.
//
// Stages lie within one another: Mainloop_Process is the whole frame, DoAStep its part before the drawing, DrawRoom the drawing.
#include <chrono>
#include <cstdint>
#include <string_view>

namespace arena {

enum class Stage : std::uint8_t {
  kHandleCollision,         // all of finding overlaps and running their events
  kCollisionInstance,       // the events alone
  kHandleStep,              // begin step, step and end step
  kHandleInstanceMovement,  // previous positions, built-in motion
  kPhysicsWorldUpdate,      // nothing yet
  kUpdateActiveLists,       // forgetting who died
  kHandleAlarm,
  kHandleMouse,           // keys and mouse
  kHandleOther,           // animation and its end, rooms and their start and end
  kParticleSystemUpdate,  // wherever a script asks for it
  kDrawRoom,              // the whole drawing pass
  kDrawTheRoom,           // its part in the room, without the GUI
  kMainloopProcess,
  kDoAStep
};
inline constexpr std::string_view kStageNames[] = {"HandleCollision",    "Collision_Instance",
                                                   "HandleStep",         "HandleInstanceMovement",
                                                   "PhysicsWorldUpdate", "UpdateActiveLists",
                                                   "HandleAlarm",        "HandleMouse",
                                                   "HandleOther",        "ParticleSystem_UpdateAll",
                                                   "DrawRoom",           "DrawTheRoom",
                                                   "Mainloop_Process",   "DoAStep"};
inline constexpr int kStages = sizeof(kStageNames) / sizeof(kStageNames[0]);
static_assert(static_cast<int>(Stage::kDoAStep) == kStages - 1);

// Microseconds that each stage took. The collector is no stage of its own: its time is part of the whole frame's.
struct StageTimes {
  double stages[kStages] = {};
  double collection = 0;
  double operator[](Stage stage) const { return stages[static_cast<int>(stage)]; }
};

// Of the last whole frame.
const StageTimes& last_stage_times();

// The frame loop begins and ends a frame's account.
void begin_stage_times();
void end_stage_times(double collection_microseconds);

// Adds the time that it lives to a stage of the frame that runs.
class StageTimer {
 public:
  explicit StageTimer(Stage stage) : stage_(stage) {}
  ~StageTimer();
  StageTimer(const StageTimer&) = delete;
  StageTimer& operator=(const StageTimer&) = delete;
  double microseconds() const;  // so far

 private:
  Stage stage_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace arena
