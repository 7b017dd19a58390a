// Alarms by number or name, and timers.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/timers.h"

#include <algorithm>
#include <cmath>

#include "runtime/arrays_structs/method.h"
#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/timers.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {

// Null: it has ended, or a number that no timer had was reported.
struct TimerArgument {
  Timer* timer;
};

template <>
struct Argument<TimerArgument> {
  static constexpr bool consumes = true;
  static TimerArgument get(const CallContext& call, int at) {
    if (!is_number_like(argument_at(call, at))) {
      report_argument_type(call, at, "timer");
      return {nullptr};
    }
    const std::int32_t number = to_int32(argument_at(call, at));
    if (!timers().was_given(number)) report_invalid_resource(at + 1, "timer", number, -1);
    return {timers().find(number)};
  }
};

namespace {

constexpr double kSecond = 1e6, kLongest = 1e15;  // microseconds; about thirty years

// The number of an alarm of the instance; -1 after a report.
std::int32_t require_alarm(const CallContext& call, const CInstance& instance) {
  const RValue& which = argument_at(call, 0);
  if (which.is_string()) {
    const std::int32_t number = object_types().find_alarm(text_of(which));
    if (number >= 0 && instance.type->find_event({EventKind::kAlarm, number}) != nullptr) return number;
    report_argument_type(call, 0, "name of one of the object's Alarm events");
    return -1;
  }
  if (!is_number_like(which)) {
    report_argument_type(call, 0, "number or name of an alarm");
    return -1;
  }
  const std::int32_t number = to_int32(which);
  if (number >= 0 && number < kAlarms) return number;
  report_invalid_resource(1, "alarm", number, kAlarms);
  return -1;
}

void alarm_set(const CallContext& call, SelfInstance self, const RValue&, double frames) {
  const std::int32_t alarm = self.instance != nullptr ? require_alarm(call, *self.instance) : -1;
  if (alarm < 0) return;
  if (alarm < kAlarms) {
    self.instance->alarm.data()[alarm] = frames >= 0 ? frames : -1;
  } else {
    set_named_alarm(*self.instance, alarm, frames);
  }
}

double alarm_get(const CallContext& call, SelfInstance self, const RValue&) {
  const std::int32_t alarm = self.instance != nullptr ? require_alarm(call, *self.instance) : -1;
  if (alarm < 0) return -1;
  return alarm < kAlarms ? self.instance->alarm.data()[alarm] : named_alarm(*self.instance, alarm);
}

// It runs for whom its function is bound to; a function that is not, for whom made it.
std::int32_t create(const CallContext& call, Callable function, std::int64_t period, bool counts_frames, std::int32_t times,
                    bool in_pause) {
  Timer& timer = timers().create();
  timer.period = timer.left = period;
  timer.counts_frames = counts_frames;
  timer.times = times < 1 ? -1 : times;
  timer.runs_in_pause = in_pause;
  timer.function = function.value;
  const MethodClosure* const method = method_of(function.value);
  if (method != nullptr && method->bound_self.is_object()) {
    timer.owner = method->bound_self;
  } else if (call.self != nullptr) {
    timer.owner = RValue::of_object(call.self);
  }
  return timer.number;
}

std::int32_t create_seconds(const CallContext& call, double seconds, Callable function, std::int32_t times, bool in_pause) {
  const double microseconds = std::round(seconds * kSecond);
  return create(call, function, static_cast<std::int64_t>(microseconds >= 1 ? std::min(microseconds, kLongest) : 1), false, times,
                in_pause);
}
std::int32_t create_frames(const CallContext& call, std::int32_t frames, Callable function, std::int32_t times, bool in_pause) {
  return create(call, function, std::max(frames, 1), true, times, in_pause);
}

void destroy(TimerArgument given) {
  if (given.timer != nullptr) given.timer->is_over = true;
}
bool exists(std::int32_t number) { return timers().find(number) != nullptr; }
double get_left(TimerArgument given) {
  if (given.timer == nullptr) return 0;
  const double left = static_cast<double>(given.timer->left);
  return given.timer->counts_frames ? left : left / kSecond;
}
bool is_paused(TimerArgument given) { return given.timer != nullptr && given.timer->is_paused; }
void pause(TimerArgument given) {
  if (given.timer != nullptr) given.timer->is_paused = true;
}
void resume(TimerArgument given) {
  if (given.timer != nullptr) given.timer->is_paused = false;
}
void restart(TimerArgument given) {
  if (given.timer != nullptr) given.timer->left = given.timer->period;
}
bool are_paused() { return timers().are_paused; }
void pause_all() { timers().are_paused = true; }
void resume_all() { timers().are_paused = false; }

constexpr Implementation kRows[] = {
    implement<script::alarm_set, alarm_set>,
    implement<script::alarm_get, alarm_get>,
    implement<script::timer_create_seconds, create_seconds>,
    implement<script::timer_create_frames, create_frames>,
    implement<script::timer_destroy, destroy>,
    implement<script::timer_exists, exists>,
    implement<script::timer_get_left, get_left>,
    implement<script::timer_is_paused, is_paused>,
    implement<script::timer_pause, pause>,
    implement<script::timer_resume, resume>,
    implement<script::timer_restart, restart>,
    implement<script::timers_are_paused, are_paused>,
    implement<script::timers_pause, pause_all>,
    implement<script::timers_resume, resume_all>,
};
const BuiltinTable table(
    "Timers and alarms",
    "They count game time, and run between Begin Step and the key events of a frame: alarms by number, alarms by name, timers. A timer "
    "belongs to whom its function is bound to, or else to whom made it: it stands still while that instance sleeps, and ends with it. "
    "It is called once a frame at most. Functions of a timer that has ended do nothing.",
    kRows);

}  // namespace
}  // namespace arena
