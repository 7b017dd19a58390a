// What is checked after every frame is noticed when it breaks: each in turn, in a child process that ends with the report.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>

#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/arrays_structs/weak_ref.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/names.h"
#include "runtime/reports/frame.h"
#include "runtime/values/strings.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

template <class Element>
void swap_first_two(std::vector<Element>& list) {
  std::swap(list.at(0), list.at(1));
}

class InvariantsDeathTest : public TestGame {
 protected:
  InvariantsDeathTest() {
    eval("global.seen = []; global.hooks = {}; global.old = {}; global.old.child = {}; global.weak = weak_ref_create(global.old)");
    for (int i = 0; i < 2; ++i) {
      make(kProbe);
      make(kProbeChild);
    }
    while (old()->generation + 1 < kGenerations) collect_everything();
  }
  static CInstance* make(int object) { return world().create(0, 0, world().layers.front().id, 0, object, nullptr, nullptr); }
  static PropertyObject* global_struct(const char* name) { return property_object(*global_object()->find_variable(variable_id(name))); }
  static PropertyObject* old() { return global_struct("old"); }
  static ObjectType& type() { return object_types().at(kProbe); }
  static CInstance& probe() { return *type().instances.at(0); }
  // Put to sleep, as it is behind the end of its frame.
  static CInstance& sleeper() {
    CInstance& chosen = probe();
    world().put_to_sleep(chosen);
    world().settle_lists();
    return chosen;
  }
  static EventList& participants() { return *type().subscriptions.at(0).list; }
  static std::vector<CInstance*>& drawn() { return world().depth_order[probe().depth]; }
  static World::Page& page() { return world().pages.at(static_cast<std::size_t>(probe().id - 100000) / World::kPageSlots); }
  static CInstance*& slot() { return page().slots.at(static_cast<std::size_t>(probe().id - 100000) % World::kPageSlots); }
};

struct Fault {
  const char* reported;
  std::function<void()> bring_about;
};

TEST_F(InvariantsDeathTest, EachIsReportedWhenItBreaks) {
  ASSERT_EQ(broken_invariant(), "");
  const std::vector<Fault> faults = {
      {"a frame was left open", [] { new FrameScope("left", nullptr, nullptr); }},
      {"a call was left open", [] { session().call_depth = 1; }},
      {"an event was left open", [] { session().running_event = reinterpret_cast<const RunningEvent*>(&session()); }},
      {"the container stack is not empty", [] { push_container(global_object()); }},
      {"a built-in is still current", [] { session().current_builtin = reinterpret_cast<const BuiltinEntry*>(&session()); }},
      // The list of all
      {"instances are dead, listed twice or not in order of creation", [] { swap_first_two(world().instances); }},
      {"instances are dead, listed twice or not in order of creation", [] { world().instances.push_back(world().instances.back()); }},
      {"instances are dead, listed twice or not in order of creation", [] { probe().is_alive = false; }},
      {"the dead were not forgotten", [] { world().has_dead = true; }},
      {"an id does not find its instance", [] { slot() = nullptr; }},
      {"a live instance is no root", [] { probe().is_root = false; }},
      {"a page of ids counts wrong", [] { ++page().used; }},
      {"an id finds what does not live", [] { world().instances.pop_back(); }},
      {"the count of instances is wrong", [] { ++world().alive; }},
      // Sleepers
      {"one who does not sleep is listed among the sleepers", [] { sleeper().is_asleep = false; }},
      {"one who does not sleep is listed among the sleepers", [] { sleeper().is_alive = true; }},
      {"sleepers are not in order of creation",
       [] {
         sleeper();
         sleeper();
         swap_first_two(world().sleeping);
       }},
      {"a sleeper is no root", [] { sleeper().is_root = false; }},
      {"a sleeper is kept in a room that was not left", [] { sleeper().kept_in = 1; }},
      {"a sleeper is listed among the living", [] { probe().is_asleep = true; }},
      // Lists by depth
      {"a list by depth is not in order", [] { swap_first_two(drawn()); }},
      {"an instance is listed by another depth than its own", [] { probe().depth += 1; }},
      {"an instance is missing among those by depth", [] { drawn().erase(drawn().begin()); }},
      // Types and events
      {"the instances of oProbe are not in order", [] { swap_first_two(type().instances); }},
      {"oProbeChild lists an instance of another type",
       [] { object_types().at(kProbeChild).instances.insert(object_types().at(kProbeChild).instances.begin(), &probe()); }},
      {"an instance is missing among those of oProbe", [] { type().instances.pop_back(); }},
      {"the count of oProbe is wrong", [] { --type().live_count; }},
      {"the participants of an event are not in order", [] { swap_first_two(participants()); }},
      {"a participant has the handler of another type or event", [] { participants().at(0).event = type().subscriptions.at(1).event; }},
      {"a participant of an event is missing", [] { participants().pop_back(); }},
      // Layers
      {"a layer's id was never given", [] { world().layers.at(0).id = world().next_layer_id; }},
      {"two layers have one id", [] { world().layers.at(0).id = world().layers.at(1).id; }},
      {"a layer has no depth", [] { world().layers.at(0).depth = std::numeric_limits<double>::quiet_NaN(); }},
      {"an instance stands on a layer that never was", [] { probe().layer = world().next_layer_id; }},
      // The collector's books
      {"an object stands in the collector's lists twice", [] { adopt_new_object(old()); }},
      {"an object is missing in the collector's lists", [] { ++session().live_objects; }},
      {"an object of another generation is among those of generation 2", [] { old()->generation = 1; }},
      {"the objects referenced from older ones differ of generation 0",
       [] { property_object(make_struct())->is_referenced_from_older = true; }},
      {"the remembered containers differ of generation 1", [] { old()->remembered_in = 2; }},
      {"a holder of strings or arrays is missing of generation 2", [] { old()->holds_counted_values = true; }},
      {"a mark was left behind", [] { old()->is_marked = true; }},
      {"a reference to a younger object is not known",
       [] {
         session().disabled_barriers = 1u << static_cast<unsigned>(BarrierSite::kAssignObject);
         store_variable(old(), variable_id("child"), make_struct());
       }},
      {"a weak reference has a dead target",
       [] { static_cast<CWeakRef*>(global_struct("weak"))->target = reinterpret_cast<WBObjectBase*>(&session()); }},
  };
  for (const Fault& fault : faults) {
    const auto break_and_report = [&] {
      fault.bring_about();
      std::fprintf(stderr, "reported: %s.", broken_invariant().c_str());
      std::_Exit(0);
    };
    EXPECT_EXIT(break_and_report(), ::testing::ExitedWithCode(0), std::string("reported: ") + fault.reported + "\\.");
  }
}

}  // namespace
}  // namespace arena::test
