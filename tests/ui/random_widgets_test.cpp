// Random operations on a tree of widgets, with clicks in between. Whatever scripts do to it, no error leaves the toolkit, and the tree
// stays a tree.
#include <nlohmann/json.hpp>
#include <random>

#include "runtime/reports/log.h"
#include "tests/support/long_runs.h"
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

// Any value in any field of any widget, of its style and of its root: frames with pointer and keys go on, and no error leaves the toolkit.
TEST_F(RandomWidgets, HoldAnythingInAnyField) {
  const char* const kinds[] = {"TuiBase",   "TuiBox",         "TuiRow",          "TuiColumn", "TuiPanel",    "TuiWindow", "TuiTabs",
                               "TuiScroll", "TuiImage",       "TuiText",         "TuiButton", "TuiCheckbox", "TuiSlider", "TuiInput",
                               "TuiCombo",  "TuiProgressBar", "TuiProgressRing", "TuiStyle",  "TuiMain"};
  // Fields that are absent at first; `own` and `root` stand for the widget and its root, so that circles come about, too.
  const std::vector<std::string> absent = {"width",        "height",          "min_width",
                                           "max_height",   "padding_left",    "padding_top",
                                           "margin_right", "border_left",     "inset_top",
                                           "row_gap",      "column_gap",      "flex_grow",
                                           "flex_shrink",  "flex_basis",      "flex_direction",
                                           "flex_wrap",    "justify_content", "align_items",
                                           "align_self",   "align_content",   "aspect_ratio",
                                           "is_absolute",  "style",           "font",
                                           "tooltip",      "tweens",          "bind_target",
                                           "bind_name",    "prefix",          "suffix",
                                           "rounding",     "max_length",      "caption_of_button",
                                           "takes_clicks", "takes_text",      "onDraw",
                                           "onUpdate",     "onPress",         "onKey",
                                           "onWheel"};
  const char* const values[] = {"undefined",
                                "-1",
                                "\"50%\"",
                                "\"\"",
                                "1e300",
                                "NaN",
                                "-infinity",
                                "[]",
                                "[own, own, 5, {}]",
                                "{}",
                                "{rect_x: 1}",
                                "own",
                                "root",
                                "noone",
                                "true",
                                "int64(-5)",
                                "unset()",
                                "ref(1, 99)",
                                "ptr(8)",
                                "method(undefined, Approach)",
                                "Approach",
                                "oPlayer",
                                "[[1], {passed: []}]"};
  const bool tries_all = longer() > 1;
  for (const char* kind : kinds) {
    const bool is_style = std::string(kind) == "TuiStyle", is_root = std::string(kind) == "TuiMain";
    // root > holder > own > child: own lies under the pointer, has the keyboard, a style, a tooltip and a tween.
    const std::string make =
        "global.root = new TuiMain(); style = new TuiStyle(); style.setSprites(57, 57); global.root.setStyle(style); global.holder = new "
        "TuiBox({width: 300, height: 200}); global.root.addContent(global.holder); global.box = new " +
        std::string(is_style || is_root ? "TuiButton" : kind) +
        "({width: 100, height: 40, value: \"a\"}); global.holder.addContent(global.box); global.box.addContent(new TuiText({value: "
        "\"b\"})); global.box.setTooltip(\"c\"); global.box.focus(); global.box.tween(\"alpha\", 0.5, 9); own = " +
        (is_style  ? "style"
         : is_root ? "global.root"
                   : "global.box") +
        "; root = global.root; 1";
    eval(make);
    std::vector<std::string> fields = absent;
    const int own_fields = static_cast<int>(number("global.names = variable_struct_get_names(own); array_length(global.names)"));
    for (int i = 0; i < own_fields; ++i) fields.push_back(eval("global.names[" + std::to_string(i) + "]"));
    for (const std::string& field : fields) {
      for (const char* value : values) {
        if (!tries_all && pick(20) != 0) continue;
        SCOPED_TRACE(std::string(kind) + "." + field + " = " + value);
        eval(make);
        ask({{"mouse", {20, 20}}, {"gui", true}});
        step();
        eval("global.root.update()");
        ask({{"button", 1}, {"down", true}});
        eval("own." + field + " = " + value + "; 1");
        if (pick(2) == 0) eval("global.root.layout_dirty = true");
        for (int frame = 0; frame < 3; ++frame) {
          key(frame == 1 ? 9 : 39, true);
          step();
          ASSERT_EQ(eval("global.root.update(); global.root.render(); global.root.isInteracting(); 1"), "1");
          ask({{"mouse", {25 + frame, 25}}, {"gui", true}});
          if (frame == 1) ask({{"button", 1}, {"down", false}});
          key(frame == 1 ? 9 : 39, false);
        }
        eval("global.root.find(\"nobody\"); global.box.destroy(); 1");
        ASSERT_EQ(eval("global.root.update(); global.root.render(); 1"), "1");
      }
    }
  }
}

TEST_F(RandomWidgets, StylesAreStructsAndTreesHaveAnEnd) {
  take_log();
  check({{"global.root.setStyle(-1); global.root.update(); global.root.render(); is_struct(global.root.style)", "true"},
         {"global.root.setStyle(undefined).style", "undefined"}});
  ASSERT_EQ(take_log().size(), 1u);
  eval("global.at = global.root");
  for (int i = 0; i < 700; ++i) eval("b = new TuiBox(); global.at.addContent(b); global.at = b; 1");
  EXPECT_EQ(take_log().size(), 1u);  // the 500th stands nowhere, and the rest in it
  // A tree that scripts built from below is cut off, not followed to the end of the stack.
  eval("global.at = new TuiBox({width: 10})");
  for (int i = 0; i < 10000; ++i) eval("b = new TuiBox(); b.content = [global.at]; global.at.parent = b; global.at = b; 1");
  check({{"global.root.addContent(global.at); global.root.update(); global.root.render(); 1", "1"},
         {"global.root.find(\"nobody\")", "undefined"},
         {"global.at.destroy(); global.root.update(); 1", "1"}});
}

}  // namespace
}  // namespace arena::test
