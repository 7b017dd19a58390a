#pragma once
// Gamepads: up to eight, each in a place of its own, from 0 on: the player's. What they do enters through push_input; what they are to do
// (vibrate, shine) is kept here, and the device follows it.
//
// Always true: a pad that was unplugged comes back to the place that it had, whatever was plugged in or out meanwhile and in whatever order
// the system counts them. Only of two that cannot be told apart (same make, no serial number) and are both away, the first that comes back
// takes the lower place of the two.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "runtime/input/input_state.h"
#include "runtime/input/switch.h"
#include "runtime/session/state.h"

namespace arena {

inline constexpr int kPads = 8;
// Axes: left stick across and down, right stick across and down, left and right trigger.
inline constexpr int kPadAxes = 6, kStickAxes = 4;
inline constexpr int kPadSensors = 6;  // turning about x, y, z in degrees a second; acceleration along them, 1 is the earth's
// Buttons as they lie: 0 south, 1 east, 2 west, 3 north, 4 back, 5 guide, 6 start, 7 and 8 the sticks pressed, 9 and 10 the shoulders, 11
// to 14 up, down, left and right of the cross, 15 one more, 16 to 19 paddles, 20 the touch pad pressed. Then axes as buttons: 21 and 22 the
// triggers, 23 to 26 the left stick to the left, right, up, down, 27 to 30 the right one.
inline constexpr int kPadTrueButtons = 21, kPadButtons = 31;
inline constexpr int kPadTriggers = 21, kPadDirections = 23;

// Positions from 0 to 1, as they come from the device.
struct PadAxisSettings {
  double press = 0.5, release = 0.4;  // the axis counts as a button that is down from here on, up again below there
  double inner = 0.2, outer = 0.95;   // 0 up to here, 1 from there on; of a stick by its distance from the middle
  double exponent = 1;                // of the curve in between: 2 for finer control near the middle
  static constexpr auto fields() {
    return std::tuple(field("press", &PadAxisSettings::press), field("release", &PadAxisSettings::release),
                      field("inner", &PadAxisSettings::inner), field("outer", &PadAxisSettings::outer),
                      field("exponent", &PadAxisSettings::exponent));
  }
};

// What two motors do, strengths from 0 to 1, and for how long still, in seconds of the game.
struct PadVibration {
  double first = 0, second = 0, seconds = 0;
  std::uint32_t asked = 0;  // how often a script wanted another: devices hear of each; nothing that scripts can tell
  static constexpr auto fields() {
    return std::tuple(field("first", &PadVibration::first), field("second", &PadVibration::second),
                      field("seconds", &PadVibration::seconds), derived("asked", &PadVibration::asked));
  }
};

struct Pad {
  bool is_connected = false, was_plugged = false, was_unplugged = false;  // the last two: in this frame
  std::int32_t device = -1;
  std::string guid, serial, name;  // of the pad that is or was here; guid and serial are what it is known by
  std::string labels;              // what is printed on its buttons: "letters", "swapped letters", "shapes", "" for no such
  std::string abilities;           // words: vibration trigger-vibration light motion
  std::array<Switch, kPadButtons> buttons;
  std::array<double, kPadAxes> axes = {};  // as they come: -1 to 1
  std::array<double, kPadSensors> sensors = {};
  std::array<PadAxisSettings, kPadAxes> settings;
  PadVibration body, triggers;   // deep and high motor; left and right
  std::int32_t light = -1;       // colour; -1: its own
  std::int32_t player = -1;      // number that it shows, from 0 on; -1: its place
  bool wants_motion = false;     // it is to tell what its sensors measure
  std::uint64_t used = 0;        // the last of input_state().uses that was its
  std::uint32_t complaints = 0;  // what was said about what it sends
  static constexpr auto fields() {
    return std::tuple(field("is_connected", &Pad::is_connected), field("was_plugged", &Pad::was_plugged),
                      field("was_unplugged", &Pad::was_unplugged), field("device", &Pad::device), field("guid", &Pad::guid),
                      field("serial", &Pad::serial), field("name", &Pad::name), field("labels", &Pad::labels),
                      field("abilities", &Pad::abilities), field("buttons", &Pad::buttons), field("axes", &Pad::axes),
                      field("sensors", &Pad::sensors), field("settings", &Pad::settings), field("body", &Pad::body),
                      field("triggers", &Pad::triggers), field("light", &Pad::light), field("player", &Pad::player),
                      field("wants_motion", &Pad::wants_motion), field("used", &Pad::used), field("complaints", &Pad::complaints));
  }
};

using PadPlaces = std::array<Pad, kPads>;
PadPlaces& gamepads();

// What an event of type kPad says of a pad: five lines.
struct PadDescription {
  std::string guid, serial, name, labels, abilities;
};
std::string pad_text(const PadDescription& of);

void push_pad(std::int32_t device, const PadDescription& of);
void push_pad_gone(std::int32_t device);  // -1: all
void push_pad_button(std::int32_t device, int button, bool down);
void push_pad_axis(std::int32_t device, int axis, double position);
void push_pad_sensor(std::int32_t device, int axis, double value);

// Where the axis stands behind its dead zones and its curve, -1 to 1; triggers 0 to 1. Of a stick both axes shrink alike, so that its
// direction stays.
double pad_axis(const Pad& pad, int axis);
// "south", "left trigger", "right stick up": places, the same on every pad. "" for none; -1 for no such name.
std::string_view pad_button_place(int button);
int pad_button_of(std::string_view place);
// What is printed there on a pad with such labels; the place where that is unknown.
std::string pad_button_label(std::string_view labels, int button);
// "left stick across", "left trigger". "" for none.
std::string_view pad_axis_name(int axis);
void swap_gamepads(int first, int second);

// For the input queue and the frame.
void begin_gamepads_frame();
void apply_pad_event(const InputEvent& event);
void release_gamepads();
void advance_gamepads(std::int64_t microseconds);

}  // namespace arena
