// The controls of a replay, over its picture: a time line with what happened where, play and pause, speeds, single frames. It runs in a
// session beside the game that is played again, so its globals are its own; those below join it with the program.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "toolkit/support/resolution.h"
#include "toolkit/ui/paint.h"

namespace game {
extern const Script<void(Value, Value)> viewer_clicked;
extern const Script<void(Value, Value)> viewer_slid;

namespace {

const ToolObject oReplayViewer{"oReplayViewer", {"Create_0", "Step_0", "Draw_64"}};

// Told by the program
const Variable replay_seconds{"replay_seconds"}, replay_length{"replay_length"};
const Variable replay_ready{"replay_ready"};  // 0 to 1: how much of the first pass is done
const Variable replay_marks{"replay_marks"};  // [seconds, text] each, in their order
const Variable replay_note{"replay_note"};    // a sentence about how the recording ends, or ""
// Heard by the program
const Variable replay_paused{"replay_paused"};
const Variable replay_speed{"replay_speed"};          // seconds a second
const Variable replay_seek{"replay_seek"};            // seconds to go to; -1: nowhere
const Variable replay_step{"replay_step"};            // frames to go on, or back
const Variable replay_take_over{"replay_take_over"};  // somebody wants to play on from here

const Variable interface {
  "interface"
}, panel{"panel"}, line{"line"}, play_text{"play_text"}, time_text{"time_text"}, speed_text{"speed_text"}, note_text{"note_text"};
const Variable still_seconds{"still_seconds"}, pointer_x{"pointer_x"}, pointer_y{"pointer_y"};

constexpr int kKeySpace = 32, kKeyEnd = 35, kKeyHome = 36, kKeyLeft = 37, kKeyUp = 38, kKeyRight = 39, kKeyDown = 40, kKeyComma = 188,
              kKeyPeriod = 190;
constexpr double kSlowest = 0.25, kFastest = 16;
constexpr double kHop = 5;        // seconds that an arrow key goes
constexpr double kHideAfter = 3;  // seconds without a move of the pointer, while it plays
constexpr double kLineEnds = 7;   // GUI pixels at each end of the line that stand for no time: half its knob
constexpr double kNear = 5;       // GUI pixels from a mark at which the pointer means it
constexpr double kMarkHeight = 7, kMargin = 12, kPanelHeight = 74, kButton = 76, kTimeWidth = 130, kSpeedWidth = 56;  // GUI pixels
constexpr int kMark = 0x4CC2F2;

double told(const Variable& of) { return number_or(RValue::of_object(global_object()), of, 0); }
bool is_told(const Variable& of) { return told(of) > 0.5; }

std::string clock_text(double seconds) {
  const int whole = std::max(0, static_cast<int>(seconds));
  char text[32];
  std::snprintf(text, sizeof text, "%d:%02d", whole / 60, whole % 60);
  return text;
}

// Along the line of time
double place_of(const Rect& on, double seconds) {
  const double share = told(replay_length) > 0 ? seconds / told(replay_length) : 0;
  return on.x + kLineEnds + std::clamp(share, 0.0, 1.0) * (on.width - 2 * kLineEnds);
}
double seconds_at(const Rect& on, double x) {
  return std::clamp((x - on.x - kLineEnds) / std::max(on.width - 2 * kLineEnds, 1.0), 0.0, 1.0) * told(replay_length);
}

// body(seconds, text) for each.
template <class Body>
void for_marks(Body body) {
  const Value marks = array_in(RValue::of_object(global_object()), replay_marks);
  const int count = is_undefined(marks) ? 0 : saturate_int32(array_length(marks).number());
  for (int i = 0; i < count; ++i) {
    const Value mark = marks[i];
    body(to_real(Value(mark[0])), to_text(Value(mark[1])));
  }
}

// The time there, and the mark if one is near.
std::string tip_at(const Rect& on, double x) {
  std::string tip = clock_text(seconds_at(on, x));
  double nearest = kNear;
  for_marks([&](double seconds, const std::string& text) {
    const double away = std::fabs(place_of(on, seconds) - x);
    if (away >= nearest) return;
    nearest = away;
    tip = clock_text(seconds) + "  " + text;
  });
  return tip;
}

void go_to(double seconds) { global[replay_seek] = std::clamp(seconds, 0.0, told(replay_length)); }
// The next mark, or the one before; where there is none, the end.
void go_to_mark(bool forward) {
  const double now = told(replay_seconds);
  double best = forward ? told(replay_length) : 0;
  for_marks([&](double seconds, const std::string&) {
    if (forward && seconds > now + 0.05) best = std::min(best, seconds);
    if (!forward && seconds < now - 0.5) best = std::max(best, seconds);  // so that it gets past one that was just reached
  });
  go_to(best);
}
void change_speed(double by) { global[replay_speed] = std::clamp(told(replay_speed) * by, kSlowest, kFastest); }
void step_by(int frames) {
  global[replay_paused] = true;
  global[replay_step] = frames;
}
void toggle_pause() { global[replay_paused] = !is_told(replay_paused); }

void use_keys() {
  const auto pressed = [](int key) { return bool(keyboard_check_pressed(key)); };
  if (pressed(kKeySpace)) toggle_pause();
  if (pressed(kKeyLeft)) go_to(told(replay_seconds) - kHop);
  if (pressed(kKeyRight)) go_to(told(replay_seconds) + kHop);
  if (pressed(kKeyUp)) change_speed(2);
  if (pressed(kKeyDown)) change_speed(0.5);
  if (pressed(kKeyHome)) go_to(0);
  if (pressed(kKeyEnd)) go_to(told(replay_length));
  if (pressed(kKeyComma)) step_by(-1);
  if (pressed(kKeyPeriod)) step_by(1);
  if (pressed('B')) go_to_mark(false);
  if (pressed('N')) go_to_mark(true);
  if (pressed('T')) global[replay_take_over] = true;
}

Value make_button(const char* name, const char* text, const char* tip) {
  const Value button = TuiButton.make(struct_of({{value, text}, {name_field, name}, {is_focusable, false}, {width, kButton}}));
  button[setTooltip](tip);
  button[addEvent]("click", viewer_clicked);
  return button;
}
Value make_text(const Value& across, int align) {
  return TuiText.make(struct_of({{value, ""}, {width, across}, {text_halign, align}, {text_valign, 1}}));
}

Value make_panel() {
  const Value made = TuiPanel.make(struct_of({{is_absolute, true},
                                              {inset_left, kMargin},
                                              {inset_right, kMargin},
                                              {inset_bottom, kMargin},
                                              {height, kPanelHeight},
                                              {alpha, 0.85}}));
  made[setPadding](10, 6);
  made[setGap](6);
  global[line] = TuiSlider.make(struct_of({{minimum, 0}, {is_focusable, false}, {name_field, "line"}}));
  global[line][addEvent]("change", viewer_slid);
  global[time_text] = make_text(kTimeWidth, 0);
  global[speed_text] = make_text(kSpeedWidth, 1);
  global[note_text] =
      TuiText.make(struct_of({{value, ""}, {flex_grow, 1}, {flex_basis, 0}, {overflow, tui::kOverflowEllipsis}, {text_valign, 1}}));
  const Value play = make_button("play", "Pause", "Space");
  global[play_text] = play[content][0];
  const Value row = TuiRow.make(struct_of({{column_gap, 8}, {align_items, tui::kCenter}}));
  row[addContent](array_of(play, make_button("back", "< 1", "One frame back: comma"), make_button("on", "1 >", "One frame on: period"),
                           make_button("slower", "Slower", "Down"), Value(global[speed_text]), make_button("faster", "Faster", "Up"),
                           Value(global[time_text]), Value(global[note_text]),
                           make_button("take", "Play on", "T: play on from here yourself")));
  made[addContent](array_of(Value(global[line]), row));
  return made;
}

// Out of sight while somebody only watches.
bool is_wanted() { return is_told(replay_paused) || told(replay_ready) < 1 || told(still_seconds) < kHideAfter; }

void watch_pointer() {
  const Real across = device_mouse_x_to_gui(0), down = device_mouse_y_to_gui(0);
  const bool is_still = across == Real(told(pointer_x)) && down == Real(told(pointer_y)) && !is_set(Value(global[line]), is_pressed);
  global[still_seconds] = is_still ? told(still_seconds) + told(dt_steady) : 0;
  global[pointer_x] = across;
  global[pointer_y] = down;
}

void show_state() {
  const double pace = told(replay_speed), ready = told(replay_ready);
  char text[48];
  std::snprintf(text, sizeof text, pace < 1 ? "1/%.0f x" : "%.0f x", pace < 1 ? 1 / pace : pace);
  global[speed_text][value] = text;
  global[play_text][value] = is_told(replay_paused) ? "Play" : "Pause";
  global[time_text][value] = Value(clock_text(told(replay_seconds)) + " / " + clock_text(told(replay_length)));
  std::snprintf(text, sizeof text, "Reading the run: %.0f %%", std::floor(ready * 100));
  global[note_text][value] = ready < 1 ? Value(text) : Value(global[replay_note]);
  const Value slider = global[line];
  slider[maximum] = std::max(told(replay_length), 0.001);
  if (!is_set(slider, is_pressed)) slider[value] = told(replay_seconds);
  slider[setTooltip](Value(tip_at(rect_of(slider), told(pointer_x))));
  global[panel][setVisible](is_wanted());
}

}  // namespace
}  // namespace game

SCRIPT(viewer_clicked, Value button, Value) {
  const std::string name = to_text(Value(button[name_field]));
  if (name == "play") toggle_pause();
  if (name == "back") step_by(-1);
  if (name == "on") step_by(1);
  if (name == "slower") change_speed(0.5);
  if (name == "faster") change_speed(2);
  if (name == "take") global[replay_take_over] = true;
}

// What the player does, not the replay's own progress.
SCRIPT(viewer_slid, Value slider, Value) {
  if (is_set(slider, is_pressed)) go_to(number_or(slider, value, 0));
}

EVENT(oReplayViewer, Create_0) {
  global[replay_paused] = false;
  global[replay_speed] = 1;
  global[replay_seek] = -1;
  global[replay_step] = 0;
  global[replay_take_over] = false;
  global[still_seconds] = 0;
  global[pointer_x] = -1;
  global[pointer_y] = -1;
  global[interface] = TuiMain.make();
  global[panel] = make_panel();
  global[interface][addContent](Value(global[panel]));
}

EVENT(oReplayViewer, Step_0) {
  getTarnResolutionManager()[update]();
  watch_pointer();
  use_keys();
  show_state();
  global[interface][update]();
}

EVENT(oReplayViewer, Draw_64) {
  global[interface][render]();
  if (!is_wanted()) return;
  const Rect on = rect_of(Value(global[line]));
  for_marks([&](double seconds, const std::string&) {
    paint_rectangle({std::round(place_of(on, seconds)) - 1, on.y - 1, 2, kMarkHeight}, kMark, 1);
  });
}
