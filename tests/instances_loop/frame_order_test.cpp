// When each event runs: the order of a frame, of creation and destruction, of drawing, and what an event may change under way.
#include <nlohmann/json.hpp>

#include "runtime/instances_loop/world.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class FrameOrder : public TestGame {
 protected:
  FrameOrder() { eval("global.seen = []; global.hooks = {}"); }
  // A probe (or its child) on a layer of the test room; its mark is set before Create.
  void make(const std::string& mark, int object = kProbe, const std::string& layer = "layMobs") {
    eval("instance_create_layer(0, 0, \"" + layer + "\", " + std::to_string(object) + ", {mark: \"" + mark + "\"})");
  }
  // What was seen since last asked.
  std::string seen() {
    const std::string text = eval("global.seen");
    eval("global.seen = []");
    return text;
  }
};

TEST_F(FrameOrder, StagesFollowOneAnother) {
  make("a");
  make("b");
  EXPECT_EQ(seen(), "[\"a:Create_0\",\"b:Create_0\"]");
  step();
  EXPECT_EQ(seen(),
            "[\"a:Step_1\",\"b:Step_1\",\"a:Step_0\",\"b:Step_0\",\"a:Step_2\",\"b:Step_2\",\"a:Draw_72\",\"b:Draw_72\",\"a:Draw_0\",\"b:"
            "Draw_0\","
            "\"a:Draw_73\",\"b:Draw_73\",\"a:Draw_64\",\"b:Draw_64\"]");
}

TEST_F(FrameOrder, KeysMouseAndAlarmsComeBetweenTheStepsInOrder) {
  make("a");
  eval("oProbe.alarm[0] = 1; oProbe.alarm[3] = 1; oProbe.visible = false; global.seen = []");
  key(65, true);
  ask({{"mouse", {5, 5}}});
  ask({{"button", 1}, {"down", true}});
  step();
  EXPECT_EQ(seen(),
            "[\"a:Step_1\",\"a:Alarm_0\",\"a:Alarm_3\",\"a:Keyboard_65\",\"a:KeyPress_65\",\"a:Mouse_54\",\"a:Step_0\",\"a:Step_2\"]")
      << "the pointer is not over it: only the event for anywhere";
  key(65, false);
  ask({{"button", 1}, {"down", false}});
  step();
  EXPECT_EQ(seen(), "[\"a:Step_1\",\"a:KeyRelease_65\",\"a:Mouse_57\",\"a:Step_0\",\"a:Step_2\"]");
}

TEST_F(FrameOrder, DestroyingRunsDestroyThenCleanUpAndEndsTheRest) {
  make("a");
  make("b");
  eval("global.seen = []; with (oProbe) { visible = false }");
  // a destroys itself in its Step: its handler runs on, b's is not disturbed, and a gets no end step.
  eval("global.hooks.Step_0 = method(undefined, probe_destroys_first)");
  step();
  EXPECT_EQ(seen(), "[\"a:Step_1\",\"b:Step_1\",\"a:Step_0\",\"a:Destroy_0\",\"a:CleanUp_0\",\"b:Step_0\",\"b:Step_2\"]");
  eval("variable_struct_remove(global.hooks, \"Step_0\"); instance_destroy(oProbe, false)");
  EXPECT_EQ(seen(), "[\"b:CleanUp_0\"]") << "without its Destroy event when asked so";
}

TEST_F(FrameOrder, WhatIsMadeInAPassTakesPartFromTheNext) {
  make("a");
  eval("global.seen = []; with (oProbe) { visible = false }; global.hooks.Step_0 = method(undefined, probe_makes_one)");
  step();
  EXPECT_EQ(seen(),
            "[\"a:Step_1\",\"a:Step_0\",\"n:Create_0\",\"a:Step_2\",\"n:Step_2\",\"n:Draw_72\",\"n:Draw_0\",\"n:Draw_73\",\"n:Draw_64\"]");
}

TEST_F(FrameOrder, ChildrenInheritAndTheirCollisionsGoThroughParents) {
  eval(
      "instance_create_layer(100, 100, \"layMobs\", oProbeChild, {mark: \"c\"}); instance_create_layer(110, 100, \"layMobs\", oProbe, "
      "{mark: \"p\"})");
  EXPECT_EQ(seen(), "[\"c:Create_0\",\"c:child\",\"p:Create_0\"]");
  eval("with (oProbe) { visible = false; sprite_index = 30 }");
  step();
  EXPECT_EQ(seen(), "[\"c:Step_1\",\"p:Step_1\",\"c:Step_0\",\"p:Step_0\",\"c:Collision_oProbe\",\"c:Step_2\",\"p:Step_2\"]");
  eval("instance_find(oProbe, 1).x = 900");
  step();
  EXPECT_EQ(seen().find("Collision"), std::string::npos);
}

TEST_F(FrameOrder, DrawingGoesByDepthAndHiddenOnesAreLeftOut) {
  make("near");
  make("far");
  make("mid");
  eval(
      "instance_find(oProbe, 0).depth = 3000; instance_find(oProbe, 1).depth = 5000; instance_find(oProbe, 2).depth = 4000; global.seen = "
      "[]");
  step();
  std::string order = seen();
  EXPECT_LT(order.find("far:Draw_0"), order.find("mid:Draw_0"));
  EXPECT_LT(order.find("mid:Draw_0"), order.find("near:Draw_0"));
  eval("instance_find(oProbe, 2).visible = false");
  step();
  order = seen();
  EXPECT_EQ(order.find("mid:Draw"), std::string::npos);
  EXPECT_NE(order.find("mid:Step_2"), std::string::npos);
}

TEST_F(FrameOrder, RoomsStartAndEndWithTheirEvents) {
  make("a");
  eval("global.seen = []; with (oProbe) { visible = false }; room_goto(rTest)");
  step();
  EXPECT_EQ(seen(), "[\"a:Step_1\",\"a:Step_0\",\"a:Step_2\",\"a:Other_5\",\"a:CleanUp_0\"]");
  make("k");
  eval("global.seen = []; with (oProbe) { visible = false; persistent = true }; room_goto(rTest)");
  step(2);
  EXPECT_EQ(seen(), "[\"k:Step_1\",\"k:Step_0\",\"k:Step_2\",\"k:Other_5\",\"k:Other_4\",\"k:Step_1\",\"k:Step_0\",\"k:Step_2\"]");
}

TEST_F(FrameOrder, UserEventsRunAtOnce) {
  make("a");
  eval("global.seen = []; with (oProbe) { event_user(0) }");
  EXPECT_EQ(seen(), "[\"a:Other_10\"]");
}

TEST_F(FrameOrder, WhatIsMadeInACleanUpGoesWithItsRoomAndItsRun) {
  for (const char* leaves : {"room_goto(rPrepare)", "game_restart()"}) {
    eval("global.seen = []; global.hooks = {CleanUp_0: method(undefined, probe_makes_one)}");
    make("a");
    make("b");
    eval(leaves);
    step();
    EXPECT_EQ(eval("instance_number(oProbe)"), "0") << leaves;
    eval("room_goto(rTest)");
    step();
  }
}

TEST_F(FrameOrder, StagesAreTimedByTheirNames) {
  make("a");
  eval("global.s = new advanced_part_system(); global.t = new advanced_part_type({life: 9}); global.s.burst(global.t, 5000, 0, 0)");
  eval("global.hooks.Step_0 = method(global.s, global.s.update)");
  step(2);
  const auto stages = ask({{"stages", true}})["stages"];
  const std::vector<std::string> names = {"HandleCollision",    "Collision_Instance",
                                          "HandleStep",         "HandleInstanceMovement",
                                          "PhysicsWorldUpdate", "UpdateActiveLists",
                                          "HandleAlarm",        "HandleMouse",
                                          "HandleOther",        "ParticleSystem_UpdateAll",
                                          "DrawRoom",           "DrawTheRoom",
                                          "Mainloop_Process",   "DoAStep"};
  ASSERT_EQ(stages.size(), names.size());
  std::size_t at = 0;
  for (const auto& [name, microseconds] : stages.items()) EXPECT_EQ(name, names[at++]);
  EXPECT_EQ(stages["PhysicsWorldUpdate"], 0);
  EXPECT_GT(stages["ParticleSystem_UpdateAll"], 0);
  const char* const within[][2] = {{"ParticleSystem_UpdateAll", "HandleStep"},
                                   {"HandleStep", "DoAStep"},
                                   {"DrawTheRoom", "DrawRoom"},
                                   {"DoAStep", "Mainloop_Process"},
                                   {"DrawRoom", "Mainloop_Process"}};
  for (const auto& [part, whole] : within) EXPECT_LE(stages[part], stages[whole]) << part;
  check({{"array_length(variable_struct_get_names(frame_stage_times()))", "14"},
         {"variable_struct_get_names(frame_stage_times())[0]", "HandleCollision"},
         {"frame_stage_times().HandleStep > 0", "true"}});
}

TEST(EventTexts, AsyncEventsNameWhatTheyTellOf) {
  EXPECT_EQ(event_text({EventKind::kAsync, 3}), "Async Event: HTTP");
  EXPECT_EQ(event_text({EventKind::kAsync, 99}), "Async Event: 99");
}

}  // namespace
}  // namespace arena::test
