#pragma once
// A game with an interface, for tests that use it as a player does: pointer and keys through the input queue.
#include <nlohmann/json.hpp>
#include <string>

#include "runtime/input/input_state.h"
#include "tests/support/test_game.h"

namespace arena::test {

class Widgets : public TestGame {
 protected:
  Widgets() { eval("global.dt_steady = 1 / 60; global.ui = new TuiMain(); global.seen = []"); }
  // One frame of the interface with the pointer there; the GUI is 1280 x 720.
  void frame(double x, double y) {
    ask({{"mouse", {x, y}}, {"gui", true}});
    step();
    eval("global.ui.update(); global.ui.render()");
  }
  void press(bool down) { ask({{"button", 1}, {"down", down}}); }
  void click(double x, double y) {
    frame(x, y);
    press(true);
    frame(x, y);
    press(false);
    frame(x, y);
  }
  void tap(int code) {
    key(code, true);
    frame(5, 700);
    key(code, false);
    frame(5, 700);
  }
  void type(const std::string& text) {
    InputEvent event;
    event.type = InputEvent::Type::kText;
    event.text = text;
    push_input(event);
    frame(5, 700);
  }
};

}  // namespace arena::test
