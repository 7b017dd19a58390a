// Windows, tabs, combo boxes, scroll areas and text inputs in a player's hands; tooltips; the room that shows them all.
#include "runtime/reports/log.h"
#include "tests/ui/widgets.h"

namespace arena::test {
namespace {

class Holders : public Widgets {
 protected:
  // Presses at the first place, moves in steps to the second, lets go.
  void drag(double x1, double y1, double x2, double y2) {
    frame(x1, y1);
    press(true);
    frame(x1, y1);
    frame((x1 + x2) / 2, (y1 + y2) / 2);
    frame(x2, y2);
    press(false);
    frame(x2, y2);
  }
  std::string rect(const std::string& widget) {
    eval("w = " + widget);
    return eval("[w.rect_x, w.rect_y, w.rect_width, w.rect_height]");
  }
};

TEST_F(Holders, AWindowIsMovedByItsTitleAndStaysWithinReach) {
  eval(
      "global.w = new TuiWindow({value: \"Crowd\", width: 200, height: 150, inset_left: 100, inset_top: 60}); "
      "global.ui.addContent(global.w)");
  frame(5, 700);
  EXPECT_EQ(rect("global.w"), "[100,60,200,150]");
  drag(150, 70, 190, 100);
  EXPECT_EQ(rect("global.w"), "[140,90,200,150]");
  drag(160, 100, -3000, -3000);
  EXPECT_EQ(rect("global.w"), "[-120,0,200,150]") << "80 pixels stay to be grabbed";
  drag(20, 10, 4000, 4000);
  EXPECT_EQ(rect("global.w"), "[1200,688,200,150]") << "the title bar of 32 stays on the screen";
}

TEST_F(Holders, AWindowIsResizedByItsCornerAndClosedByItsCross) {
  eval(
      "global.w = new TuiWindow({width: 200, height: 150, inset_left: 100, inset_top: 60}); global.w.addEvent(\"close\", "
      "method(undefined, ui_note)); global.w.addEvent(\"destroy\", method(undefined, ui_note)); global.ui.addContent(global.w)");
  frame(5, 700);
  drag(295, 205, 345, 185);
  EXPECT_EQ(rect("global.w"), "[100,60,250,130]");
  drag(345, 185, 0, 0);
  EXPECT_EQ(rect("global.w"), "[100,60,80,80]") << "no smaller than 80 each way";
  drag(175, 135, 300, 300);
  const double right = 100 + number("global.w.rect_width");
  click(right - 6 - 12, 60 + 4 + 12);
  check({{"array_length(global.ui.content)", "0"}, {"[array_length(global.seen), global.seen[0] == global.w]", "[2,true]"}});
}

TEST_F(Holders, ThePressedWindowComesToTheFront) {
  eval(
      "global.a = new TuiWindow({width: 200, height: 150, inset_left: 100, inset_top: 60}); global.b = new TuiWindow({width: 200, height: "
      "150, inset_left: 200, inset_top: 60}); global.ui.addContent([global.a, global.b])");
  frame(250, 150);
  check({{"global.b.is_hovered", "true"}, {"global.a.is_hovered", "false"}});
  click(150, 150);  // only the first one is there
  frame(250, 150);
  check({{"global.b.is_hovered", "false"}, {"global.a.is_hovered", "true"}});
}

TEST_F(Holders, TabsFollowTheirTitles) {
  eval(
      "global.one = new TuiBox(); global.two = new TuiBox(); global.tabs = new TuiTabs({is_absolute: true, width: 300, height: 200}); "
      "global.tabs.addTab(\"one\", global.one); global.tabs.addTab(\"two\", global.two); global.tabs.addEvent(\"change\", "
      "method(undefined, ui_note_value)); global.ui.addContent(global.tabs)");
  frame(5, 700);
  const auto press_title = [&](int number_of) {
    eval("w = global.tabs.titles.content[" + std::to_string(number_of) + "]");
    click(number("w.rect_x + w.rect_width / 2"), number("w.rect_y + w.rect_height / 2"));
  };
  press_title(1);
  check({{"[global.one.visible, global.two.visible, global.tabs.value]", "[false,true,1]"}});
  press_title(0);
  check({{"[global.one.visible, global.two.visible, global.seen]", "[true,false,[1,0]]"}});
}

TEST_F(Holders, AComboClosesWhenSomethingElseIsPressed) {
  const auto open = [&] {
    eval(
        "global.ui.destroyContent(); global.c = new TuiCombo({options: [\"x\", \"y\"], width: 200, is_absolute: true, inset_left: 600, "
        "inset_top: 100}); global.ui.addContent(global.c)");
    frame(5, 700);
    click(650, 115);
    frame(650, 115);
    ASSERT_EQ(number("array_length(global.ui.content)"), 2);
  };
  open();
  click(650, 115);  // once more on the box
  check({{"global.c.popup", "undefined"}, {"array_length(global.ui.content)", "1"}});
  open();
  click(100, 600);
  check({{"global.c.popup", "undefined"}, {"array_length(global.ui.content)", "1"}, {"global.c.value", "0"}});
  open();
  eval("global.c.destroy()");
  frame(650, 160);
  check({{"array_length(global.ui.content)", "0"}});  // its list does not outlive it
  // Near the lower edge the list opens upwards.
  eval(
      "global.c = new TuiCombo({options: [\"x\", \"y\"], width: 200, is_absolute: true, inset_left: 600, inset_top: 680}); "
      "global.ui.addContent(global.c)");
  frame(5, 600);
  click(650, 690);
  frame(650, 690);
  EXPECT_EQ(rect("global.c.popup"), "[600,616,200,64]");
}

TEST_F(Holders, TheScrollBarIsDragged) {
  eval(
      "global.s = new TuiScroll({width: 100, height: 100, is_absolute: true, inset_left: 900, inset_top: 300}); global.s.addContent([new "
      "TuiBox({height: 200}), new TuiBox({height: 200})]); global.ui.addContent(global.s)");
  frame(5, 700);
  // 400 pixels behind a window of 100: the bar is a quarter, 25 pixels, and goes down 75.
  drag(996, 310, 996, 310 + 37.5);
  check({{"global.s.scroll_y", "150"}});
  drag(996, 310 + 37.5, 996, 900);
  check({{"global.s.scroll_y", "300"}});
  eval("global.s.content[1].destroy()");
  frame(5, 700);
  frame(5, 700);
  check({{"global.s.scroll_y", "100"}});  // no further than there is content
}

TEST_F(Holders, ThePointerPlacesTheCaretAndSelects) {
  eval("global.i = new TuiInput({width: 300, align_self: 0, value: \"añ€bcd\"}); global.ui.addContent(global.i)");
  frame(5, 700);
  const double first = number("string_width(\"a\")"), three = number("string_width(\"añ€\")");
  click(8 + first, 15);
  type("-");
  check({{"global.i.value", "a-ñ€bcd"}});
  const double dash = number("string_width(\"-\")");
  drag(8 + first + dash, 15, 8 + three + dash, 15);
  type("+");
  check({{"global.i.value", "a-+bcd"}});
  drag(200, 15, -50, 15);
  type("z");
  check({{"global.i.value", "z"}});
}

TEST_F(Holders, CheckboxesAndFocusedButtonsAnswerToTheKeyboard) {
  eval(
      "global.c = new TuiCheckbox({caption: \"on\"}); global.b = new TuiButton({value: \"b\"}); global.b.addEvent(\"click\", "
      "method(undefined, ui_note)); global.ui.addContent([global.c, global.b]); global.c.focus()");
  tap(32);
  check({{"global.c.value", "true"}});
  tap(13);
  check({{"global.c.value", "false"}, {"global.b.setEnabled(false); global.b.focus(); 1", "1"}});
  tap(13);
  check({{"array_length(global.seen)", "0"}});  // what is disabled cannot be activated either
}

TEST_F(Holders, AModalLayerKeepsEverythingElseOut) {
  eval(
      "global.under = new TuiButton({width: 100, height: 40, is_absolute: true, inset_left: 10, inset_top: 10}); "
      "global.under.addEvent(\"click\", method(undefined, ui_note)); global.layer = new TuiBox(); global.layer.setPositionAbsolute(); "
      "global.layer.setFullSize(); global.layer.setModal(); global.layer.bringToFront(); global.ok = new TuiButton({width: 60, height: "
      "30}); global.ok.addEvent(\"click\", method(undefined, ui_note)); global.layer.addContent(global.ok); "
      "global.ui.addContent([global.under, global.layer])");
  frame(5, 700);
  click(30, 20);
  check({{"array_length(global.seen)", "1"}, {"global.seen[0] == global.ok", "true"}});
  for (int i = 0; i < 3; ++i) {
    tap(9);
    check({{"global.under.is_focused", "false"}});
  }
  check({{"global.ui.isInteracting()", "true"}, {"global.layer.destroy(); 1", "1"}});
  frame(5, 700);
  click(30, 20);
  check({{"global.seen[1] == global.under", "true"}});
}

TEST_F(Holders, TheKeyboardLeavesWhatCannotBeReached) {
  const auto focus_anew = [&] {
    eval(
        "global.ui.destroyContent(); global.b = new TuiButton({width: 50, height: 30}); global.b.addEvent(\"click\", method(undefined, "
        "ui_note)); global.b.addEvent(\"blur\", method(undefined, ui_note)); global.ui.addContent(global.b); global.seen = []");
    frame(5, 700);
    eval("global.b.focus()");
  };
  for (const char* const away : {"global.b.setVisible(false)", "global.b.setEnabled(false)",
                                 "l = new TuiBox(); l.setPositionAbsolute(); l.setModal(); global.ui.addContent(l)"}) {
    focus_anew();
    tap(13);
    check({{"array_length(global.seen)", "1"}});
    eval(away);
    frame(5, 700);
    tap(13);
    check({{"[array_length(global.seen), global.b.is_focused]", "[2,false]"}});  // one click before, one "blur"
  }
}

TEST_F(Holders, EventsAreTakenBackAndRaisedByHand) {
  eval(
      "global.b = new TuiBox({name: \"box\"}); global.b.addContent(new TuiBox({name: \"inner\"})); global.ui.addContent(global.b); "
      "global.b.addEvent(\"poke\", method(undefined, ui_note_name))");
  check({{"global.b.trigger(\"poke\"); global.seen", "[\"box\"]"},
         {"global.b.removeEvent(\"poke\"); global.b.trigger(\"poke\"); array_length(global.seen)", "1"},
         {"global.ui.find(\"inner\").name", "inner"},
         {"global.ui.find(\"nobody\")", "undefined"}});
}

TEST_F(Holders, ATooltipComesAfterAWhile) {
  eval("global.b = new TuiBox({width: 100, height: 40, align_self: 0}); global.b.setTooltip(\"why\"); global.ui.addContent(global.b)");
  frame(50, 20);
  EXPECT_EQ(drawn("global.ui.render()").size(), 0U);
  for (int i = 0; i < 30; ++i) frame(50, 20);
  const std::vector<Drawn> shown = drawn("global.ui.render()");
  EXPECT_GE(shown.size(), (1 + 3) * 6U) << "a panel and three letters";
  for (const Drawn& each : shown) EXPECT_TRUE(each.x >= 50 && each.y >= 20 && each.x < 200 && each.y < 100) << each.x << " " << each.y;
  // In the corner it gives way instead of leaving the screen.
  eval("global.b.setPositionAbsolute(); global.b.setInset(1180, 680)");
  for (int i = 0; i < 30; ++i) frame(1275, 715);
  const std::vector<Drawn> cornered = drawn("global.ui.render()");
  EXPECT_EQ(cornered.size(), shown.size());
  for (const Drawn& each : cornered) EXPECT_TRUE(each.x <= 1280 && each.y <= 720) << each.x << " " << each.y;
}

}  // namespace
}  // namespace arena::test
