#include "tests/support/watcher.h"

#include "runtime/script.h"

namespace game {
extern const Script<Value(Value)> watcher_timer;
namespace {
const Variable seen{"seen"}, mark{"mark"}, hooks{"hooks"};

void note(const Value& self, const char* event) {
  const Value name = variable_struct_get(self, "mark");
  array_push(global[seen], (is_undefined(name) ? Value("?") : string(name)) + ":" + event);
  const Value hook = variable_struct_get(global[hooks], event);
  if (!is_undefined(hook)) hook();
}
}  // namespace
}  // namespace game

// What timers of the tests call.
SCRIPT(watcher_timer, Value number) {
  array_push(global[seen], "timer " + string(number));
  return undefined;
}

#define WATCHER_EVENT(object, event) \
  EVENT(object, event) { note(self, #event); }

WATCHER_EVENT(oWatcher, Create_0)
WATCHER_EVENT(oWatcher, CleanUp_0)
WATCHER_EVENT(oWatcher, Step_0)
WATCHER_EVENT(oWatcher, Alarm_0)
WATCHER_EVENT(oWatcher, Alarm_reload)
WATCHER_EVENT(oWatcher, Alarm_blink)
WATCHER_EVENT(oWatcher, Wheel_0)
WATCHER_EVENT(oWatcher, Wheel_1)
WATCHER_EVENT(oWatcher, Pointer_0)
WATCHER_EVENT(oWatcher, Pointer_1)
WATCHER_EVENT(oWatcher, Window_0)
WATCHER_EVENT(oWatcher, Window_1)
WATCHER_EVENT(oWatcher, Window_2)
WATCHER_EVENT(oWatcher, Window_3)
WATCHER_EVENT(oWatcher, Outside_0)
WATCHER_EVENT(oWatcher, Outside_1)
WATCHER_EVENT(oWatcher, Other_4)
WATCHER_EVENT(oWatcher, Other_5)
WATCHER_EVENT(oOtherWatcher, Create_0)
WATCHER_EVENT(oOtherWatcher, CleanUp_0)
WATCHER_EVENT(oOtherWatcher, Step_0)

namespace arena::test {

std::vector<ObjectDefinition> watcher_objects() {
  ObjectDefinition watcher, other;
  watcher.name = "oWatcher";
  watcher.events = {"Create_0",  "CleanUp_0", "Step_0",   "Alarm_0",  "Alarm_reload", "Alarm_blink", "Wheel_0",   "Wheel_1", "Pointer_0",
                    "Pointer_1", "Window_0",  "Window_1", "Window_2", "Window_3",     "Outside_0",   "Outside_1", "Other_4", "Other_5"};
  other.name = "oOtherWatcher";
  other.sprite = 5;
  other.events = {"Create_0", "CleanUp_0", "Step_0"};
  return {watcher, other};
}

}  // namespace arena::test
