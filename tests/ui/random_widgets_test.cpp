// Random operations on a tree of widgets, with clicks in between. Whatever scripts do to it, no error leaves the toolkit, and the tree
// stays a tree.
#include <random>

#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class RandomWidgets : public TestGame {
 protected:
  RandomWidgets() {
    eval(
        "global.root = new TuiMain(); style = new TuiStyle(); style.setSprites(57, 57); style.setFonts(2, 2, 3); "
        "global.root.setStyle(style); global.all = [global.root]");
  }
  int pick(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  // Every widget that the root holds knows its parent, and none stands in two places.
  void expect_a_tree(int round) {
    eval("global.queue = [global.root]; global.wrong = 0; global.at = 0");
    for (int guard = 0; guard < 2000; ++guard) {
      if (eval("global.at < array_length(global.queue)") == "false") break;
      const int children = static_cast<int>(number("array_length(global.queue[global.at].content)"));
      for (int i = 0; i < children; ++i) {
        const std::string child = "global.queue[global.at].content[" + std::to_string(i) + "]";
        eval("global.wrong += 1 - real(" + child + ".parent == global.queue[global.at]); array_push(global.queue, " + child + ")");
      }
      eval("global.at += 1");
    }
    ASSERT_EQ(eval("global.wrong"), "0") << "round " << round;
    ASSERT_LT(number("array_length(global.queue)"), 1900) << "a circle, round " << round;
  }
  std::mt19937 random_{77};
};

TEST_F(RandomWidgets, StayATree) {
  const char* const kinds[] = {"TuiBox",    "TuiRow",   "TuiColumn",      "TuiPanel",       "TuiWindow",   "TuiTabs",
                               "TuiScroll", "TuiImage", "TuiText",        "TuiButton",      "TuiCheckbox", "TuiSlider",
                               "TuiInput",  "TuiCombo", "TuiProgressBar", "TuiProgressRing"};
  const char* const values[] = {"undefined", "\"text\"", "-5", "1e9", "\"50%\"", "[1, 2]", "{a: 1}", "NaN", "true", "noone", "37"};
  const char* const fields[] = {"value", "width",      "height",     "padding_left", "flex_grow", "overflow",
                                "alpha", "text_scale", "column_gap", "maximum",      "options"};
  for (int round = 0; round < 400; ++round) {
    const std::string some = "global.all[" + std::to_string(pick(static_cast<int>(number("array_length(global.all)")))) + "]";
    const std::string other = "global.all[" + std::to_string(pick(static_cast<int>(number("array_length(global.all)")))) + "]";
    switch (pick(10)) {
      case 0:
      case 1:
      case 2: eval(std::string("w = new ") + kinds[pick(16)] + "({}); array_push(global.all, w); " + some + ".addContent(w); 1"); break;
      case 3: eval(some + ".addContent(" + other + "); 1"); break;  // also into itself, or into what it holds
      case 4: eval(some + ".removeContent(" + other + "); 1"); break;
      case 5:
        if (some != "global.all[0]") eval(some + ".destroy(); 1");
        break;
      case 6: eval(some + "." + fields[pick(11)] + " = " + values[pick(11)]); break;
      case 7: eval(some + (pick(2) == 0 ? ".bringToFront(); 1" : ".sendToBack(); 1")); break;
      case 8: eval(some + ".setSize(" + values[pick(11)] + ", " + values[pick(11)] + "); 1"); break;
      default:
        eval(some + ".focus(); " + some + ".setTooltip(" + values[pick(11)] + "); 1");
        key(pick(3) == 0 ? 9 : 32 + pick(60), pick(2) == 0);
        break;
    }
    ask({{"mouse", {pick(1280), pick(720)}}, {"gui", true}});
    ask({{"button", 1}, {"down", pick(2) == 0}});
    step();
    ASSERT_EQ(eval("global.root.update(); global.root.render(); 1"), "1") << "round " << round;
    if (round % 25 == 0) expect_a_tree(round);
  }
  EXPECT_GT(number("array_length(global.all)"), 80) << "too little happened";
}

}  // namespace
}  // namespace arena::test
