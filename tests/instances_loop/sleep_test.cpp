// Instances that sleep and wake, change their object, are copied; rooms that are kept and rooms that scripts make; events of what is
// crossed.
#include <nlohmann/json.hpp>

#include "engine/host/state_hash.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/world.h"
#include "runtime/session/snapshot.h"
#include "tests/support/test_game.h"
#include "tests/support/watcher.h"

namespace arena::test {
namespace {

class WatchedWorld : public TestGame {
 protected:
  WatchedWorld() { eval("global.seen = []; global.hooks = {}"); }
  void make(const std::string& mark, int x = 0, int y = 0, const std::string& object = "oWatcher") {
    eval("global." + mark + " = instance_create_layer(" + std::to_string(x) + ", " + std::to_string(y) + ", \"layMobs\", " + object +
         ", {mark: \"" + mark + "\"})");
  }
  std::string seen() {
    const std::string text = eval("global.seen");
    eval("global.seen = []");
    return text;
  }
  std::string stepped() {
    seen();
    step();
    return seen();
  }
};

TEST_F(WatchedWorld, WhoSleepsIsFoundByItsIdAlone) {
  make("a");
  make("b");
  eval("instance_sleep(global.a)");
  check({
      {"[instance_exists(global.a), instance_is_asleep(global.a), instance_is_asleep(global.b), instance_number(oWatcher)]",
       "[true,true,false,1]"},
      {"[instance_find(oWatcher, 0) == global.b, instance_nearest(0, 0, oWatcher) == global.b, oWatcher.mark]", "[true,true,\"b\"]"},
      {"global.a.x = 7; global.a.depth = -3; n = 0; with (oWatcher) { global.n = global.n + 1 }; [global.a.x, n, instance_count]",
       ("[7,1," + eval("instance_count") + "]").c_str()},
      {"collision_point(7, 0, oWatcher, false, false)", "-4"},
  });
  EXPECT_EQ(stepped(), "[\"b:Step_0\"]");
  EXPECT_EQ(broken_invariant(), "");
  eval("instance_wake(global.a)");
  EXPECT_EQ(stepped(), "[\"b:Step_0\"]") << "from the next frame on";
  EXPECT_EQ(stepped(), "[\"a:Step_0\",\"b:Step_0\"]") << "in order of creation";
  eval("instance_sleep(oWatcher); instance_wake(global.b)");
  EXPECT_EQ(stepped(), "[\"b:Step_0\"]") << "who fell asleep in this frame wakes at once";
  eval("instance_destroy(global.a)");
  EXPECT_EQ(seen(), "[\"a:CleanUp_0\"]");
  EXPECT_EQ(eval("[instance_exists(global.a), instance_is_asleep(global.a)]"), "[false,false]");
}

TEST_F(WatchedWorld, RegionsLayersAndObjectsAreToldApart) {
  for (const int x : {0, 100, 200}) make("w" + std::to_string(x), x, 50);
  make("other", 100, 50, "oOtherWatcher");
  const auto awake = [&] {
    return eval(
        "[instance_is_asleep(global.w0), instance_is_asleep(global.w100), instance_is_asleep(global.w200), "
        "instance_is_asleep(global.other)]");
  };
  eval("instance_sleep_region(50, 0, 150, 100)");
  EXPECT_EQ(awake(), "[false,true,false,true]");
  eval("instance_wake_region(50, 0, 150, 100); instance_sleep_region(50, 0, 150, 100, false)");
  EXPECT_EQ(awake(), "[true,false,true,false]");
  eval("instance_wake(all); instance_sleep_layer(\"layMobs\"); instance_wake(oOtherWatcher)");
  EXPECT_EQ(awake(), "[true,true,true,false]");
  eval("instance_wake_layer(\"layMobs\")");
  EXPECT_EQ(awake(), "[false,false,false,false]");
  // Whoever calls stays awake, but for its own id.
  ask({{"eval", "instance_sleep(all)"}, {"self", static_cast<int>(number("global.w0"))}});
  EXPECT_EQ(awake(), "[false,true,true,true]");
  check({
      {"instance_sleep(\"text\")", "! instance_sleep argument 1 incorrect type (string) expecting a instance or object"},
      {"instance_sleep_layer(\"none\")", "! instance_sleep_layer argument 1 incorrect type (string) expecting a layer of this room"},
      {"instance_sleep(noone); instance_wake(noone); 1", "1"},
  });
}

TEST_F(WatchedWorld, AnInstanceBecomesOneOfAnotherObject) {
  make("a", 30, 40);
  make("b");
  eval("global.a.hp = 5; instance_change(oOtherWatcher, global.a)");
  EXPECT_EQ(stepped(), "[\"a:Step_0\",\"b:Step_0\",\"a:CleanUp_0\",\"a:Create_0\"]") << "at the end of the frame";
  check({
      {"[object_get_name(global.a.object_index), global.a.hp, global.a.x, global.a.sprite_index, instance_number(oWatcher)]",
       "[\"oOtherWatcher\",5,30,5,1]"},
      {"instance_change(9999, global.a)",
       ("! instance_change argument 1 invalid reference to (object) - requested 9999 max is " + std::to_string(object_types().count()))
           .c_str()},
      {"instance_change(oWatcher, 5)", "! instance_change argument 2 invalid reference to (instance) - requested 5"},
      {"instance_change(oWatcher)", "! instance_change() must be called in an instance context"},
  });
  eval("instance_sleep(global.b); instance_change(oOtherWatcher, global.b, false)");
  EXPECT_EQ(stepped(), "[\"a:Step_0\"]");
  eval("instance_wake(global.b)");
  step();
  EXPECT_EQ(eval("[instance_number(oOtherWatcher), instance_number(oWatcher)]"), "[2,0]");
}

TEST_F(WatchedWorld, ACopyHasAllThatTheOtherOneHas) {
  make("a", 30, 40);
  eval("a = global.a; a.hp = 5; a.list = [1, 2]; a.image_angle = 45; a.alarm[3] = 7; a.shout = method(a, watcher_timer); a.mark = \"c\"");
  eval("c = instance_copy(a, true)");
  check({
      {"[c == a, c.hp, c.list, c.x, c.image_angle, c.alarm[3], instance_number(oWatcher)]", "[false,5,[1,2],30,45,7,2]"},
      {"c.list[0] = 9; a.list", "[1,2]"},
      {"[method_get_self(c.shout) == c, method_get_self(a.shout) == a]", "[true,true]"},
      {"array_get(global.seen, array_length(global.seen) - 1)", "c:Create_0"},
      {"instance_copy(12)", "! instance_copy argument 1 invalid reference to (instance) - requested 12"},
  });
  step();
}

TEST_F(WatchedWorld, AKeptRoomIsAsItWasLeft) {
  make("a", 30, 40);
  make("b");
  make("free");
  const std::string here = eval("room_get_name(room)");
  eval("room_set_persistent(room, true); global.free.persistent = true; instance_sleep(global.b); l = layer_create(-5, \"mine\")");
  eval(
      "global.home = room; global.there = room_create(\"rThere\", 300, 200); room_add_instance(global.there, 5, 6, \"layer\", "
      "oOtherWatcher)");
  step();
  eval("global.seen = []; room_goto(global.there)");
  step();
  EXPECT_EQ(seen(), "[\"a:Step_0\",\"free:Step_0\",\"a:Other_5\",\"free:Other_5\",\"?:Create_0\",\"free:Other_4\"]");
  check({
      {"[room_get_name(room), room_width, room_height, instance_number(oWatcher), instance_number(oOtherWatcher)]",
       "[\"rThere\",300,200,1,1]"},
      {"[instance_exists(global.a), layer_exists(\"mine\"), camera_get_view_width(0)]", "[true,false,300]"},
      {"instance_wake(all); instance_wake(global.a); instance_is_asleep(global.a)", "true"},  // it stays in its room
  });
  step();
  Snapshot there;
  game->take_snapshot(there);
  const std::uint64_t hash = host::state_hash();
  eval("room_goto(global.home)");
  step();
  EXPECT_EQ(
      eval("[global.a.x, instance_is_asleep(global.a), instance_is_asleep(global.b), instance_number(oWatcher), layer_exists(\"mine\")]"),
      "[30,false,true,2,true]");
  EXPECT_EQ(eval("room_get_name(room)"), here);
  game->restore(there);
  EXPECT_EQ(host::state_hash(), hash);
  EXPECT_EQ(broken_invariant(), "");
  const std::string made = eval("global.there");
  eval("game_restart()");
  step();
  EXPECT_EQ(eval("[room_exists(" + made + "), room_find(\"rThere\")]"), "[false,-1]") << "a new run begins with the rooms of the data";
}

TEST_F(WatchedWorld, RoomsAreMadeAndChanged) {
  eval("n = room_create(\"rNew\", 100, 50); m = room_copy(n, \"rCopy\"); room_add_layer(m, -7, \"top\"); room_set_size(m, 0, 9)");
  eval("room_add_instance(m, 1, 2, \"top\", oWatcher)");
  check({
      {"[room_exists(n), room_find(\"rNew\") == n, room_get_width(n), room_get_height(n), room_get_width(m), room_get_height(m)]",
       "[true,true,100,50,1,9]"},
      {"room_create(\"rNew\", 1, 1)", "! room_create argument 1 incorrect type (string) expecting a name that no room has"},
      {"room_create(\"\", 1, 1)", "! room_create argument 1 incorrect type (string) expecting a name that no room has"},
      {"room_add_layer(m, 0, \"top\")",
       "! room_add_layer argument 3 incorrect type (string) expecting a name that no layer of the room has"},
      {"room_add_instance(n, 0, 0, \"top\", oWatcher)",
       "! room_add_instance argument 4 incorrect type (string) expecting a layer of the room"},
      {"room_set_size(99999, 1, 1)",
       ("! room_set_size argument 1 invalid reference to (room) - requested 99999 max is " + std::to_string(world().room_count())).c_str()},
      {"room_goto(m); 1", "1"},
  });
  step();
  EXPECT_EQ(eval("[room_get_name(room), oWatcher.x, oWatcher.depth, instance_number(oWatcher)]"), "[\"rCopy\",1,-7,1]");
  eval("room_clear(m); room_restart()");
  step();
  EXPECT_EQ(eval("instance_number(oWatcher)"), "0");
}

TEST_F(WatchedWorld, CrossingsAreEventsOfTheirOwn) {
  make("a", 100, 100);
  eval("global.a.sprite_index = 30");
  const auto without_steps = [&] {
    std::string all = stepped();
    for (const char* each : {"\"a:Step_0\",", ",\"a:Step_0\"", "\"a:Step_0\""}) {
      if (const auto at = all.find(each); at != std::string::npos) all.erase(at, std::string(each).size());
    }
    return all;
  };
  const auto push = [](InputEvent::Type type, int code, int value = 0) {
    InputEvent event;
    event.type = type;
    event.code = code;
    event.value = value;
    push_input(event);
  };
  EXPECT_EQ(without_steps(), "[]");
  push_pointer(PointerSpace::kRoom, 100, 100);
  EXPECT_EQ(without_steps(), "[\"a:Pointer_0\"]");
  EXPECT_EQ(without_steps(), "[]") << "once";
  push_pointer(PointerSpace::kRoom, 500, 100);
  push(InputEvent::Type::kWheel, -2);
  EXPECT_EQ(without_steps(), "[\"a:Wheel_1\",\"a:Pointer_1\"]");
  push(InputEvent::Type::kWindowSize, 1000, 600);
  push(InputEvent::Type::kFocus, 0, 0);
  push(InputEvent::Type::kFocus, 0, 1);
  EXPECT_EQ(without_steps(), "[\"a:Window_1\",\"a:Window_3\",\"a:Window_2\"]");
  eval("camera_set_view_pos(view_get_camera(0), 400, 400)");
  EXPECT_EQ(without_steps(), "[\"a:Outside_1\"]") << "the view left it behind";
  eval("global.a.x = -500");
  EXPECT_EQ(without_steps(), "[\"a:Outside_0\"]");
  EXPECT_EQ(without_steps(), "[]");
  eval("global.a.x = 100; camera_set_view_pos(view_get_camera(0), 0, 0)");
  EXPECT_EQ(without_steps(), "[]");
  eval("instance_sleep(global.a); global.a.x = -500");
  EXPECT_EQ(without_steps(), "[]") << "who sleeps crosses nothing";
}

TEST_F(WatchedWorld, ClosingEndsTheGameUnlessSomebodyHandlesIt) {
  make("a");
  InputEvent close;
  close.type = InputEvent::Type::kClose;
  push_input(close);
  EXPECT_NE(stepped().find("a:Window_0"), std::string::npos);
  EXPECT_FALSE(world().ended);
  eval("instance_sleep(global.a)");
  push_input(close);
  step();
  EXPECT_TRUE(world().ended);
}

TEST(EventNames, OfWhatIsCrossedAndOfAlarmsSayWhatTheyAre) {
  const auto none = [](std::string_view) { return -1; };
  const struct {
    const char *suffix, *text;
  } cases[] = {{"Wheel_0", "Wheel Event: up"},         {"Pointer_1", "Pointer Event: leave"},
               {"Window_0", "Window Event: close"},    {"Window_3", "Window Event: focus lost"},
               {"Outside_0", "Outside Event: room"},   {"Outside_8", "Outside Event: view 7"},
               {"Alarm_3", "Alarm Event for alarm 3"}, {"Alarm_reload", "Alarm Event for alarm reload"}};
  for (const auto& each : cases) {
    const std::optional<EventKey> key = parse_event(each.suffix, none);
    ASSERT_TRUE(key) << each.suffix;
    EXPECT_EQ(event_text(*key), each.text);
    EXPECT_EQ(event_suffix(*key), each.suffix);
  }
  for (const char* wrong : {"Wheel_2", "Pointer_2", "Window_4", "Outside_9", "Outside_-1", "Alarm_3x", "Alarm_"}) {
    EXPECT_FALSE(parse_event(wrong, none)) << wrong;
  }
}

// Whatever is done to instances in whatever order, every frame leaves the lists in order, and a snapshot goes on as the game did.
TEST_F(WatchedWorld, RandomSleepersKeepTheListsInOrder) {
  const char* const doings[] = {"instance_sleep(any)",
                                "instance_wake(any)",
                                "instance_change(oWatcher, any)",
                                "instance_change(oOtherWatcher, any)",
                                "instance_copy(any, true)",
                                "instance_destroy(any)",
                                "instance_sleep(oWatcher)",
                                "instance_wake(all)",
                                "instance_sleep_region(0, 0, 100, 100)",
                                "instance_wake_region(50, 50, 200, 200, false)",
                                "any.depth = any.depth - 1",
                                "any.persistent = true",
                                "room_goto(there)",
                                "room_goto(home)",
                                "instance_create_depth(5, 5, 0, oWatcher)"};
  eval("home = room; there = room_create(\"rThere\", 400, 400); room_set_persistent(home, true); room_set_persistent(there, true)");
  for (int i = 0; i < 12; ++i) make("w" + std::to_string(i), i * 20, i * 20, i % 3 == 0 ? "oOtherWatcher" : "oWatcher");
  RandomGenerator chance(11);
  Snapshot snapshot;
  for (int frame = 0; frame < 300; ++frame) {
    for (int turn = 0; turn < 3; ++turn) {
      const int first = static_cast<int>(world().next_id) - 20;
      eval("any = " + std::to_string(std::max(100000, first + static_cast<int>(chance.integer(0, 19)))) +
           "; if_there = instance_exists(any)");
      if (eval("if_there") == "true") eval(doings[static_cast<std::size_t>(chance.integer(0, std::ssize(doings) - 1))]);
    }
    game->take_snapshot(snapshot);
    game->run_frame(16667);
    ASSERT_EQ(broken_invariant(), "") << "frame " << frame;
    const std::uint64_t once = host::state_hash();
    game->restore(snapshot);
    game->run_frame(16667);
    ASSERT_EQ(host::state_hash(), once) << "frame " << frame;
  }
}

}  // namespace
}  // namespace arena::test
