// No edge is lost: what was pressed is seen pressed, in one frame, and what was let go, let go.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "runtime/input/gamepads.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/random.h"
#include "tests/support/long_runs.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

// Everything that goes down and up, as a player would do it and as scripts see it.
struct Source {
  void (*turn)(int number, bool down);
  const Switch& (*look)(int number);
  int number;
};

constexpr int kDevice = 7;

std::vector<Source> all_sources() {
  std::vector<Source> all;
  for (int key = 'A'; key <= 'Z'; ++key)
    all.push_back({push_key, [](int code) -> const Switch& { return input_state().keys.at(static_cast<std::size_t>(code)); }, key});
  for (int button = 1; button < kButtons; ++button)
    all.push_back(
        {push_button, [](int code) -> const Switch& { return input_state().buttons.at(static_cast<std::size_t>(code)); }, button});
  const auto pad_button = [](int code) -> const Switch& { return gamepads()[0].buttons.at(static_cast<std::size_t>(code)); };
  for (int button = 0; button < 6; ++button)
    all.push_back({[](int code, bool down) { push_pad_button(kDevice, code, down); }, pad_button, button});
  for (int trigger = kPadTriggers; trigger < kPadTriggers + 2; ++trigger)
    all.push_back(
        {[](int code, bool down) { push_pad_axis(kDevice, code - kPadTriggers + kStickAxes, down ? 1 : 0); }, pad_button, trigger});
  const auto touch = [](int finger, bool down) {
    InputEvent event;
    event.type = InputEvent::Type::kTouch;
    event.code = finger;
    event.value = down ? 1 : 0;
    push_input(event);
  };
  all.push_back({touch, [](int finger) -> const Switch& { return input_state().fingers.at(static_cast<std::size_t>(finger)).touch; }, 9});
  return all;
}

struct Count {
  bool is_down = false;                              // as the player has it
  std::int64_t presses = 0, releases = 0;            // of the player
  std::int64_t seen_presses = 0, seen_releases = 0;  // by scripts
  bool was_down = false;                             // for scripts, a frame ago
};

// Pairs of press and release from one microsecond to some hundredths of a second apart, at 5 to 500 frames a second.
TEST(Edges, OfAMillionPairsNoneIsLost) {
  const int pairs = 1'000'000 * longer();
  RandomGenerator chance(from_environment("ARENA_SEED", 5));
  const auto between = [&](double low, double high) { return low * std::pow(high / low, chance.unit()); };
  push_pad(kDevice, {"guid", "1", "A pad", "", ""});
  begin_input_frame();
  const std::vector<Source> sources = all_sources();
  std::vector<Count> counts(sources.size());

  const auto look = [&] {
    begin_input_frame();
    for (std::size_t i = 0; i < sources.size(); ++i) {
      const Switch& now = sources[i].look(sources[i].number);
      Count& count = counts[i];
      count.seen_presses += now.pressed ? 1 : 0;
      count.seen_releases += now.released ? 1 : 0;
      ASSERT_LE(count.seen_presses, count.presses);
      ASSERT_LE(count.seen_releases, count.releases);
      // Where it leads is where the edges lead; both: back to where it was.
      ASSERT_EQ(now.down, now.pressed == now.released ? count.was_down : now.pressed);
      count.was_down = now.down;
    }
  };
  double time = 0, next_frame = 0, frame = 0.02;  // seconds
  for (int turned = 0; turned < 2 * pairs; ++turned) {
    const std::size_t which = static_cast<std::size_t>(chance.integer(0, static_cast<std::int64_t>(sources.size()) - 1));
    Count& count = counts[which];
    count.is_down = !count.is_down;
    ++(count.is_down ? count.presses : count.releases);
    sources[which].turn(sources[which].number, count.is_down);
    for (time += between(1e-6, 0.02); time >= next_frame; next_frame += frame) {
      look();
      if (HasFatalFailure()) return;
      if (chance.integer(0, 200) == 0) frame = 1 / between(5, 500);
    }
  }
  const auto is_seen = [](const Count& each) { return each.seen_presses == each.presses && each.seen_releases == each.releases; };
  for (int left = 4 * pairs; left > 0 && !std::all_of(counts.begin(), counts.end(), is_seen); --left) look();
  std::int64_t presses = 0;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    EXPECT_EQ(counts[i].seen_presses, counts[i].presses) << i;
    EXPECT_EQ(counts[i].seen_releases, counts[i].releases) << i;
    presses += counts[i].presses;
  }
  EXPECT_GE(presses, pairs);
  look();
  for (const Source& each : sources) EXPECT_FALSE(each.look(each.number).pressed || each.look(each.number).released) << "seen twice";
}

class Keys : public TestGame {
 protected:
  // What is seen of a key frame by frame: p pressed, r released, d down, - nothing.
  static std::string seen(int code, int frames) {
    std::string text;
    for (int i = 0; i < frames; ++i) {
      begin_input_frame();
      const Switch& key = input_state().keys.at(static_cast<std::size_t>(code));
      std::string now = std::string(key.pressed ? "p" : "") + (key.released ? "r" : "") + (key.down ? "d" : "");
      text += (i > 0 ? " " : "") + (now.empty() ? "-" : now);
    }
    return text;
  }
  static void turn(const std::string& ups_and_downs) {
    for (const char each : ups_and_downs) push_key('W', each == 'd');
  }
};

TEST_F(Keys, TakeAtMostOnePressAndOneReleaseAFrame) {
  struct Case {
    const char *turns, *expected;
  };
  const Case cases[] = {{"d", "pd d d d"}, {"du", "pr - - -"},     {"dud", "pr pd d d"},     {"dudu", "pr pr - -"},     {"ddd", "pd d d d"},
                        {"uu", "- - - -"}, {"dduud", "pr pd d d"}, {"dududu", "pr pr pr -"}, {"dududud", "pr pr pr pd"}};
  for (const Case& each : cases) {
    reset_input();
    turn(each.turns);
    EXPECT_EQ(seen('W', 4), each.expected) << each.turns;
  }
  reset_input();
  turn("d");
  EXPECT_EQ(seen('W', 1), "pd");
  turn("ud");
  EXPECT_EQ(seen('W', 2), "prd d") << "let go and pressed again: both, and it is down";
  turn("udu");
  EXPECT_EQ(seen('W', 3), "prd r -");
  turn("dud");
  InputEvent focus;
  focus.type = InputEvent::Type::kFocus;
  push_input(focus);
  EXPECT_EQ(seen('W', 3), "pr pr -") << "nothing stays down without the focus";
  turn("dudud");
  begin_input_frame();
  forget_key('W');
  EXPECT_EQ(seen('W', 2), "- -") << "what waited is forgotten, too";
}

// The order of typing is kept although the key's own edges wait.
TEST_F(Keys, BackspaceTakesBackWhatStandsBeforeIt) {
  const auto type = [](const char* text) {
    InputEvent event;
    event.type = InputEvent::Type::kText;
    event.text = text;
    push_input(event);
  };
  for (const char* const each : {"a", "b", "c"}) {
    type(each);
    push_key(kBackspace, true);
    push_key(kBackspace, false);
  }
  type("d");
  begin_input_frame();
  EXPECT_EQ(input_state().typed, "d");
  EXPECT_EQ(seen(kBackspace, 3), "pr pr -");
  EXPECT_EQ(input_state().typed, "d");
}

TEST_F(Keys, CountAsWhatTheyAreMapped) {
  const auto down = [&] { return eval("[keyboard_check(65), keyboard_check(66), keyboard_check(67)]"); };
  check({{"keyboard_set_map(65, 66); [keyboard_get_map(65), keyboard_get_map(66), keyboard_get_map(67)]", "[66,66,67]"},
         {"keyboard_set_map(67, 0); keyboard_get_map(67)", "0"}});
  for (const int each : {65, 67}) key(each, true);
  step();
  EXPECT_EQ(down(), "[false,true,false]");
  EXPECT_EQ(eval("keyboard_lastkey"), "66");
  key(66, true);
  key(65, false);
  step();
  EXPECT_EQ(down() + eval("keyboard_check_released(66)"), "[false,true,false]false") << "another key holds it still";
  key(66, false);
  step();
  EXPECT_EQ(down() + eval("keyboard_check_released(66)"), "[false,false,false]true");
  key(65, true);
  step();
  eval("keyboard_reset_map()");
  key(65, false);
  step();
  EXPECT_EQ(down() + eval("keyboard_check_released(66)"), "[false,false,false]true") << "it goes up as what it went down";
  key(65, true);
  step();
  EXPECT_EQ(down(), "[true,false,false]");
  check({{"keyboard_set_map(1, 65)", "! keyboard_set_map argument 1 invalid reference to (key) - requested 1 max is 256"},
         {"keyboard_set_map(65, 300)", "! keyboard_set_map argument 2 invalid reference to (key) - requested 300 max is 256"}});
}

class Pointers : public TestGame {
 protected:
  static void push(InputEvent::Type type, int code, int value, double x = 0, double y = 0, const char* text = "") {
    InputEvent event;
    event.type = type;
    event.code = code;
    event.value = value;
    event.x = x;
    event.y = y;
    event.text = text;
    push_input(event);
  }
};

TEST_F(Pointers, AreTheMouseAndTenFingers) {
  using Type = InputEvent::Type;
  eval("camera_set_view_pos(view_camera[0], 100, 50)");
  push(Type::kWindowSize, 1280, 720);
  push_pointer(PointerSpace::kWindow, 30, 40);
  push_button(5, true);
  push(Type::kTouch, 0, 1, 640, 360);
  push(Type::kTouch, 9, 1, 1, 2);
  push(Type::kTouch, 10, 1, 1, 2);  // an eleventh
  step();
  check({
      {"[device_mouse_x_to_gui(1), device_mouse_y_to_gui(1), device_mouse_x_to_gui(10), device_mouse_x_to_gui(0)]", "[640,360,1,30]"},
      {"device_mouse_x(1) - device_mouse_x(10) > 300", "true"},
      {"[device_mouse_check_button(1, 1), device_mouse_check_button_pressed(10, -1), device_mouse_check_button(2, 1), "
       "device_mouse_check_button(2, 0), device_mouse_check_button(1, 2)]",
       "[true,true,false,true,false]"},
      {"[mouse_check_button(5), mouse_check_button(-1), device_mouse_check_button(0, 5), mouse_check_button(4)]", "[true,true,true,false]"},
      {"mouse_clear(5); mouse_check_button(0)", "true"},
      {"device_mouse_x(11)", "! device_mouse_x argument 1 invalid reference to (pointer) - requested 11 max is 11"},
      {"device_mouse_check_button(-1, 1)",
       "! device_mouse_check_button argument 1 invalid reference to (pointer) - requested -1 max is 11"},
  });
  push(Type::kTouch, 0, 0, 641, 361);
  step();
  check({{"[device_mouse_check_button(1, 1), device_mouse_check_button_released(1, 1), device_mouse_x_to_gui(1)]", "[false,true,641]"}});
}

TEST_F(Pointers, TellMotionWheelsAndWhatIsPutTogether) {
  using Type = InputEvent::Type;
  push_pointer(PointerSpace::kWindow, 100, 100);
  step();
  push_pointer(PointerSpace::kWindow, 103, 98);
  push(Type::kMotion, kMotionPointer, 0, 10, -20);
  push(Type::kMotion, kMotionWheelAcross, 0, -2);
  push(Type::kWheel, 3, 0);
  push(Type::kWheel, -1, 0);
  push(Type::kComposition, 1, 0, 0, 0, "にほ");
  push(Type::kPointerInside, 0, 0);
  step();
  check(
      {{"[mouse_motion_x(), mouse_motion_y(), window_mouse_get_x(), window_mouse_is_inside()]", "[13,-22,103,false]"},
       {"[mouse_wheel_up(), mouse_wheel_down(), mouse_wheel_steps(), mouse_wheel_left(), mouse_wheel_right(), mouse_wheel_steps_across()]",
        "[true,true,2,true,false,-2]"},
       {"[keyboard_composition(), keyboard_composition_cursor(), keyboard_string]", "[\"にほ\",1,\"\"]"}});
  push(Type::kText, 0, 0, 0, 0, "日本");
  step();
  check({{"[keyboard_composition(), keyboard_string, mouse_motion_x(), mouse_wheel_up(), mouse_wheel_left()]",
          "[\"\",\"日本\",0,false,false]"},
         {"window_mouse_set(7, 8); window_mouse_get_x()", "103"}});
  step();
  check({{"[window_mouse_get_x(), window_mouse_get_y()]", "[7,8]"}});
}

}  // namespace
}  // namespace arena::test
