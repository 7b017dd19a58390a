// The window and the machine: what they tell, and buttons for what can be asked of them.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"

namespace game {
extern const Script<void(Value, Value)> machine_border, machine_away, machine_slow, machine_awake, machine_icon;

namespace {

const Sample sample{rMachine, "Window and machine", "Displays, the window, the language, the licence flag", sprShip};

const Variable inset_left{"inset_left"}, inset_top{"inset_top"}, resized{"resized"}, row_gap{"row_gap"}, wants_to_close{"wants_to_close"},
    frequency{"frequency"}, dpi{"dpi"};

constexpr int kNight = 0x2A1C10;

Value button(const char* name, const Value& pressed) {
  const Value made = TuiButton.make(struct_of({{width, 300}, {height, 36}}));
  const Value words = TuiText.make(struct_of({{value, name}}));
  words[setMouseIgnore]();
  made[addContent](array_of(words));
  made[addEvent]("click", pressed);
  return made;
}

void line(Real at, const Value& text) { draw_text_shadowed(420, at, text, kPale, kNight, 1); }

}  // namespace
}  // namespace game

SCRIPT(machine_border, Value, Value) { window_set_borderless(!window_get_borderless()); }
SCRIPT(machine_away, Value, Value) { window_minimise(); }
SCRIPT(machine_slow, Value, Value) { game_set_speed(game_get_speed() == 0 ? 30 : 0); }
SCRIPT(machine_awake, Value, Value) { display_set_awake(false); }
SCRIPT(machine_icon, Value, Value) {
  window_set_icon(sprComet);
  window_set_caption("A comet");
}

EVENT(oMachine, Create_0) {
  event_inherited();
  self[resized] = 0;
  self[wants_to_close] = false;
  const Value window = TuiWindow.make(struct_of({{value, "Window"}, {width, 340}, {inset_left, 40}, {inset_top, 60}, {row_gap, 8}}));
  window[addContent](button("Border", machine_border));
  window[addContent](button("Put away", machine_away));
  window[addContent](button("30 frames a second", machine_slow));
  window[addContent](button("Let the display go dark", machine_awake));
  window[addContent](button("Icon and caption", machine_icon));
  self[interface][addContent](window);
}

EVENT(oMachine, Step_0) { event_inherited(); }

EVENT(oMachine, Window_1) { self[resized] += 1; }

// The first time it only says so.
EVENT(oMachine, Window_0) {
  if (bool(Value(self[wants_to_close]))) game_end();
  self[wants_to_close] = true;
}

EVENT(oMachine, Draw_64) {
  event_inherited();
  const KeptDrawState kept;
  draw_set_font(fntUi);
  draw_set_halign(fa_left);
  draw_set_valign(fa_top);
  const Value display = display_get(display_get_of_window());
  line(70, Value("Displays: ") + string(display_get_count()) + ", this one " + string(Value(display[width])) + " x " +
               string(Value(display[height])) + ", " + string(Value(display[frequency])) + " Hz, " + string(Value(display[dpi])) + " dpi");
  line(100, Value("The window stands at ") + string(window_get_x()) + ", " + string(window_get_y()) + " and had " +
                string(Value(self[resized])) + " other sizes");
  line(130, Value("Language: ") + locale_get());
  line(160, Value("Edition: ") + licence_get_edition() + ", features: " + string(array_length(licence_get_features())));
  line(190, Value("Arguments: ") + string(argument_count()));
  if (bool(Value(self[wants_to_close]))) line(240, "You want to close the window? Once more, then.");
}
