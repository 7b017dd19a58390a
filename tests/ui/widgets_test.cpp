// The toolkit as a player and a script author meet it: pointer and keys through the input queue, values, events, order.
#include "tests/ui/widgets.h"

#include <chrono>
#include <nlohmann/json.hpp>

#include "runtime/input/input_state.h"
#include "runtime/reports/log.h"
#include "toolkit/support/easing.h"

namespace arena::test {
namespace {

TEST_F(Widgets, ClicksReachTheTopmostAndBubbleToNobody) {
  eval(
      "b = new TuiButton({width: 100, height: 40, is_absolute: true, inset_left: 10, inset_top: 10}); b.addEvent(\"click\", "
      "method(undefined, ui_note)); global.b = b");
  eval(
      "over = new TuiBox({width: 50, height: 40, is_absolute: true, inset_left: 10, inset_top: 10}); global.over = over; "
      "global.ui.addContent([b, over])");
  click(90, 30);
  check({{"array_length(global.seen)", "1"}, {"global.seen[0] == global.b", "true"}});
  click(20, 30);
  check({{"array_length(global.seen)", "1"}});  // the box lies over it
  eval("global.over.setMouseIgnore()");
  click(20, 30);
  check({{"array_length(global.seen)", "2"}, {"global.b.bringToFront(); global.b.setEnabled(false); 0", "0"}});
  click(90, 30);
  check({{"array_length(global.seen)", "2"}});  // disabled
  frame(90, 30);
  check({{"global.ui.isInteracting()", "true"}});
  frame(600, 600);
  check({{"global.ui.isInteracting()", "false"}, {"global.b.destroy(); global.ui.update(); array_length(global.ui.content)", "1"}});
}

TEST_F(Widgets, TextsThatDoNotFitEndInDots) {
  eval("global.t = new TuiText({value: \"\", width: 120, overflow: 3, align_self: 0}); global.ui.addContent(global.t); global.ui.update()");
  const auto glyphs = [&](const std::string& text) {
    eval("global.t.setValue(" + text + "); global.ui.update()");
    return drawn("global.ui.render()").size() / 6;
  };
  // Characters of two bytes are never cut apart. What is kept fits, and with one character more it would not.
  for (const char* const letter : {"M", "i", "\xC3\x84"}) {
    const std::string one = std::string("\"") + letter + "\"";
    const std::size_t shown = glyphs("string_repeat(" + one + ", 200)");
    ASSERT_GT(shown, 3U) << letter;
    const auto width = [&](std::size_t count) {
      return number("string_width(string_repeat(" + one + ", " + std::to_string(count) + ") + \"...\")");
    };
    EXPECT_LE(width(shown - 3), 120.5) << letter;
    EXPECT_GT(width(shown - 2), 120.5) << letter;
    EXPECT_EQ(glyphs("string_repeat(" + one + ", 2)"), 2U) << letter;
  }
  const auto began = std::chrono::steady_clock::now();
  EXPECT_GT(glyphs("string_repeat(\"abcd\", 50000)"), 3U);
  EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(10)) << "cutting one character after another takes minutes";
}

TEST_F(Widgets, TextsThatWrapAreAsWideAsTheirLongestWord) {
  for (const std::string text : {"MMM i ii", "i MMM ii", "i ii MMM"}) {
    eval("r = new TuiRow({width: 10}); global.t = new TuiText({value: \"" + text +
         "\", overflow: 1}); r.addContent(global.t); global.ui.addContent(r); global.ui.update()");
    EXPECT_EQ(eval("global.t.rect_width == ceil(string_width(\"MMM\"))"), "true") << text << ": " << eval("global.t.rect_width");
  }
}

TEST_F(Widgets, AReleaseElsewhereIsNoClick) {
  eval(
      "global.b = new TuiButton({width: 100, height: 40, align_self: 0}); global.b.addEvent(\"click\", method(undefined, ui_note)); "
      "global.ui.addContent(global.b)");
  frame(50, 20);
  press(true);
  frame(50, 20);
  check({{"global.b.is_pressed", "true"}});
  frame(500, 500);
  press(false);
  frame(500, 500);
  check({{"global.b.is_pressed", "false"}, {"array_length(global.seen)", "0"}});
}

// What belongs to the interface and what to the game: only a press that began on a widget that takes clicks is the interface's.
TEST_F(Widgets, APressIsTheInterfacesWhereItBegan) {
  eval(
      "global.b = new TuiButton({width: 100, height: 40, is_absolute: true, inset_left: 10, inset_top: 10}); global.p = new "
      "TuiPanel({width: 100, height: 40, is_absolute: true, inset_left: 200, inset_top: 10}); global.w = new TuiWindow({width: 200, "
      "height: 100, inset_left: 400, inset_top: 10}); global.t = new TuiText({value: \"label\"}); global.w.addContent(global.t); "
      "global.ui.addContent([global.b, global.p, global.w])");
  eval("global.b.addEvent(\"click\", method(undefined, ui_note)); global.p.setTooltip(\"a panel\")");
  const char* const clean = "[global.ui.isInteracting(), global.b.is_pressed]";
  struct Place {
    const char* label;
    double x, y;
    bool is_interfaces;
  };
  for (const Place& at : {Place{"nothing", 640, 600, false},
                          {"a panel", 250, 30, false},
                          {"a button", 50, 30, true},
                          {"a text in a window", 420, 55, true}}) {
    SCOPED_TRACE(at.label);
    frame(at.x, at.y);
    press(true);
    ask({{"mouse", {at.x, at.y}}, {"gui", true}});
    step();
    EXPECT_EQ(eval("global.ui.isInteracting()"), at.is_interfaces ? "true" : "false") << "in the first frame, before update()";
    eval("global.ui.update(); global.ui.render()");
    for (const double x : {250.0, 50.0, 640.0}) {  // over everything with the button held
      frame(x, 30);
      EXPECT_EQ(eval("global.ui.isInteracting()"), at.is_interfaces ? "true" : "false") << "at " << x;
    }
    press(false);
    frame(640, 600);
    check({{clean, "[false,false]"}, {"array_length(global.seen)", "0"}});
  }
  // A press that ends in another way leaves nothing behind, and is no click.
  struct Ending {
    const char* label;
    const char* statement;  // "": the window loses its focus
  };
  for (const Ending& end : {Ending{"hidden", "global.b.setVisible(false)"},
                            {"shown again", "global.b.setVisible(true)"},
                            {"taken out", "global.ui.removeContent(global.b)"},
                            {"put back", "global.ui.addContent(global.b)"},
                            {"the focus is lost", ""},
                            {"under a modal layer",
                             "global.m = new TuiBox(); global.m.setPositionAbsolute(); global.m.setFullSize(); "
                             "global.m.setModal(); global.m.bringToFront(); global.ui.addContent(global.m); 1"},
                            {"the layer is gone", "global.m.destroy()"},
                            {"destroyed", "global.b.destroy()"}}) {
    SCOPED_TRACE(end.label);
    frame(50, 30);
    press(true);
    frame(50, 30);
    if (*end.statement == '\0') {
      InputEvent focus;
      focus.type = InputEvent::Type::kFocus;
      push_input(focus);
      frame(50, 30);
      check({{clean, "[true,false]"}});  // the pointer rests on the button
      focus.value = 1;
      push_input(focus);
    } else {
      eval(end.statement);
      frame(50, 30);
      check({{"[global.b.is_pressed, global.ui.pressed]", "[false,undefined]"}});
    }
    press(false);
    frame(640, 600);
    const bool is_modal = std::string(end.label) == "under a modal layer";  // everything is the layer's then
    check({{clean, is_modal ? "[true,false]" : "[false,false]"}});
  }
  check({{"array_length(global.seen)", "0"}});
}

TEST_F(Widgets, DestroyRaisesItsEventOnceFromTheInsideOut) {
  eval("outer = new TuiBox({name: \"outer\"}); inner = new TuiBox({name: \"inner\"}); outer.addContent(inner); global.outer = outer");
  eval(
      "outer.addEvent(\"destroy\", method(undefined, ui_note_name)); inner.addEvent(\"destroy\", method(undefined, ui_note_name)); "
      "global.ui.addContent(outer)");
  check({{"global.outer.setData(\"k\", [1]); global.outer.getData(\"k\")", "[1]"},
         {"global.outer.getData(\"none\")", "undefined"},
         {"global.outer.destroy(); global.outer.destroy(); global.seen", "[\"inner\",\"outer\"]"},
         {"array_length(global.ui.content)", "0"}});
}

TEST_F(Widgets, MistakesAreReportedAndNothingEnds) {
  take_log();
  check({{"global.ui.addContent(5); global.ui.addContent(global.ui); 1", "1"},
         {"x1 = new TuiBox(); x1.destroy(); global.ui.addContent(x1); 1", "1"},
         {"new TuiBox(7); 1", "1"}});
  eval(
      "global.b = new TuiButton({width: 100, height: 40, align_self: 0}); global.b.addEvent(\"click\", method(undefined, "
      "fail_in_builtin)); global.ui.addContent(global.b)");
  click(50, 20);
  const std::vector<std::string> log = take_log();
  ASSERT_EQ(log.size(), 5u);
  EXPECT_EQ(log[0], "TARN_UI.ERROR.TuiMain.addContent: content is to be a widget or an array of widgets, not number");
  EXPECT_EQ(log[1], "TARN_UI.ERROR.TuiMain.addContent: a widget cannot stand in itself");
  EXPECT_EQ(log[4].find("TARN_UI.ERROR.TuiButton.ksl_Script_fail_in_builtin: string_length argument 1"), 0u) << log[4];
}

TEST_F(Widgets, BindingsFollowAndRest) {
  eval("global.t = new TuiText(); global.t.bindVariable(oBullet, \"hp\"); global.ui.addContent(global.t)");
  frame(0, 0);
  check({{"global.t.value", "undefined"}});  // an object type may be bound before its first instance
  eval("instance_create_depth(0, 0, 0, oBullet).hp = 7");
  frame(0, 0);
  check({{"global.t.value", "7"},
         {"oBullet.hp = 8; global.ui.update(); global.t.value", "8"},
         {"instance_destroy(oBullet); global.ui.update(); global.t.value", "8"},
         {"s = {k: 1}; global.t.bindVariable(s, \"k\"); s.k = \"two\"; global.ui.update(); global.t.value", "two"}});
}

TEST_F(Widgets, SlidersAndCheckboxesChange) {
  eval(
      "global.s = new TuiSlider({width: 114, height: 20, align_self: 0, maximum: 10, step: 1}); global.s.addEvent(\"change\", "
      "method(undefined, ui_note_value))");
  eval("global.c = new TuiCheckbox({caption: \"on\", align_self: 0}); global.ui.addContent([global.s, global.c])");
  frame(57, 10);
  press(true);
  frame(57, 10);
  check({{"global.s.value", "5"}});
  frame(400, 10);
  check({{"global.s.value", "10"}, {"global.seen", "[5,10]"}});
  press(false);
  frame(400, 10);
  tap(37);
  check({{"global.s.value", "9"}});  // it kept the keyboard
  click(10, 32);
  check({{"global.c.value", "true"}});
}

TEST_F(Widgets, TypingSelectingAndTheClipboard) {
  eval(
      "global.i = new TuiInput({width: 300, align_self: 0, max_length: 8}); global.i.addEvent(\"submit\", method(undefined, "
      "ui_note_value)); global.ui.addContent(global.i)");
  type("lost");
  check({{"global.i.value", ""}});  // without the focus nothing is typed
  eval("global.i.focus()");
  type("añ€b");
  tap(37);
  tap(8);
  check({{"global.i.value", "añb"}});
  tap(36);
  key(16, true);
  tap(39);
  tap(39);
  key(16, false);
  key(17, true);
  tap(67);
  tap(35);
  key(17, false);
  tap(35);
  key(17, true);
  tap(86);
  key(17, false);
  check({{"global.i.value", "añbañ"}, {"clipboard_get_text()", "añ"}});
  type("0123456789");
  check({{"global.i.value", "añbañ012"}});  // eight characters, not bytes
  tap(13);
  check({{"global.seen", "[\"añbañ012\"]"}});
  key(17, true);
  tap(65);
  key(17, false);
  type("z");
  check({{"global.i.value", "z"}});
}

TEST_F(Widgets, CommandsOfALineFollowTheLayoutsLetters) {
  const auto label = [](int code, const char* text) {
    InputEvent event;
    event.type = InputEvent::Type::kKeyLabel;
    event.code = code;
    event.text = text;
    push_input(event);
  };
  eval("global.i = new TuiInput({value: \"word\"}); global.ui.addContent(global.i); global.i.focus()");
  for (const bool is_french : {false, true}) {
    label('A', is_french ? "Q" : "");
    label('Q', is_french ? "A" : "");
    label('X', is_french ? "Ч" : "");  // no Latin letter: the place counts
    eval("global.i.setValue(\"word\")");
    key(17, true);
    tap(is_french ? 'Q' : 'A');
    tap('X');
    key(17, false);
    check({{"[global.i.value, clipboard_get_text()]", "[\"\",\"word\"]"}});
    eval("clipboard_set_text(\"\")");
  }
  for (const int code : {'A', 'Q', 'X'}) label(code, "");
  frame(5, 700);
}

TEST_F(Widgets, TabsCombosAndScrollAreas) {
  eval(
      "global.tabs = new TuiTabs(); global.one = new TuiText({value: \"1\"}); global.two = new TuiText({value: \"2\"}); "
      "global.tabs.addTab(\"a\", global.one); global.tabs.addTab(\"b\", global.two)");
  check({{"[global.one.visible, global.two.visible]", "[true,false]"},
         {"global.tabs.showTab(1); [global.one.visible, global.two.visible]", "[false,true]"}});
  eval(
      "global.c = new TuiCombo({options: [\"x\", \"y\", \"z\"], width: 200, is_absolute: true, inset_left: 600, inset_top: 100}); "
      "global.ui.addContent(global.c)");
  click(650, 115);
  frame(650, 115);
  click(650, 100 + 30 + 4 + 28 + 14);  // below the box: padding, the first option, the middle of the second
  check({{"global.c.value", "1"}, {"global.c.popup", "undefined"}});
  eval(
      "global.s = new TuiScroll({width: 100, height: 100, is_absolute: true, inset_left: 900, inset_top: 300}); for_each = 0; "
      "global.s.addContent([new TuiBox({height: 80}), new TuiBox({height: 80}), new TuiBox({height: 80})]); "
      "global.ui.addContent(global.s)");
  frame(950, 350);
  InputEvent wheel;
  wheel.type = InputEvent::Type::kWheel;
  wheel.code = -1;
  for (int i = 0; i < 9; ++i) {
    push_input(wheel);
    frame(950, 350);
  }
  check({{"global.s.scroll_y", "140"}, {"global.s.content[0].rect_y", "160"}});
}

TEST_F(Widgets, KeyboardGoesRoundAndInDirections) {
  eval(
      "global.a = new TuiButton({width: 50, height: 30}); global.b = new TuiButton({width: 50, height: 30}); global.c = new "
      "TuiButton({width: 50, height: 30})");
  eval(
      "r = new TuiRow({column_gap: 10, align_self: 0}); r.addContent([global.a, global.b]); global.ui.addContent([r, global.c]); "
      "global.c.setAlignSelf(0); global.b.addEvent(\"click\", method(undefined, ui_note))");
  frame(5, 700);
  // a and b in a row, c below a: what has the focus after each key
  const struct {
    int key;
    const char* has_focus;
  } ways[] = {{9, "a"},  {39, "b"}, {39, "b"}, {37, "a"}, {37, "a"}, {38, "a"}, {40, "c"},
              {38, "a"}, {39, "b"}, {38, "b"}, {40, "c"}, {9, "a"},  {9, "b"}};
  for (const auto& way : ways) {
    tap(way.key);
    for (const std::string name : {"a", "b", "c"}) {
      EXPECT_EQ(eval("global." + name + ".is_focused"), name == way.has_focus ? "true" : "false") << name << " after " << way.key;
    }
  }
  tap(13);
  check({{"array_length(global.seen)", "1"}});
}

TEST_F(Widgets, TweensArriveAndTheSecondTakesOver) {
  eval(
      "global.t = new TuiBox({width: 10}); global.ui.addContent(global.t); global.ui.update(); global.t.tween(\"width\", 110, 1, "
      "\"linear\")");
  eval("global.dt_steady = 0.5; global.ui.update()");
  check({{"global.t.width", "60"},
         {"global.t.tween(\"width\", 0, 1, \"linear\"); global.ui.update(); global.t.width", "30"},
         {"global.ui.update(); global.ui.update(); global.t.width", "0"}});
}

TEST_F(Widgets, ACleanTreeIsNotArrangedAgain) {
  eval(
      "global.t = new TuiBox({width: 10}); global.ui.addContent(global.t); global.ui.update(); global.order = global.ui.order; "
      "global.t.rect_x = 77");
  check({{"global.ui.update(); global.ui.render(); global.t.rect_x", "77"},
         {"global.t.setWidth(20); global.ui.update(); global.t.rect_x", "0"}});
}

TEST(Easings, StartAndEndWhereTheyShould) {
  int count = 0;
  const auto check = [&](const std::string& name) {
    ++count;
    EXPECT_TRUE(game::is_easing(name)) << name;
    EXPECT_EQ(game::ease(name, 0), 0) << name;
    EXPECT_EQ(game::ease(name, 1), 1) << name;
  };
  check("linear");
  for (const std::string curve : {"Quad", "Cubic", "Quart", "Quint", "Sine", "Expo", "Circ", "Back", "Elastic", "Bounce"}) {
    for (const std::string form : {"in", "out", "inOut"}) check(form + curve);
    EXPECT_NEAR(game::ease("in" + curve, 0.3), 1 - game::ease("out" + curve, 0.7), 1e-12) << curve << ": in and out mirror each other";
    EXPECT_NEAR(game::ease("inOut" + curve, 0.5), 0.5, 1e-12) << curve;
    // Close to the ends every curve is close to them, too: no jump hides there.
    EXPECT_NEAR(game::ease("in" + curve, 1e-4), 0, 2e-3) << curve;
    EXPECT_NEAR(game::ease("out" + curve, 1 - 1e-4), 1, 2e-3) << curve;
  }
  EXPECT_EQ(count, 31);
  EXPECT_NEAR(game::ease("inQuad", 0.5), 0.25, 1e-12);
  EXPECT_NEAR(game::ease("inSine", 1.0 / 3), 1 - std::sqrt(3.0) / 2, 1e-12);
  EXPECT_LT(game::ease("inBack", 0.3), 0);
  EXPECT_FALSE(game::is_easing("inSideways"));
}

}  // namespace
}  // namespace arena::test
