#include "runtime/input/gamepads.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "runtime/reports/log.h"
#include "runtime/session/session.h"
#include "runtime/values/elementary.h"

namespace arena {
namespace {

constexpr double kTriggerPress = 0.25, kTriggerRelease = 0.15, kTriggerInner = 0.05;
constexpr double kFurthest = 1.0001;  // a position up to here is rounded, not wrong

struct Gamepads {
  PadPlaces places = fresh_places();
  std::vector<std::int32_t> left_out;  // devices that found no place
  bool heard_strangers = false;        // a device that nobody plugged in sent something, and that was said

  static PadPlaces fresh_places() {
    PadPlaces made;
    for (Pad& pad : made) give_settings(pad);
    return made;
  }
  static void give_settings(Pad& pad) {
    pad.settings = {};
    for (std::size_t axis = kStickAxes; axis < kPadAxes; ++axis)
      pad.settings[axis] = {kTriggerPress, kTriggerRelease, kTriggerInner, pad.settings[axis].outer, 1};
  }
  // What is plugged in stays so, and where.
  void restart() {
    for (Pad& pad : places) {
      pad.buttons = {};
      pad.was_plugged = pad.was_unplugged = false;
      pad.light = pad.player = -1;
      pad.wants_motion = false;
      for (PadVibration* const each : {&pad.body, &pad.triggers}) *each = {0, 0, 0, each->asked + 1};
      give_settings(pad);
    }
  }
  static constexpr auto fields() {
    return std::tuple(field("places", &Gamepads::places), field("left_out", &Gamepads::left_out),
                      field("heard_strangers", &Gamepads::heard_strangers));
  }
};
const StatePart<Gamepads> part{PartLevel::kWorld, "gamepads"};

constexpr std::string_view kPlaceNames[kPadButtons] = {"south",
                                                       "east",
                                                       "west",
                                                       "north",
                                                       "back",
                                                       "guide",
                                                       "start",
                                                       "left stick",
                                                       "right stick",
                                                       "left shoulder",
                                                       "right shoulder",
                                                       "up",
                                                       "down",
                                                       "left",
                                                       "right",
                                                       "misc",
                                                       "paddle 1",
                                                       "paddle 2",
                                                       "paddle 3",
                                                       "paddle 4",
                                                       "touchpad",
                                                       "left trigger",
                                                       "right trigger",
                                                       "left stick left",
                                                       "left stick right",
                                                       "left stick up",
                                                       "left stick down",
                                                       "right stick left",
                                                       "right stick right",
                                                       "right stick up",
                                                       "right stick down"};
constexpr std::string_view kAxisNames[kPadAxes] = {"left stick across", "left stick down", "right stick across",
                                                   "right stick down",  "left trigger",    "right trigger"};

// What is printed on pads, by their labels.
struct Label {
  int button;
  const char *letters, *swapped, *shapes;
};
constexpr Label kLabels[] = {{0, "A", "B", "Cross"},    {1, "B", "A", "Circle"},      {2, "X", "Y", "Square"}, {3, "Y", "X", "Triangle"},
                             {4, "Back", "-", "Share"}, {6, "Start", "+", "Options"}, {7, "LS", "LS", "L3"},   {8, "RS", "RS", "R3"},
                             {9, "LB", "L", "L1"},      {10, "RB", "R", "R1"},        {21, "LT", "ZL", "L2"},  {22, "RT", "ZR", "R2"}};

// What may be wrong with what a pad sends; each is said once.
enum Complaint : std::uint32_t { kUnknownButton = 1, kUnknownAxis = 2, kUnknownSensor = 4, kNoNumber = 8, kTooFar = 16 };

void complain(Pad& pad, Complaint about, const std::string& what) {
  if ((pad.complaints & about) != 0) return;
  pad.complaints |= about;
  log_warning("gamepad " + std::to_string(&pad - gamepads().data()) + " (" + pad.name + ") " + what);
}

Pad* find_pad(std::int32_t device) {
  for (Pad& pad : gamepads()) {
    if (pad.is_connected && pad.device == device) return &pad;
  }
  return nullptr;
}

// Its own place, or the first that nobody ever had, or the first that is free; null when there is none.
Pad* place_for(const PadDescription& of) {
  PadPlaces& all = gamepads();
  const auto first = [&](auto is_fit) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const Pad& pad) { return !pad.is_connected && is_fit(pad); });
    return found != all.end() ? &*found : nullptr;
  };
  if (Pad* const own = first([&](const Pad& pad) { return pad.guid == of.guid && pad.serial == of.serial && !pad.name.empty(); }))
    return own;
  if (Pad* const unused = first([](const Pad& pad) { return pad.name.empty(); })) return unused;
  return first([](const Pad&) { return true; });
}

PadDescription description_of(const std::string& text) {
  PadDescription read;
  std::string* const lines[] = {&read.guid, &read.serial, &read.name, &read.labels, &read.abilities};
  std::size_t at = 0;
  for (std::string* const line : lines) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    *line = text.substr(at, end - at);
    at = std::min(end + 1, text.size());
  }
  if (read.name.empty()) read.name = "unnamed";
  return read;
}

void plug_in(std::int32_t device, const PadDescription& of) {
  if (find_pad(device) != nullptr) return;
  Pad* const pad = place_for(of);
  if (pad == nullptr) {
    part().left_out.push_back(device);
    return log_warning("there are " + std::to_string(kPads) + " gamepads already: " + of.name + " takes no part");
  }
  pad->is_connected = pad->was_plugged = true;
  pad->device = device;
  pad->guid = of.guid;
  pad->serial = of.serial;
  pad->name = of.name;
  pad->labels = of.labels;
  pad->abilities = of.abilities;
  pad->complaints = 0;
}

void let_go(Pad& pad) {
  for (Switch& button : pad.buttons) button.turn(false);
  pad.axes.fill(0);
  pad.sensors.fill(0);
}

void unplug(Pad& pad) {
  let_go(pad);
  pad.is_connected = false;
  pad.was_unplugged = true;
  pad.device = -1;
  for (PadVibration* const each : {&pad.body, &pad.triggers}) *each = {0, 0, 0, each->asked + 1};
}

void plug_out(std::int32_t device) {
  std::vector<std::int32_t>& left_out = part().left_out;
  left_out.erase(std::remove_if(left_out.begin(), left_out.end(), [&](std::int32_t each) { return device == -1 || each == device; }),
                 left_out.end());
  for (Pad& pad : gamepads()) {
    if (pad.is_connected && (device == -1 || pad.device == device)) unplug(pad);
  }
}

void turn_button(Pad& pad, int button, bool down) {
  Switch& each = pad.buttons.data()[button];
  const std::uint32_t before = each.waiting + (each.pressed ? 1 : 0);
  each.turn(down);
  if (down && each.waiting + (each.pressed ? 1 : 0) > before) pad.used = ++input_state().uses;
}

// Down from the one threshold on, up below the other.
void turn_axis(Pad& pad, int button, double position, const PadAxisSettings& settings) {
  const Switch& each = pad.buttons.data()[button];
  const bool is_down = each.down != (each.waiting % 2 == 1);
  turn_button(pad, button, position >= (is_down ? settings.release : settings.press));
}

// A number in its range; false when it is none.
bool make_sound(Pad& pad, double& value, double furthest, const std::string& what) {
  if (!std::isfinite(value)) {
    complain(pad, kNoNumber, "sends no number for " + what + "; that is ignored");
    return false;
  }
  if (std::fabs(value) > furthest * kFurthest) {
    complain(pad, kTooFar, "sends more than there can be for " + what + "; that counts as the most");
  }
  value = std::clamp(value, -furthest, furthest);
  return true;
}

void move_axis(Pad& pad, int axis, double position) {
  if (axis < 0 || axis >= kPadAxes)
    return complain(pad, kUnknownAxis, "sends axis " + std::to_string(axis) + ", which no gamepad has; that is ignored");
  if (!make_sound(pad, position, 1, std::string(kAxisNames[axis]))) return;
  if (axis >= kStickAxes) position = std::max(position, 0.0);
  pad.axes.data()[axis] = position;
  const PadAxisSettings& settings = pad.settings.data()[axis];
  if (axis >= kStickAxes) return turn_axis(pad, kPadTriggers + axis - kStickAxes, position, settings);
  turn_axis(pad, kPadDirections + axis * 2, -position, settings);
  turn_axis(pad, kPadDirections + axis * 2 + 1, position, settings);
}

void press_button(Pad& pad, int button, bool down) {
  if (button < 0 || button >= kPadTrueButtons)
    return complain(pad, kUnknownButton, "sends button " + std::to_string(button) + ", which no gamepad has; that is ignored");
  turn_button(pad, button, down);
}

void move_sensor(Pad& pad, int axis, double value) {
  constexpr double kFastest = 1e5;  // degrees a second, and g: far more than hands do
  if (axis < 0 || axis >= kPadSensors)
    return complain(pad, kUnknownSensor, "sends sensor " + std::to_string(axis) + ", which no gamepad has; that is ignored");
  if (make_sound(pad, value, kFastest, "its sensors")) pad.sensors.data()[axis] = value;
}

void push_of_pad(InputEvent::Type type, std::int32_t device, std::int32_t value, double x, std::string text = "") {
  InputEvent event;
  event.type = type;
  event.code = device;
  event.value = value;
  event.x = x;
  event.text = std::move(text);
  push_input(event);
}

}  // namespace

PadPlaces& gamepads() { return part().places; }

std::string pad_text(const PadDescription& of) {
  std::string text;
  for (const std::string* const line : {&of.guid, &of.serial, &of.name, &of.labels, &of.abilities}) {
    std::string kept = *line;
    std::replace(kept.begin(), kept.end(), '\n', ' ');
    text += kept + "\n";
  }
  return text;
}

void push_pad(std::int32_t device, const PadDescription& of) { push_of_pad(InputEvent::Type::kPad, device, 1, 0, pad_text(of)); }
void push_pad_gone(std::int32_t device) { push_of_pad(InputEvent::Type::kPad, device, 0, 0); }
void push_pad_button(std::int32_t device, int button, bool down) {
  push_of_pad(InputEvent::Type::kPadButton, device, button, down ? 1 : 0);
}
void push_pad_axis(std::int32_t device, int axis, double position) { push_of_pad(InputEvent::Type::kPadAxis, device, axis, position); }
void push_pad_sensor(std::int32_t device, int axis, double value) { push_of_pad(InputEvent::Type::kPadSensor, device, axis, value); }

double pad_axis(const Pad& pad, int axis) {
  const std::size_t at = static_cast<std::size_t>(axis), stick = at / 2 * 2;
  const PadAxisSettings& settings = pad.settings.at(at);
  const double position = pad.axes.at(at);
  const double distance =
      axis >= kStickAxes ? position : elementary::sqrt(pad.axes[stick] * pad.axes[stick] + pad.axes[stick + 1] * pad.axes[stick + 1]);
  const double share = std::clamp((distance - settings.inner) / (settings.outer - settings.inner), 0.0, 1.0);
  if (share == 0) return 0;
  return position / distance * (settings.exponent == 1 ? share : elementary::pow(share, settings.exponent));
}

std::string_view pad_button_place(int button) { return button >= 0 && button < kPadButtons ? kPlaceNames[button] : std::string_view(); }

int pad_button_of(std::string_view place) {
  const auto found = std::find(std::begin(kPlaceNames), std::end(kPlaceNames), place);
  return found != std::end(kPlaceNames) ? static_cast<int>(found - std::begin(kPlaceNames)) : -1;
}

std::string pad_button_label(std::string_view labels, int button) {
  const auto found = std::find_if(std::begin(kLabels), std::end(kLabels), [&](const Label& each) { return each.button == button; });
  if (found != std::end(kLabels)) {
    if (labels == "letters") return found->letters;
    if (labels == "swapped letters") return found->swapped;
    if (labels == "shapes") return found->shapes;
  }
  return std::string(pad_button_place(button));
}

std::string_view pad_axis_name(int axis) { return axis >= 0 && axis < kPadAxes ? kAxisNames[axis] : std::string_view(); }

// Pads go; how a place is set stays.
void swap_gamepads(int first, int second) {
  Pad& one = gamepads().at(static_cast<std::size_t>(first));
  Pad& other = gamepads().at(static_cast<std::size_t>(second));
  std::swap(one, other);
  std::swap(one.settings, other.settings);
  std::swap(one.player, other.player);
}

void begin_gamepads_frame() {
  for (Pad& pad : gamepads()) {
    pad.was_plugged = pad.was_unplugged = false;
    for (Switch& button : pad.buttons) button.begin_frame();
  }
}

void apply_pad_event(const InputEvent& event) {
  if (event.type == InputEvent::Type::kPad)
    return event.value != 0 ? plug_in(event.code, description_of(event.text)) : plug_out(event.code);
  Pad* const pad = find_pad(event.code);
  if (pad == nullptr) {
    const std::vector<std::int32_t>& left_out = part().left_out;
    const bool is_known = std::find(left_out.begin(), left_out.end(), event.code) != left_out.end();
    if (!is_known && !std::exchange(part().heard_strangers, true))
      log_warning("gamepad number " + std::to_string(event.code) + " sends, but was not plugged in; that is ignored");
    return;
  }
  switch (event.type) {
    case InputEvent::Type::kPadButton: return press_button(*pad, event.value, event.x != 0);
    case InputEvent::Type::kPadAxis: return move_axis(*pad, event.value, event.x);
    case InputEvent::Type::kPadSensor: return move_sensor(*pad, event.value, event.x);
    default: return;
  }
}

void release_gamepads() {
  for (Pad& pad : gamepads()) let_go(pad);
}

void advance_gamepads(std::int64_t microseconds) {
  for (Pad& pad : gamepads()) {
    for (PadVibration* const each : {&pad.body, &pad.triggers}) {
      if (each->seconds <= 0) continue;
      each->seconds -= static_cast<double>(microseconds) / 1e6;
      if (each->seconds <= 0) *each = {0, 0, 0, each->asked};
    }
  }
}

}  // namespace arena
