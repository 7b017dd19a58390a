// Running one handler: what reports say is running, who inherits from whom, and what an error does.
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/calls.h"
#include "runtime/variables_calls/frame.h"
#include "runtime/variables_calls/report.h"

namespace arena {
namespace {

struct RunningEvent {
  CInstance* self;
  WBObjectBase* other;
  const BoundEvent* event;
  int action;
};
RunningEvent running{nullptr, nullptr, nullptr, 0};
ScriptErrorSink error_sink = nullptr;

std::string running_event_text(const void* event) { return event_text(static_cast<const BoundEvent*>(event)->key); }

// Leaves everything as it was before the handler, also when it ends by an error.
class HandlerScope {
 public:
  HandlerScope(const RunningEvent& next)
      : saved_(running),
        container_depth_(container_depth()),
        report_({running_event_text, next.event, next.self->type->definition.name.c_str(), next.action}) {
    running = next;
  }
  ~HandlerScope() {
    running = saved_;
    restore_container_depth(container_depth_);
  }
  HandlerScope(const HandlerScope&) = delete;
  HandlerScope& operator=(const HandlerScope&) = delete;

 private:
  RunningEvent saved_;
  int container_depth_;
  EventContextScope report_;
};

}  // namespace

void set_script_error_sink(ScriptErrorSink sink) { error_sink = sink; }

void run_handler(CInstance& self, WBObjectBase* other, const BoundEvent& event) {
  const HandlerScope scope({&self, other, &event, 1});
  // Handlers of the game take instances; the rare other that is none (a struct that creates) reads as the instance itself.
  CInstance* const other_instance = other != nullptr && other->object_kind == ObjectKind::kInstance ? static_cast<CInstance*>(other) : &self;
  if (error_sink == nullptr) {
    event.function->handler(&self, other_instance);
    return;
  }
  try {
    event.function->handler(&self, other_instance);
  } catch (const WBKSLException& error) {
    if (innermost_frame != nullptr) throw;  // the script that caused the event ends too
    error_sink(error);
  }
}

bool run_event(CInstance& self, WBObjectBase* other, EventKey key) {
  const BoundEvent* event = self.type->find_event(key);
  if (event == nullptr) return false;
  run_handler(self, other, *event);
  return true;
}

void run_inherited_event() {
  if (running.event == nullptr) return;
  const std::vector<std::int32_t>& lineage = object_types().at(running.event->owner).lineage;
  if (lineage.size() < 2) return;
  const BoundEvent* inherited = object_types().at(lineage[1]).find_event(running.event->key);
  if (inherited == nullptr) return;
  const HandlerScope scope({running.self, running.other, inherited, running.action + 1});
  CInstance* const other = running.other != nullptr && running.other->object_kind == ObjectKind::kInstance ? static_cast<CInstance*>(running.other) : running.self;
  inherited->function->handler(running.self, other);
}

}  // namespace arena
