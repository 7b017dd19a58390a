// Gamepads from the system to scripts and back, with joysticks that SDL pretends.
#include "engine/platform/sdl_gamepads.h"

#include <gtest/gtest.h>

#include "runtime/input/gamepads.h"
#include "runtime/reports/log.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

// What a joystick was told.
struct Told {
  int rumbles = 0, stops = 0, lights = 0;
  int low = 0, high = 0, colour = 0, player = -1;
};

class PretendedPads : public TestGame {
 protected:
  PretendedPads() {
    SDL_SetMainReady();
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    pads_ = std::make_unique<platform::SdlGamepads>();
    take_log();
  }
  ~PretendedPads() override {
    for (const int joystick : plugged_) detach(joystick);
    pads_.reset();
    SDL_Quit();
  }
  // Its number; what it is told is written down.
  int attach(const char* name, Told* told = nullptr) {
    SDL_VirtualJoystickDesc about = {};
    about.version = SDL_VIRTUAL_JOYSTICK_DESC_VERSION;
    about.type = SDL_JOYSTICK_TYPE_GAMECONTROLLER;
    about.naxes = SDL_CONTROLLER_AXIS_MAX;
    about.nbuttons = SDL_CONTROLLER_BUTTON_MAX;
    about.name = name;
    about.userdata = told;
    about.Rumble = [](void* to, Uint16 low, Uint16 high) {
      Told& heard = *static_cast<Told*>(to);
      ++(low == 0 && high == 0 ? heard.stops : heard.rumbles);
      heard.low = low;
      heard.high = high;
      return 0;
    };
    about.SetLED = [](void* to, Uint8 red, Uint8 green, Uint8 blue) {
      ++static_cast<Told*>(to)->lights;
      static_cast<Told*>(to)->colour = red | green << 8 | blue << 16;
      return 0;
    };
    about.SetPlayerIndex = [](void* to, int player) { static_cast<Told*>(to)->player = player; };
    if (told == nullptr) about.Rumble = nullptr, about.SetLED = nullptr, about.SetPlayerIndex = nullptr;
    const int index = SDL_JoystickAttachVirtualEx(&about);
    EXPECT_GE(index, 0) << SDL_GetError();
    plugged_.push_back(SDL_JoystickGetDeviceInstanceID(index));
    return plugged_.back();
  }
  void detach(int joystick) {
    for (int index = 0; index < SDL_NumJoysticks(); ++index) {
      if (SDL_JoystickGetDeviceInstanceID(index) == joystick) SDL_JoystickDetachVirtual(index);
    }
    std::erase(plugged_, joystick);
  }
  static void turn(int joystick, int button, bool down) {
    SDL_JoystickSetVirtualButton(SDL_JoystickFromInstanceID(joystick), button, down ? 1 : 0);
    SDL_JoystickUpdate();
  }
  static void move(int joystick, int axis, int position) {
    SDL_JoystickSetVirtualAxis(SDL_JoystickFromInstanceID(joystick), axis, static_cast<Sint16>(position));
    SDL_JoystickUpdate();
  }
  // As the window does once a frame.
  void frame() {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) pads_->handle(event);
    pads_->end_poll();
    step();
  }

  std::unique_ptr<platform::SdlGamepads> pads_;
  std::vector<int> plugged_;
};

TEST_F(PretendedPads, ReachScripts) {
  const int first = attach("First pad"), second = attach("Second pad");
  frame();
  check({{"[gamepad_number(), gamepad_get_name(0), gamepad_get_name(1), string_length(gamepad_get_guid(0))]",
          "[2,\"First pad\",\"Second pad\",32]"},
         {"gamepad_has(0, \"vibration\")", "false"}});
  turn(second, SDL_CONTROLLER_BUTTON_A, true);
  move(first, SDL_CONTROLLER_AXIS_LEFTX, 32767);
  move(first, SDL_CONTROLLER_AXIS_LEFTY, -32768);
  move(first, SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767);
  frame();
  check({{"[gamepad_check_button_pressed(1, 0), gamepad_check_button(0, 0), gamepad_get_axis(0, 5), gamepad_get_axis_raw(0, 1)]",
          "[true,false,1,-1]"},
         {"[gamepad_check_button_pressed(0, 24), gamepad_check_button_pressed(0, 25), gamepad_get_last()]", "[true,true,0]"}});
  // A tap and a flick between two frames.
  turn(second, SDL_CONTROLLER_BUTTON_A, false);
  turn(second, SDL_CONTROLLER_BUTTON_A, true);
  for (const int position : {20000, 10000, 0, 5000, 25000, 32767}) move(first, SDL_CONTROLLER_AXIS_LEFTX, position);
  frame();
  check({{"[gamepad_check_button_released(1, 0), gamepad_check_button_pressed(1, 0), gamepad_check_button(1, 0)]", "[true,true,true]"},
         {"[gamepad_check_button_released(0, 24), gamepad_check_button_pressed(0, 24), gamepad_check_button(0, 24)]", "[true,true,true]"}});
  detach(second);
  frame();
  check({{"[gamepad_check_button_released(1, 0), gamepad_check_unplugged(1), gamepad_number()]", "[true,true,1]"}});
  attach("Second pad");
  attach("Third pad");
  frame();
  check({{"[gamepad_get_name(1), gamepad_get_name(2), gamepad_check_plugged(1), gamepad_number()]",
          "[\"Second pad\",\"Third pad\",true,3]"}});
  // Somebody plays on where a recording ended: its pads are gone, those that are there come.
  push_pad(77, {"other", "", "Recorded pad", "", ""});
  step();
  pads_->announce();
  step();
  check(
      {{"[gamepad_number(), gamepad_get_name(0), gamepad_get_name(2), gamepad_is_connected(3)]", "[3,\"First pad\",\"Third pad\",false]"}});
}

TEST_F(PretendedPads, DoWhatScriptsSay) {
  Told told;
  attach("A pad", &told);
  frame();
  check({{"[gamepad_has(0, \"vibration\"), gamepad_has(0, \"light\"), gamepad_has(0, \"motion\")]", "[true,true,false]"}});
  eval("gamepad_vibrate(0, 0.5, 1, 5); gamepad_set_light(0, 66051); gamepad_set_player(0, 2)");
  for (int i = 0; i < 3; ++i) frame();
  EXPECT_EQ(std::pair(told.rumbles, told.lights), std::pair(1, 1)) << "it is told once";
  EXPECT_EQ(told.low, 32768);
  EXPECT_EQ(told.high, 65535);
  EXPECT_EQ(told.colour, 66051);
  EXPECT_EQ(told.player, 2);
  eval("gamepad_vibrate_stop(0)");
  frame();
  EXPECT_EQ(told.high, 0);
  eval("gamepad_vibrate(0, 1, 1, 5)");
  frame();
  eval("game_restart()");
  for (int i = 0; i < 2; ++i) frame();
  EXPECT_EQ(told.high, 0) << "a new run is still";
  EXPECT_EQ(told.player, 0);
}

}  // namespace
}  // namespace arena::test
