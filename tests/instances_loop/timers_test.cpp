// Alarms by name and timers: when they run, in which order, whose they are, and what stops them.
#include "runtime/instances_loop/timers.h"

#include <nlohmann/json.hpp>

#include "engine/host/state_hash.h"
#include "runtime/session/snapshot.h"
#include "tests/support/test_game.h"
#include "tests/support/watcher.h"

namespace arena::test {
namespace {

class TimersOfGame : public TestGame {
 protected:
  TimersOfGame() {
    eval("global.seen = []; global.hooks = {}");
    make("a");
    make("b");
    seen();
  }
  void make(const std::string& mark) {
    eval("global." + mark + " = instance_create_layer(0, 0, \"layMobs\", oWatcher, {mark: \"" + mark + "\"})");
  }
  // What was seen since last asked, but for steps.
  std::string seen() {
    std::string text;
    const auto reply = ask({{"eval", "global.seen"}});
    for (const std::string each : reply["value"]) {
      if (each.find(":Step_0") == std::string::npos) text += (text.empty() ? "" : " ") + each;
    }
    eval("global.seen = []");
    return text;
  }
  std::string as(const char* mark, const std::string& statement) {
    const auto reply = ask({{"eval", statement}, {"self", static_cast<int>(number(std::string("global.") + mark))}});
    return reply.contains("error") ? "! " + reply["error"].get<std::string>() : reply["text"].get<std::string>();
  }
};

TEST_F(TimersOfGame, AlarmsByNameRunBehindThoseByNumberInOrderOfTheInstances) {
  as("b", "alarm_set(\"reload\", 2); alarm_set(\"blink\", 2)");
  as("a", "alarm_set(\"reload\", 2); alarm_set(0, 2)");
  EXPECT_EQ(as("a", "[alarm_get(\"reload\"), alarm_get(\"blink\"), alarm_get(0)]"), "[2,-1,2]");
  eval("timer_create_frames(2, watcher_timer)");
  step();
  EXPECT_EQ(as("a", "[alarm_get(\"reload\"), alarm[0]]"), "[1,1]");
  EXPECT_EQ(seen(), "");
  step();
  EXPECT_EQ(seen(), "a:Alarm_0 a:Alarm_reload b:Alarm_reload b:Alarm_blink timer 0");
  EXPECT_EQ(as("a", "alarm_get(\"reload\")"), "-1");
  step(5);
  EXPECT_EQ(seen(), "");
}

TEST_F(TimersOfGame, AnAlarmIsStoppedSetAnewAndEndsWithItsInstance) {
  as("a", "alarm_set(\"reload\", 3)");
  as("b", "alarm_set(\"reload\", 3)");
  step();
  as("a", "alarm_set(\"reload\", 3)");
  step(2);
  EXPECT_EQ(seen(), "b:Alarm_reload");
  as("a", "alarm_set(\"reload\", -1)");
  step(3);
  EXPECT_EQ(seen(), "");
  as("a", "alarm_set(\"reload\", 0); alarm_set(\"blink\", 1)");
  step();
  EXPECT_EQ(seen(), "a:Alarm_reload a:Alarm_blink") << "0 frames are the next one, as with numbers";
  as("a", "alarm_set(\"reload\", 2)");
  eval("instance_destroy(global.a)");
  seen();
  step(3);
  EXPECT_EQ(seen(), "");
}

TEST_F(TimersOfGame, TimersCountSecondsOrFramesAndRunAsOftenAsTheyShould) {
  eval("timer_create_seconds(0.5, watcher_timer, 3); timer_create_frames(4, watcher_timer, -1); timer_create_seconds(0.25, watcher_timer)");
  step(4, 0.1);
  EXPECT_EQ(seen(), "timer 2 timer 1");
  EXPECT_EQ(eval("[timer_get_left(0), timer_get_left(1), timer_get_left(2), timer_exists(2)]"), "[0.10,4,0,false]");
  step(16, 0.1);
  EXPECT_EQ(seen(), "timer 0 timer 1 timer 0 timer 1 timer 0 timer 1 timer 1") << "at 0.5, 1 and 1.5 seconds, and not at 2";
  EXPECT_EQ(eval("[timer_exists(0), timer_exists(1)]"), "[false,true]");
  // A frame that is longer than several periods: once, and the next one is due with the next frame.
  eval("timer_destroy(1); global.fast = timer_create_seconds(0.1, watcher_timer, -1)");
  step(1, 1);
  EXPECT_EQ(seen(), "timer 3");
  step(1, 0.01);
  EXPECT_EQ(seen(), "timer 3");
  step(1, 0.05);
  EXPECT_EQ(seen(), "");
}

TEST_F(TimersOfGame, TimersPauseAloneTogetherAndWithWhoTheyBelongTo) {
  as("a", "global.mine = timer_create_frames(3, watcher_timer)");
  eval("global.own = timer_create_frames(3, watcher_timer); global.menu = timer_create_frames(3, watcher_timer, 1, true)");
  eval("timers_pause()");
  step(2);
  EXPECT_EQ(eval("[timer_get_left(global.mine), timer_get_left(global.own), timer_get_left(global.menu), timers_are_paused()]"),
            "[3,3,1,true]");
  eval("timers_resume(); timer_pause(global.own); instance_sleep(global.a)");
  step();
  EXPECT_EQ(seen(), "timer 2");
  EXPECT_EQ(eval("[timer_get_left(global.mine), timer_get_left(global.own), timer_is_paused(global.own)]"), "[3,3,true]");
  eval("timer_resume(global.own); instance_wake(global.a)");
  step();  // the instance takes part from the next one on
  step(2);
  EXPECT_EQ(seen(), "timer 1");
  eval("timer_restart(global.mine)");
  step(2);
  EXPECT_EQ(seen(), "");
  eval("instance_destroy(global.a)");
  seen();
  step(3);
  EXPECT_EQ(seen(), "") << "a timer ends with its instance";
  EXPECT_EQ(eval("[timer_exists(global.mine), timer_get_left(global.mine)]"), "[false,0]");
}

TEST_F(TimersOfGame, WrongUseIsReportedAndAnErrorEndsOneCallAlone) {
  check({
      {"timer_pause(7)", "! timer_pause argument 1 invalid reference to (timer) - requested 7"},
      {"timer_destroy(\"x\")", "! timer_destroy argument 1 incorrect type (string) expecting a timer"},
      {"timer_create_frames(1, 5.5e9)", "! timer_create_frames :: argument 2 is neither a method or a function"},
      {"[timer_exists(-1), timer_exists(7)]", "[false,false]"},
      {"alarm_set(\"reload\", 1)", "! alarm_set() must be called in an instance context"},
      {"t = timer_create_frames(NaN, watcher_timer); timer_get_left(t)", "1"},
      {"timer_destroy(t); timer_destroy(t); timer_exists(t)", "false"},
  });
  EXPECT_EQ(as("a", "alarm_set(\"relaod\", 1)"),
            "! alarm_set argument 1 incorrect type (string) expecting a name of one of the object's Alarm events");
  EXPECT_EQ(as("a", "alarm_get(12)"), "! alarm_get argument 1 invalid reference to (alarm) - requested 12 max is 12");
  EXPECT_EQ(as("a", "alarm_set([], 1)"), "! alarm_set argument 1 incorrect type (array) expecting a number or name of an alarm");
  // A built-in as a timer's function fails on the timer's number; the next timer runs all the same.
  eval("timer_create_frames(1, string_upper); timer_create_frames(1, watcher_timer)");
  const auto reply = step_once();
  ASSERT_TRUE(reply.contains("errors")) << reply.dump();
  EXPECT_NE(reply["errors"].dump().find("Timer 1"), std::string::npos) << "the report names the timer: " << reply.dump();
  EXPECT_EQ(seen(), "timer 2");
}

TEST_F(TimersOfGame, AreStateOfTheGameAndNoneLeavesNoTrace) {
  as("a", "alarm_set(\"reload\", 40)");
  const std::uint64_t alone = host::state_hash();
  eval("global.kept = timer_create_seconds(2, method({much: [1, 2]}, watcher_timer), 2)");
  EXPECT_NE(host::state_hash(), alone);
  Snapshot snapshot;
  game->take_snapshot(snapshot);
  const auto run_on = [&] {
    step(300);
    return seen() + " " + std::to_string(host::state_hash());
  };
  const std::string once = run_on();
  EXPECT_EQ(once.substr(0, once.rfind(' ')), "a:Alarm_reload timer 0 timer 0");
  game->restore(snapshot);
  EXPECT_EQ(run_on(), once);
  eval("timer_create_frames(5, watcher_timer); timers_pause(); game_restart()");
  step();
  EXPECT_EQ(eval("[timer_exists(0), timers_are_paused()]"), "[false,false]");
}

}  // namespace
}  // namespace arena::test
