#pragma once
// Alarms that have a name, and timers: what runs by itself when its time is over. Both count game time, frame by frame, right behind the
// alarms by number: named alarms first, in order of the instances, then timers in order of creation.
//
// A timer belongs to the instance that its function is bound to, or that made it: it stands still while that one sleeps, and ends with it.
#include <cstdint>
#include <memory>
#include <tuple>
#include <vector>

#include "runtime/arrays_structs/holder.h"
#include "runtime/instances_loop/instance.h"

namespace arena {

// `alarm` is the number of a named Alarm event of the instance's object (events.h). The event runs when so many frames have passed, at the
// earliest in the next one; below 0, or what is no number, stops it.
void set_named_alarm(const CInstance& instance, std::int32_t alarm, double frames);
// Frames left; -1: it does not run.
double named_alarm(const CInstance& instance, std::int32_t alarm);

// The second instance gets those of the first.
void copy_named_alarms(const CInstance& from, const CInstance& to);

class Timer final : public Holder {
 public:
  void visit_values(ValueVisitor& visitor) override {
    visitor(function);
    visitor(owner);
  }
  std::int64_t period = 1, left = 1;  // microseconds or frames
  std::int32_t number = 0;
  std::int32_t times = 1;  // calls still to come; below 0: without end
  bool counts_frames = false;
  bool is_paused = false;
  bool runs_in_pause = false;  // goes on while all timers are paused
  bool is_over = false;        // leaves the list with the next frame
  RValue function;             // called with the timer's number
  RValue owner;                // whose it is: an instance or struct, or undefined

  static constexpr std::size_t kFieldsBegin = sizeof(Holder);
  static constexpr auto fields() {
    return std::tuple(field("period", &Timer::period), field("left", &Timer::left), field("number", &Timer::number),
                      field("times", &Timer::times), field("counts_frames", &Timer::counts_frames), field("is_paused", &Timer::is_paused),
                      field("runs_in_pause", &Timer::runs_in_pause), field("is_over", &Timer::is_over), field("function", &Timer::function),
                      field("owner", &Timer::owner));
  }
};

class Timers {
 public:
  Timer& create();
  Timer* find(std::int32_t number) const;  // null: there is none, or it has ended
  // Whether a timer ever had this number in this run.
  bool was_given(std::int32_t number) const { return number >= 0 && number < next_; }
  bool are_paused = false;

  // Lets the time of a frame pass, and calls the functions whose time is over.
  void run(std::int64_t microseconds);

  void restart();
  struct State {
    std::vector<Timer*> all;
    std::int32_t next = 0;
    bool are_paused = false;
  };
  void save(State& into) const;
  void load(const State& from);
  void visit_content(StateVisitor& visitor);
  static constexpr auto fields() {
    return std::tuple(derived("are_paused", &Timers::are_paused), derived("all", &Timers::all_), derived("next", &Timers::next_));
  }

 private:
  void run_one(Timer& timer);
  std::vector<std::unique_ptr<Timer>> all_;  // in order of creation; they stand among the session's blocks
  std::int32_t next_ = 0;                    // numbers are given once
};
Timers& timers();

// For the frame loop.
void run_named_alarms();

}  // namespace arena
