#include "tests/support/probes.h"

#include "runtime/script.h"
#include "tests/support/watcher.h"

namespace game {
extern const Script<Value()> probe_destroys_first, probe_makes_one;
namespace {
const Variable seen{"seen"}, mark{"mark"}, hooks{"hooks"};

// "mark:event" of who runs, then whatever the test hung on the event.
void note(Instance self, const char* event) {
  const Value name = variable_struct_get(self, "mark");
  array_push(global[seen], (is_undefined(name) ? Value("?") : string(name)) + ":" + event);
  const Value hook = variable_struct_get(global[hooks], event);
  if (!is_undefined(hook)) hook();
}
}  // namespace
}  // namespace game

namespace game {
namespace {
constexpr ObjectName oProbe{arena::test::kProbe};
}  // namespace
}  // namespace game

// The first of two destroys itself.
SCRIPT(probe_destroys_first) {
  if (instance_number(oProbe) == 2) instance_destroy();
  return undefined;
}

SCRIPT(probe_makes_one) {
  if (instance_number(oProbe) == 1) instance_create_layer(0, 0, "layMobs", oProbe, struct_of({{mark, "n"}}));
  return undefined;
}

#define PROBE_EVENT(object, event) \
  EVENT(object, event) { note(self, #event); }

PROBE_EVENT(oProbe, Create_0)
PROBE_EVENT(oProbe, Destroy_0)
PROBE_EVENT(oProbe, CleanUp_0)
PROBE_EVENT(oProbe, Step_1)
PROBE_EVENT(oProbe, Step_0)
PROBE_EVENT(oProbe, Step_2)
PROBE_EVENT(oProbe, Alarm_0)
PROBE_EVENT(oProbe, Alarm_3)
PROBE_EVENT(oProbe, Keyboard_65)
PROBE_EVENT(oProbe, KeyPress_65)
PROBE_EVENT(oProbe, KeyRelease_65)
PROBE_EVENT(oProbe, Mouse_4)
PROBE_EVENT(oProbe, Mouse_54)
PROBE_EVENT(oProbe, Mouse_57)
PROBE_EVENT(oProbe, Other_4)
PROBE_EVENT(oProbe, Other_5)
PROBE_EVENT(oProbe, Other_10)
PROBE_EVENT(oProbe, Async_2)
PROBE_EVENT(oProbe, Draw_72)
PROBE_EVENT(oProbe, Draw_0)
PROBE_EVENT(oProbe, Draw_73)
PROBE_EVENT(oProbe, Draw_64)
PROBE_EVENT(oProbeChild, Collision_oProbe)
EVENT(oProbeChild, Create_0) {
  event_inherited();
  note(self, "child");
}

namespace arena::test {

std::vector<ObjectDefinition> probe_objects() {
  ObjectDefinition probe, child;
  probe.name = "oProbe";
  probe.events = {"Create_0",    "Destroy_0",   "CleanUp_0",     "Step_1",  "Step_0",   "Step_2",   "Alarm_0", "Alarm_3",
                  "Keyboard_65", "KeyPress_65", "KeyRelease_65", "Mouse_4", "Mouse_54", "Mouse_57", "Other_4", "Other_5",
                  "Other_10",    "Async_2",     "Draw_72",       "Draw_0",  "Draw_73",  "Draw_64"};
  child.name = "oProbeChild";
  child.parent = kProbe;
  child.events = {"Create_0", "Collision_oProbe"};
  std::vector<ObjectDefinition> all = {probe, child};
  for (ObjectDefinition& each : watcher_objects()) all.push_back(std::move(each));
  return all;
}

}  // namespace arena::test
