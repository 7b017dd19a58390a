// Running one handler: what reports say is running, who inherits from whom, and what an error does.
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/caught_errors.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/frame.h"
#include "runtime/reports/report.h"
#include "runtime/variables_calls/calls.h"

namespace arena {

// The handler that runs, linked to the one that caused it.
struct RunningEvent {
  const RunningEvent* previous;
  CInstance* self;
  WBObjectBase* other;
  const BoundEvent* event;
  int action;  // counts the handlers of one event of one instance, the inherited ones included, from 1
};

namespace {

const Part<ScriptErrorSink> error_sink{PartLevel::kWorld, "error sink"};

const RunningEvent* running_event() { return session().running_event; }

EventDescription describe_running_event() {
  const RunningEvent* const running = running_event();
  if (running == nullptr) return {};
  return {event_text(running->event->key), running->self != nullptr ? running->self->type->definition.name : std::string(),
          running->action};
}

// Leaves everything as it was before the handler, also when it ends by an error.
class HandlerScope : RunningEvent {
 public:
  HandlerScope(CInstance* for_self, WBObjectBase* for_other, const BoundEvent* which, int action_number)
      : RunningEvent{running_event(), for_self, for_other, which, action_number}, container_depth_(container_depth()) {
    session().running_event = this;
  }
  ~HandlerScope() {
    ARENA_ASSERT(session().running_event == this);
    session().running_event = previous;
    restore_container_depth(container_depth_);
  }
  HandlerScope(const HandlerScope&) = delete;
  HandlerScope& operator=(const HandlerScope&) = delete;

 private:
  int container_depth_;
};

// Handlers take instances; the rare other that is none (a struct that creates) reads as the instance itself.
CInstance* instance_or(WBObjectBase* other, CInstance* self) {
  return other != nullptr && other->object_kind == ObjectKind::kInstance ? static_cast<CInstance*>(other) : self;
}

const bool installed = (set_event_describer(describe_running_event), true);

}  // namespace

void set_script_error_sink(ScriptErrorSink sink) { error_sink() = sink; }

namespace {

// False when it ended by an error that went to the sink.
template <class Run>
bool runs_to_its_end(Run run) {
  const ScriptErrorSink sink = error_sink();
  if (sink == nullptr) {
    with_memory_reported(run);
    return true;
  }
  try {
    with_memory_reported(run);
    return true;
  } catch (const WBKSLException& error) {
    if (innermost_frame() != nullptr) throw;  // the script that caused the event ends too
    sink(error);
    try {
      with_memory_reported([&] { tell_unhandled_error(error); });
    } catch (const WBKSLException& second) {
      sink(second);
    }
    return false;
  }
}

}  // namespace

bool run_handler(CInstance& self, WBObjectBase* other, const BoundEvent& event) {
  const HandlerScope scope(&self, other, &event, 1);
  CInstance* const other_instance = instance_or(other, &self);
  return runs_to_its_end([&] { event.function->handler(&self, other_instance); });
}

bool run_called(EventKey key, CInstance* self, const std::function<void()>& call) {
  const BoundEvent event{key, nullptr, -1};
  const HandlerScope scope(self, self, &event, 1);
  return runs_to_its_end(call);
}

bool run_event(CInstance& self, WBObjectBase* other, EventKey key) {
  const BoundEvent* event = self.type->find_event(key);
  if (event == nullptr) return false;
  run_handler(self, other, *event);
  return true;
}

bool running_handler(RunningHandler& out) {
  const RunningEvent* const running = running_event();
  if (running == nullptr || running->self == nullptr) return false;
  out = {running->self, running->event->key};
  return true;
}

void run_inherited_event() {
  const RunningEvent* const running = running_event();
  if (running == nullptr || running->event->owner < 0) return;  // what runs is no event of an object
  const std::vector<std::int32_t>& lineage = object_types().at(running->event->owner).lineage;
  if (lineage.size() < 2) return;
  const BoundEvent* inherited = object_types().at(lineage[1]).find_event(running->event->key);
  if (inherited == nullptr) return;
  const HandlerScope scope(running->self, running->other, inherited, running->action + 1);
  with_memory_reported([&] { inherited->function->handler(running->self, instance_or(running->other, running->self)); });
}

}  // namespace arena
