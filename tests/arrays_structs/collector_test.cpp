// The collector keeps what can be reached and frees what cannot; each write barrier is needed.
#include "runtime/arrays_structs/collector.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <latch>
#include <optional>
#include <thread>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/containers.h"
#include "runtime/arrays_structs/method.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/arrays_structs/weak_ref.h"
#include "runtime/memory/block_pool.h"
#include "runtime/program/names.h"
#include "runtime/reports/log.h"
#include "runtime/reports/report.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/calls.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Collector : public TestGame {
 protected:
  Collector() { collect_everything(); }

  std::int32_t id(const char* name) { return variable_id(name); }
  PropertyObject* global_struct(const char* name) {
    store_variable(global_object(), id(name), make_struct());
    return property_object(*global_object()->find_variable(id(name)));
  }
  // A struct that old generations hold: it was stored in a global and survived.
  PropertyObject* old_struct(const char* name) {
    PropertyObject* made = global_struct(name);
    while (made->generation < 2) collect_everything();
    return made;
  }
  CWeakRef* watch(WBObjectBase* target) {
    auto* reference = new CWeakRef(target);
    kept_.values.push_back(RValue::of_object(reference));
    return reference;
  }
  // Fills the nursery with garbage until small collections ran so often.
  void minor_collections(std::uint64_t count) {
    const std::uint64_t until = collector_statistics().minor_collections + count;
    while (collector_statistics().minor_collections < until) {
      for (int i = 0; i < 600; ++i) make_struct();
      collect_at_safe_point();
    }
  }

 private:
  DsList kept_;
};

TEST_F(Collector, FreesCyclesAndTheirStrings) {
  eval("1");
  collect_everything();
  const int objects = live_objects();
  for (int i = 0; i < 100; ++i) {
    RValue one = make_struct(), two = make_struct();
    store_variable(property_object(one), id("partner"), two);
    store_variable(property_object(two), id("partner"), one);
    store_variable(property_object(one), id("label"), make_string("cycle"));
    store_variable(property_object(two), id("list"), make_array(3));
  }
  EXPECT_EQ(live_objects(), objects + 300);
  collect_everything();
  EXPECT_EQ(live_objects(), objects);
}

TEST_F(Collector, GivesBackStringsInDeadArraysInsideDeadArrays) {
  const int strings = live_strings();
  {
    RValue outer = make_array();
    for (int i = 0; i < 50; ++i) {
      RValue inner = make_array();
      array_append(*inner.array, make_string("text"));
      array_append(*outer.array, inner);
    }
  }
  collect_everything();
  EXPECT_EQ(live_strings(), strings);
}

TEST_F(Collector, RememberedSetsFollowTheRule) {
  PropertyObject* container = old_struct("container");
  const RValue young = make_struct();
  ASSERT_EQ(young.object->generation, 0);
  store_variable(container, id("child"), young);
  EXPECT_TRUE(young.object->is_referenced_from_older);
  EXPECT_TRUE(is_remembered(container, 1)) << "every generation strictly between";
  EXPECT_FALSE(is_remembered(container, 0));
  EXPECT_FALSE(is_remembered(container, 2));
}

TEST_F(Collector, WeakReferencesDie) {
  const RValue held = make_struct();
  eval("global.strong = {}");
  CWeakRef* reference = watch(property_object(*global_object()->find_variable(id("strong"))));
  collect_everything();
  EXPECT_NE(reference->target, nullptr);
  eval("global.strong = undefined; 1");
  collect_everything();
  EXPECT_EQ(reference->target, nullptr);
}

TEST_F(Collector, MemoryStaysFlat) {
  step(30);
  collect_everything();
  const int objects = live_objects();
  for (int i = 0; i < 50; ++i) {
    eval("global.list = []; global.s = {a: [1, \"x\" + \"y\"], b: {c: {}}}; array_push(global.list, global.s)");
    step();
  }
  eval("global.list = undefined; global.s = undefined; 1");
  collect_everything();
  EXPECT_LE(live_objects(), objects + 2);
}

// Each barrier in turn is taken away: the scenario that needs it must then lose its object, and only then.
struct Scenario {
  BarrierSite site;
  const char* label;
  std::function<CWeakRef*()> store;  // makes an old container refer to a young object through this site
  std::function<void()> collect;
};

TEST_F(Collector, EveryBarrierIsNeeded) {
  if (kStressBuild) GTEST_SKIP() << "the stress build collects everything, always: no barrier is needed";
  PropertyObject* holder = nullptr;
  const auto small = [this] { minor_collections(1); };
  const std::vector<Scenario> scenarios = {
      {BarrierSite::kAssignObject, "assign an object",
       [&] {
         const RValue young = make_struct();
         store_variable(holder, id("child"), young);
         return watch(young.object);
       },
       small},
      {BarrierSite::kAssignArray, "assign an array",
       [&] {
         const RValue young = make_array(2);
         store_variable(holder, id("child"), young);
         return watch(young.array->owner);
       },
       small},
      {BarrierSite::kArrayMade, "make an array in place",
       [&] {
         store_variable(holder, id("child"), RValue(0.0));
         const ContainerScope container(holder);
         RValue* slot = holder->get_variable_ref(id("child"));
         array_element_for_write(*slot, 3);
         return watch(slot->array->owner);
       },
       small},
      {BarrierSite::kArrayCopied, "copy an array in place",
       [&] {
         store_variable(holder, id("child"), make_array(2));
         for (int i = 0; i < 3; ++i) collect_everything();
         RValue* slot = holder->get_variable_ref(id("child"));
         const RValue second(*slot);
         const ContainerScope container(holder);
         const OwnerTokenScope stranger(session().owner_token + 99);
         array_element_for_write(*slot, 0);
         return watch(slot->array->owner);
       },
       small},
      {BarrierSite::kBoundSelf, "bind a young self to an old closure",
       [&] {
         RValue closure;
         make_method(closure, script_at(find_script("Approach")), nullptr);
         store_variable(holder, id("child"), closure);
         while (method_of(closure)->generation < 2) collect_everything();
         const RValue young = make_struct();
         method_of(closure)->bound_self = young;
         write_barrier(method_of(closure), young.object, BarrierSite::kBoundSelf);
         return watch(young.object);
       },
       small},
      {BarrierSite::kPromotion, "promote a parent before its child",
       [&] {
         const RValue parent = make_struct();
         store_variable(holder, id("child"), parent);
         minor_collections(1);
         const RValue young = make_struct();
         store_variable(property_object(parent), id("child"), young);
         CWeakRef* reference = watch(young.object);
         minor_collections(1);
         return reference;
       },
       small},
  };
  for (const Scenario& scenario : scenarios) {
    for (const bool is_taken_away : {false, true}) {
      holder = old_struct("holder");
      while (collector_statistics().minor_collections % 8 != 0) minor_collections(1);  // generation 1 is not collected under way
      session().disabled_barriers = is_taken_away ? 1u << static_cast<unsigned>(scenario.site) : 0;
      CWeakRef* reference = scenario.store();
      scenario.collect();
      session().disabled_barriers = 0;
      EXPECT_EQ(reference->target == nullptr, is_taken_away) << scenario.label << (is_taken_away ? " without its barrier" : "");
      const RValue* const dangling = holder->find_variable(id("child"));
      if (is_taken_away && dangling != nullptr) new (const_cast<RValue*>(dangling)) RValue();  // forgotten, not counted
      holder->clear_variables();
      collect_everything();
    }
  }
}

// While a cycle marks in slices, an object moves from a part that is not traced yet into one that was.
TEST_F(Collector, TheMarkingBarrierIsNeeded) {
  if (kStressBuild) GTEST_SKIP() << "the stress build never marks in slices";
  for (const bool is_taken_away : {false, true}) {
    // A long chain keeps the marking busy; what the global object got last is traced first.
    PropertyObject* link = global_struct("chain");
    for (int i = 0; i < 6000; ++i) {
      store_variable(link, id("child"), make_struct());
      link = property_object(*link->find_variable(id("child")));
    }
    const RValue moved = make_struct();
    store_variable(link, id("child"), moved);
    PropertyObject* traced = old_struct("traced");
    ASSERT_EQ(moved.object->generation, 2);
    CWeakRef* reference = watch(moved.object);
    for (int i = 0; i < 20001; ++i) reference_dropped(traced, moved.object);  // makes a cycle due
    collect_at_safe_point();
    ASSERT_TRUE(collector_statistics().is_marking);
    collect_at_safe_point();
    ASSERT_FALSE(moved.object->is_marked) << "the chain must be longer than a slice";
    session().disabled_barriers = is_taken_away ? 1u << static_cast<unsigned>(BarrierSite::kMarking) : 0;
    store_variable(traced, id("child"), moved);
    store_variable(link, id("child"), RValue());
    const std::uint64_t cycles = collector_statistics().major_collections;
    while (collector_statistics().major_collections == cycles) collect_at_safe_point();
    session().disabled_barriers = 0;
    EXPECT_EQ(reference->target == nullptr, is_taken_away);
    traced->clear_variables();  // whatever dangles now is forgotten
    collect_everything();
  }
}

TEST_F(Collector, SlicesFreeWhatDiedOld) {
  if (kStressBuild) GTEST_SKIP() << "the stress build collects everything, always";
  PropertyObject* holder = old_struct("holder");
  const int objects = live_objects();
  for (const int made : {100, 9000}) {  // in one slice of the sweep, and in several
    PropertyObject* link = holder;
    for (int i = 0; i < made; ++i) {
      store_variable(link, id("child"), make_struct());
      link = property_object(*link->find_variable(id("child")));
    }
    while (link->generation < 2) collect_everything();
    store_variable(holder, id("child"), RValue());
    for (int i = 0; i < 20001; ++i) reference_dropped(holder, holder);  // makes a cycle due
    const std::uint64_t cycles = collector_statistics().major_collections;
    while (collector_statistics().major_collections == cycles) {
      collect_at_safe_point();
      ASSERT_EQ(broken_collector_invariant(), "");
    }
    EXPECT_EQ(live_objects(), objects) << made;
  }
}

// A store on another thread warns, and is done all the same. What both threads do to one text's count adds up; how often they meet in it is
// the machine's affair, and that they wait for each other the next test's.
TEST_F(Collector, AStoreOnAnotherThreadWarnsAndProceeds) {
  if (!kChecksBuild) set_collector_thread_check(true);  // elsewhere it is on from the start
  RValue holder = make_struct(), list = make_array(1), text = make_string("shared");
  const int strings = live_strings();
  take_log();
  store_variable(property_object(holder), id("own"), list);
  EXPECT_TRUE(take_log().empty()) << "the main thread may";
  {
    const WorkerRegistration registered;
    ASSERT_TRUE(WorkerLock(WorkerLock::kStringCounts).is_taken() && WorkerLock(WorkerLock::kNursery).is_taken());
    std::latch begun(2);
    std::thread worker([&, &own = session()] {
      const SessionScope scope(own);
      begun.arrive_and_wait();
      store_variable(property_object(holder), id("from_thread"), list);
      for (int i = 0; i < 100000; ++i) const RValue copy(text), mine = make_string("worker's");
    });
    begun.arrive_and_wait();
    for (int i = 0; i < 100000; ++i) const RValue copy(text), own = make_string("main's own");
    worker.join();
  }
  EXPECT_EQ(take_log(),
            std::vector<std::string>{"WARNING: You are copying a struct/array to another struct/array or a data structure on a thread"});
  const RValue* const stored = property_object(holder)->find_variable(id("from_thread"));
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(stored->array, list.array);
  EXPECT_EQ(list.array->count, 3);
  EXPECT_EQ(text.string->count, 1);
  EXPECT_EQ(live_strings(), strings);
}

// What a worker does to texts or to the memory waits while this thread holds the lock for it, and waits for nobody once no worker is
// registered.
TEST_F(Collector, WorkersOnOtherThreadsWaitForTheirLocks) {
  struct Deed {
    const char* label;
    WorkerLock::Which lock;
    std::function<void()> run;
  };
  RValue text = make_string("shared"), kept;
  PropertyObject* const container = old_struct("container");
  const RValue young = make_struct();
  void* const block = allocate_block(48);
  const std::vector<Deed> deeds = {
      {"copy a text", WorkerLock::kStringCounts, [&] { kept = text; }},
      {"let go of a text", WorkerLock::kStringCounts, [&] { kept = RValue(); }},
      {"make a text", WorkerLock::kStringCounts, [&] { kept = make_string("new"); }},
      {"make a constant text", WorkerLock::kStringCounts, [&] { kept = make_constant_string("constant"); }},
      {"take a block", WorkerLock::kNursery, [] { free_block(allocate_block(64), 64); }},
      {"give a block back", WorkerLock::kNursery, [&] { free_block(block, 48); }},
      {"make an object", WorkerLock::kNursery, [] { make_struct(); }},
      {"refer to a younger object", WorkerLock::kNursery, [&] { write_barrier(container, young.object, BarrierSite::kAssignObject); }},
      {"hold a text", WorkerLock::kNursery, [&] { note_heap_value_stored(container, text); }},
  };
  set_collector_thread_check(false);
  for (const Deed& deed : deeds) {
    const WorkerRegistration registered;
    std::latch begun(2);
    std::atomic<bool> is_free = false, has_waited = false;
    std::optional<WorkerLock> held(std::in_place, deed.lock);
    ASSERT_TRUE(held->is_taken());
    std::thread worker([&, &own = session()] {
      const SessionScope scope(own);
      begun.arrive_and_wait();
      deed.run();
      has_waited = is_free.load();
    });
    begun.arrive_and_wait();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));  // long enough for one that does not wait
    is_free = true;
    held.reset();
    worker.join();
    EXPECT_TRUE(has_waited) << deed.label;
  }
  EXPECT_EQ(WorkerLock::registered_workers, 0);
  const WorkerLock alone(WorkerLock::kStringCounts), again(WorkerLock::kStringCounts);
  EXPECT_FALSE(alone.is_taken() || again.is_taken());
}

// What stands in for a missing array is nothing that could be collected: no object at all.
TEST_F(Collector, SuppressedArgumentErrorsLeaveNothingBehind) {
  const ErrorSuppression quiet;
  RValue argument(5.0), result;
  const std::size_t alive = live_objects();
  for (int i = 0; i < 3; ++i) {
    call_builtin_in_place(nullptr, nullptr, result, 1, find_builtin("array_pop"), &argument);
    EXPECT_TRUE(result.is_undefined());
    EXPECT_EQ(live_objects(), alive);
    collect_everything();
  }
}

}  // namespace
}  // namespace arena::test
