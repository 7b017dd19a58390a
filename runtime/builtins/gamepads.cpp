// Gamepads.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/gamepads.h"

#include <algorithm>
#include <cmath>

#include "runtime/arrays_structs/array.h"
#include "runtime/builtins/implement.h"
#include "runtime/input/gamepads.h"
#include "runtime/values/number_text.h"

namespace arena {
namespace {

constexpr int kAny = -1;
constexpr double kLongestVibration = 3600, kSteepest = 10;  // seconds; exponent

// Null for a place that is none, which is reported.
Pad* pad_at(std::int32_t place, int argument = 1) {
  if (place >= 0 && place < kPads) return &gamepads().data()[place];
  report_invalid_resource(argument, "gamepad", place, kPads);
  return nullptr;
}
bool is_button(std::int32_t button) {
  if (button >= 0 && button < kPadButtons) return true;
  report_invalid_resource(2, "gamepad button", button, kPadButtons);
  return false;
}
bool is_axis(std::int32_t axis) {
  if (axis >= 0 && axis < kPadAxes) return true;
  report_invalid_resource(2, "gamepad axis", axis, kPadAxes);
  return false;
}

// Of one place, or of any.
template <class Test>
bool test_pads(std::int32_t place, Test is_so) {
  if (place == kAny) return std::any_of(gamepads().begin(), gamepads().end(), is_so);
  const Pad* const pad = pad_at(place);
  return pad != nullptr && is_so(*pad);
}
template <bool Switch::*which>
bool test_button(std::int32_t place, std::int32_t button) {
  return is_button(button) && test_pads(place, [&](const Pad& pad) { return pad.buttons.data()[button].*which; });
}
bool check_plugged(std::int32_t place) {
  return test_pads(place, [](const Pad& pad) { return pad.was_plugged; });
}
bool check_unplugged(std::int32_t place) {
  return test_pads(place, [](const Pad& pad) { return pad.was_unplugged; });
}
bool is_connected(std::int32_t place) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && pad->is_connected;
}
std::int32_t connected() {
  return static_cast<std::int32_t>(std::count_if(gamepads().begin(), gamepads().end(), [](const Pad& pad) { return pad.is_connected; }));
}
std::int32_t get_last() {
  const Pad* last = nullptr;
  for (const Pad& pad : gamepads()) {
    if (pad.is_connected && pad.used > (last != nullptr ? last->used : 0)) last = &pad;
  }
  return last != nullptr ? static_cast<std::int32_t>(last - gamepads().data()) : -1;
}

double get_axis(std::int32_t place, std::int32_t axis) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && is_axis(axis) ? pad_axis(*pad, axis) : 0;
}
double get_axis_raw(std::int32_t place, std::int32_t axis) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && is_axis(axis) ? pad->axes.data()[axis] : 0;
}
double sensor(std::int32_t place, std::int32_t axis, int from) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && axis >= 0 && axis < 3 ? pad->sensors.data()[from + axis] : 0;
}
double get_gyro(std::int32_t place, std::int32_t axis) { return sensor(place, axis, 0); }
double get_acceleration(std::int32_t place, std::int32_t axis) { return sensor(place, axis, 3); }

RValue get_thresholds(std::int32_t place, std::int32_t axis) {
  const Pad* const pad = pad_at(place);
  if (pad == nullptr || !is_axis(axis)) return {};
  const PadAxisSettings& of = pad->settings.data()[axis];
  const double numbers[] = {of.press, of.release, of.inner, of.outer};
  RValue made = make_array();
  for (const double each : numbers) array_append(*made.array, RValue(each));
  return made;
}
// Both axes of a stick, or a trigger.
template <class Change>
void set_up(Pad& pad, int axis, Change change) {
  const int stick = axis / 2 * 2;
  for (int each = 0; each < kPadAxes; ++each) {
    if (each == axis || (axis < kStickAxes && (each == stick || each == stick + 1))) change(pad.settings.data()[each]);
  }
}
void set_thresholds(std::int32_t place, std::int32_t axis, double press, double release, double inner, double outer) {
  Pad* const pad = pad_at(place);
  if (pad == nullptr || !is_axis(axis)) return;
  const bool is_button_sound = release > 0 && release <= press && press <= 1;
  const bool is_zone_sound = inner >= 0 && inner < outer && outer <= 1;
  if (!is_button_sound || !is_zone_sound) return report_error(messages::kThresholds, current_builtin_name());
  pad->settings.data()[axis].press = press;
  pad->settings.data()[axis].release = release;
  set_up(*pad, axis, [&](PadAxisSettings& each) {
    each.inner = inner;
    each.outer = outer;
  });
}
double get_curve(std::int32_t place, std::int32_t axis) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && is_axis(axis) ? pad->settings.data()[axis].exponent : 0;
}
void set_curve(std::int32_t place, std::int32_t axis, double exponent) {
  Pad* const pad = pad_at(place);
  if (pad == nullptr || !is_axis(axis)) return;
  if (!(exponent >= 1 / kSteepest && exponent <= kSteepest)) return report_error(messages::kCurve, current_builtin_name());
  set_up(*pad, axis, [&](PadAxisSettings& each) { each.exponent = exponent; });
}

std::string button_name(std::int32_t place, std::int32_t button) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && is_button(button) ? pad_button_label(pad->labels, button) : "";
}
template <std::string Pad::*which>
std::string text_of_pad(std::int32_t place) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr ? pad->*which : "";
}
bool has(std::int32_t place, std::string_view ability) {
  const Pad* const pad = pad_at(place);
  if (pad == nullptr || !pad->is_connected || ability.empty() || ability.find(' ') != std::string_view::npos) return false;
  return (" " + pad->abilities + " ").find(" " + std::string(ability) + " ") != std::string::npos;
}

double strength(double wanted) { return wanted >= 0 ? std::min(wanted, 1.0) : 0; }  // 0 for what is no number, too
void start(PadVibration& motors, double first, double second, double seconds) {
  motors = {strength(first), strength(second), seconds > 0 ? std::min(seconds, kLongestVibration) : 0, motors.asked + 1};
  if (motors.seconds == 0 || (motors.first == 0 && motors.second == 0)) motors = {0, 0, 0, motors.asked};
}
void vibrate(std::int32_t place, double deep, double high, double seconds) {
  if (Pad* const pad = pad_at(place); pad != nullptr && pad->is_connected) start(pad->body, deep, high, seconds);
}
void vibrate_triggers(std::int32_t place, double left, double right, double seconds) {
  if (Pad* const pad = pad_at(place); pad != nullptr && pad->is_connected) start(pad->triggers, left, right, seconds);
}
void vibrate_stop(std::int32_t place) {
  vibrate(place, 0, 0, 0);
  if (place >= 0 && place < kPads) vibrate_triggers(place, 0, 0, 0);
}
bool is_vibrating(std::int32_t place) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && (pad->body.seconds > 0 || pad->triggers.seconds > 0);
}

double get_light(std::int32_t place) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr ? pad->light : -1;
}
void set_light(std::int32_t place, double colour) {
  if (Pad* const pad = pad_at(place)) pad->light = colour >= 0 ? saturate_int32(colour) & 0xFFFFFF : -1;
}
std::int32_t get_player(std::int32_t place) {
  const Pad* const pad = pad_at(place);
  return pad != nullptr && pad->player >= 0 ? pad->player : place;
}
void set_player(std::int32_t place, std::int32_t player) {
  if (Pad* const pad = pad_at(place)) pad->player = std::max(player, -1);
}
void set_motion(std::int32_t place, bool wanted) {
  if (Pad* const pad = pad_at(place)) pad->wants_motion = wanted;
}
void swap(std::int32_t first, std::int32_t second) {
  if (pad_at(first) != nullptr && pad_at(second, 2) != nullptr && first != second) swap_gamepads(first, second);
}

constexpr Implementation kRows[] = {
    implement<script::gamepad_button_name, button_name>,
    implement<script::gamepad_check_button, test_button<&Switch::down>>,
    implement<script::gamepad_check_button_pressed, test_button<&Switch::pressed>>,
    implement<script::gamepad_check_button_released, test_button<&Switch::released>>,
    implement<script::gamepad_check_plugged, check_plugged>,
    implement<script::gamepad_check_unplugged, check_unplugged>,
    implement<script::gamepad_get_acceleration, get_acceleration>,
    implement<script::gamepad_get_axis, get_axis>,
    implement<script::gamepad_get_axis_raw, get_axis_raw>,
    implement<script::gamepad_get_curve, get_curve>,
    implement<script::gamepad_get_guid, text_of_pad<&Pad::guid>>,
    implement<script::gamepad_get_gyro, get_gyro>,
    implement<script::gamepad_get_labels, text_of_pad<&Pad::labels>>,
    implement<script::gamepad_get_last, get_last>,
    implement<script::gamepad_get_light, get_light>,
    implement<script::gamepad_get_name, text_of_pad<&Pad::name>>,
    implement<script::gamepad_get_player, get_player>,
    implement<script::gamepad_get_thresholds, get_thresholds>,
    implement<script::gamepad_has, has>,
    implement<script::gamepad_is_connected, is_connected>,
    implement<script::gamepad_is_vibrating, is_vibrating>,
    implement<script::gamepad_number, connected>,
    implement<script::gamepad_set_curve, set_curve>,
    implement<script::gamepad_set_light, set_light>,
    implement<script::gamepad_set_motion, set_motion>,
    implement<script::gamepad_set_player, set_player>,
    implement<script::gamepad_set_thresholds, set_thresholds>,
    implement<script::gamepad_swap, swap>,
    implement<script::gamepad_vibrate, vibrate>,
    implement<script::gamepad_vibrate_stop, vibrate_stop>,
    implement<script::gamepad_vibrate_triggers, vibrate_triggers>,
};
const BuiltinTable table(
    "Gamepads",
    "Places are 0 to 7; a pad that is plugged in again comes back to its own. Axes are 0 and 1 the left stick across and down, 2 and 3 the "
    "right one, 4 and 5 the triggers. Buttons are called as they lie: 0 south, 1 east, 2 west, 3 north, 4 back, 5 guide, 6 start, 7 and 8 "
    "the "
    "sticks pressed, 9 and 10 the shoulders, 11 to 14 up, down, left, right of the cross, 15 one more, 16 to 19 paddles, 20 the touch pad; "
    "and axes as buttons: 21, 22 the triggers, 23 to 26 the left stick to the left, right, up, down, 27 to 30 the right one. docs/input.md "
    "shows how to use them.",
    kRows);

}  // namespace
}  // namespace arena
