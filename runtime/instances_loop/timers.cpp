#include "runtime/instances_loop/timers.h"

#include <algorithm>

#include "runtime/instances_loop/world.h"
#include "runtime/memory/held_bytes.h"
#include "runtime/variables_calls/calls.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

struct NamedAlarm {
  std::int32_t instance = 0, alarm = 0;
  double left = 0;
  static constexpr auto fields() {
    return std::tuple(field("instance", &NamedAlarm::instance), field("alarm", &NamedAlarm::alarm), field("left", &NamedAlarm::left));
  }
};

struct NamedAlarms {
  std::vector<NamedAlarm> running;  // by instance, then by alarm

  void visit_content(StateVisitor& visitor) {
    if (running.empty()) return;  // a game without any is as if there were no such part
    visitor.name("running");
    visit_state(visitor, running);
  }
  static constexpr auto fields() { return std::tuple(derived("running", &NamedAlarms::running)); }
};
const StatePart<NamedAlarms> alarms{PartLevel::kWorld, "alarms by name"};
const StatePart<Timers> part{PartLevel::kWorld, "timers"};

// Where the alarm stands, or would.
std::vector<NamedAlarm>::iterator place_of(std::int32_t instance, std::int32_t alarm) {
  return std::lower_bound(alarms().running.begin(), alarms().running.end(), std::pair(instance, alarm),
                          [](const NamedAlarm& one, const std::pair<std::int32_t, std::int32_t>& wanted) {
                            return std::pair(one.instance, one.alarm) < wanted;
                          });
}

bool is_there(std::vector<NamedAlarm>::iterator place, std::int32_t instance, std::int32_t alarm) {
  return place != alarms().running.end() && place->instance == instance && place->alarm == alarm;
}

}  // namespace

void set_named_alarm(const CInstance& instance, std::int32_t alarm, double frames) {
  const auto place = place_of(instance.id, alarm);
  const bool runs = is_there(place, instance.id, alarm);
  if (!(frames >= 0)) {
    if (runs) alarms().running.erase(place);
  } else if (runs) {
    place->left = frames;
  } else {
    alarms().running.insert(place, {instance.id, alarm, frames});
  }
}

double named_alarm(const CInstance& instance, std::int32_t alarm) {
  const auto place = place_of(instance.id, alarm);
  return is_there(place, instance.id, alarm) ? place->left : -1;
}

void copy_named_alarms(const CInstance& from, const CInstance& to) {
  const std::vector<NamedAlarm> running = alarms().running;
  for (const NamedAlarm& each : running) {
    if (each.instance == from.id) set_named_alarm(to, each.alarm, each.left);
  }
}

// All are counted before the first event runs: what an event sets counts from the next frame on.
void run_named_alarms() {
  std::vector<NamedAlarm>& running = alarms().running;
  if (running.empty()) return;
  std::erase_if(running, [](const NamedAlarm& each) { return world().find(each.instance) == nullptr; });
  std::vector<NamedAlarm> due;
  for (NamedAlarm& each : running) {
    if (!world().find(each.instance)->is_alive) continue;  // it sleeps
    each.left = std::max(each.left - 1, 0.0);
    if (each.left == 0) due.push_back(each);
  }
  for (const NamedAlarm& each : due) {
    const auto place = place_of(each.instance, each.alarm);
    if (!is_there(place, each.instance, each.alarm) || place->left != 0) continue;  // an event before it stopped it or set it anew
    CInstance* const instance = world().find(each.instance);
    if (instance == nullptr || !instance->is_alive) continue;
    running.erase(place);
    run_event(*instance, instance, {EventKind::kAlarm, each.alarm});
  }
}

Timers& timers() { return part(); }

Timer& Timers::create() {
  all_.push_back(std::make_unique<Timer>());
  all_.back()->number = next_++;
  return *all_.back();
}

Timer* Timers::find(std::int32_t number) const {
  const auto found = std::lower_bound(all_.begin(), all_.end(), number,
                                      [](const std::unique_ptr<Timer>& timer, std::int32_t wanted) { return timer->number < wanted; });
  return found != all_.end() && (*found)->number == number && !(*found)->is_over ? found->get() : nullptr;
}

void Timers::run(std::int64_t microseconds) {
  if (all_.empty()) return;
  const std::size_t count = all_.size();
  for (std::size_t i = 0; i < count; ++i) {
    Timer& timer = *all_[i];
    const CInstance* const owner = timer.owner.is_object() ? instance_of(timer.owner.object) : nullptr;
    if (owner != nullptr && !owner->is_alive && !owner->is_asleep) timer.is_over = true;
    if (timer.is_over || timer.is_paused || (are_paused && !timer.runs_in_pause) || (owner != nullptr && owner->is_asleep)) continue;
    timer.left -= timer.counts_frames ? 1 : microseconds;
    if (timer.left <= 0) run_one(timer);
  }
  std::erase_if(all_, [](const std::unique_ptr<Timer>& timer) { return timer->is_over; });
}

// Once a frame at most. What a frame was too long for counts towards the next call, as long as that is not due by it alone.
void Timers::run_one(Timer& timer) {
  timer.left = std::max<std::int64_t>(timer.left + timer.period, 0);
  if (timer.times > 0 && --timer.times == 0) timer.is_over = true;
  const RValue function = timer.function, owner = timer.owner, number(static_cast<double>(timer.number));
  WBObjectBase* const self = owner.is_object() ? owner.object : nullptr;
  run_called({EventKind::kTimer, timer.number}, instance_of(self), [&] {
    const RValue* arguments[] = {&number};
    RValue ignored;
    call_method(self, self, ignored, 1, function, arguments);
  });
}

void Timers::restart() {
  all_.clear();
  next_ = 0;
  are_paused = false;
}

void Timers::save(State& into) const {
  into.all.clear();
  for (const auto& each : all_) into.all.push_back(each.get());
  into.next = next_;
  into.are_paused = are_paused;
}

void Timers::load(const State& from) {
  for (auto& each : all_) each.release();
  all_.clear();
  for (Timer* const each : from.all) all_.emplace_back(each);
  next_ = from.next;
  are_paused = from.are_paused;
}

// A game without timers is as if there were no such part.
void Timers::visit_content(StateVisitor& visitor) {
  if (next_ == 0 && !are_paused) return;
  visitor.name("next");
  visit_state(visitor, next_);
  visitor.name("are_paused");
  visit_state(visitor, are_paused);
  for (const auto& each : all_) visit_state(visitor, *each);
}

}  // namespace arena
