#include "runtime/input/actions.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <utility>

#include "runtime/input/gamepads.h"
#include "runtime/input/input_state.h"

namespace arena {
namespace {

struct Actions {
  ActionTables tables = own_pads();

  static ActionTables own_pads() {
    ActionTables made;
    for (int player = 0; player < kPlayers; ++player) made[static_cast<std::size_t>(player)].pad = player;
    return made;
  }
  static constexpr auto fields() { return std::tuple(field("tables", &Actions::tables)); }
};
const StatePart<Actions> part{PartLevel::kWorld, "actions"};

constexpr std::string_view kButtonNames[kButtons] = {"", "left", "right", "middle", "back", "forward"};
constexpr std::string_view kWheelNames[] = {"up", "down", "left", "right"};
constexpr std::string_view kWayNames[] = {"", "left", "right", "up", "down"};
constexpr std::string_view kStickNames[] = {"left stick", "right stick"};
constexpr int kSticksPressed = 7;  // the buttons that bear the sticks' names
constexpr std::string_view kPressed = " pressed";

template <class Names>
int index_in(const Names& names, std::string_view name) {
  const auto found = std::find(std::begin(names), std::end(names), name);
  return found != std::end(names) ? static_cast<int>(found - std::begin(names)) : -1;
}

int key_of(std::string_view name) {
  for (int code = kVkAnyKey + 1; code < kKeys; ++code) {
    if (us_key_name(code) == name) return code;
  }
  if (!name.starts_with('#')) return -1;
  int code = 0;
  const auto [end, failure] = std::from_chars(name.data() + 1, name.data() + name.size(), code);
  const bool is_number = failure == std::errc() && end == name.data() + name.size();
  return is_number && code > kVkAnyKey && code < kKeys ? code : -1;
}
std::string text_of_key(int code) {
  const std::string name = us_key_name(code);
  return name.empty() ? "#" + std::to_string(code) : name;
}

// "left stick" is the stick, "left stick pressed" its button.
std::optional<ActionInput> pad_input_of(std::string_view name) {
  if (const int stick = index_in(kStickNames, name); stick >= 0) return ActionInput{InputDevice::kPadStick, stick, Way::kNone};
  if (name.ends_with(kPressed)) {
    const int stick = index_in(kStickNames, name.substr(0, name.size() - kPressed.size()));
    if (stick >= 0) return ActionInput{InputDevice::kPadButton, kSticksPressed + stick, Way::kNone};
    return std::nullopt;
  }
  const int button = pad_button_of(name);
  if (button < 0) return std::nullopt;
  return ActionInput{InputDevice::kPadButton, button, Way::kNone};
}
std::string pad_button_text(int button) {
  const bool is_stick = button == kSticksPressed || button == kSticksPressed + 1;
  return std::string(pad_button_place(button)) + (is_stick ? std::string(kPressed) : "");
}

bool is_of_pad(const ActionInput& input) { return input.device == InputDevice::kPadButton || input.device == InputDevice::kPadStick; }

PlayerActions& table_of(int player) { return action_tables().at(static_cast<std::size_t>(player)); }
const Pad* pad_of(int player) {
  const std::int32_t place = table_of(player).pad;
  return place >= 0 && place < kPads ? &gamepads().data()[place] : nullptr;
}
std::span<const ActionInput> inputs_of(int player, std::string_view action) {
  const auto& all = table_of(player).inputs;
  const auto found = all.find(std::string(action));
  return found != all.end() ? std::span<const ActionInput>(found->second) : std::span<const ActionInput>();
}

std::int32_t wheel_steps(int direction) {
  const InputState& input = input_state();
  const std::int32_t steps[] = {input.wheel_up, input.wheel_down, input.wheel_left, input.wheel_right};
  return steps[direction];
}

// What an input does that is down or up: its switch, and how far it is pressed.
struct Pressed {
  Switch edges;
  double value = 0;
};

Pressed wheel_turned(int direction) {
  const std::int32_t steps = wheel_steps(direction);
  Pressed turned;
  turned.edges.pressed = turned.edges.released = steps > 0;  // it lets go of each step at once
  turned.value = steps;
  return turned;
}

Pressed pad_pressed(const Pad& pad, int button) {
  Pressed found{pad.buttons.data()[button], 0};
  found.value = found.edges.down ? 1 : 0;
  if (button >= kPadTriggers && button < kPadDirections) found.value = pad_axis(pad, kStickAxes + button - kPadTriggers);
  if (button >= kPadDirections) {
    const int at = button - kPadDirections;
    const double position = pad_axis(pad, at / 2);
    found.value = std::max(at % 2 == 0 ? -position : position, 0.0);
  }
  return found;
}

// A stick is down when one of its directions is.
Pressed stick_pressed(const Pad& pad, int stick) {
  Pressed all;
  bool was_held = false;
  for (int direction = 0; direction < 4; ++direction) {
    const Switch& each = pad.buttons.data()[kPadDirections + stick * 4 + direction];
    all.edges.down = all.edges.down || each.down;
    all.edges.pressed = all.edges.pressed || each.pressed;
    all.edges.released = all.edges.released || each.released;
    was_held = was_held || each.is_held_throughout();
  }
  if (was_held) all.edges.pressed = all.edges.released = false;
  return all;
}

Pressed pressed_by(const ActionInput& input, const Pad* pad) {
  const auto plain = [](const Switch& edges) { return Pressed{edges, edges.down ? 1.0 : 0.0}; };
  switch (input.device) {
    case InputDevice::kKey: return plain(input_state().keys.data()[input.code]);
    case InputDevice::kMouse: return plain(input_state().buttons.data()[input.code]);
    case InputDevice::kWheel: return wheel_turned(input.code);
    case InputDevice::kPadButton: return pad != nullptr ? pad_pressed(*pad, input.code) : Pressed();
    case InputDevice::kPadStick: return pad != nullptr ? stick_pressed(*pad, input.code) : Pressed();
  }
  return {};
}

ActionPrompt key_prompt(int code) {
  std::string picture = "key_" + text_of_key(code);
  std::replace(picture.begin(), picture.end(), ' ', '_');
  const std::string name = key_name(code);
  return {name.empty() ? text_of_key(code) : name, picture};
}

ActionPrompt prompt_of(const ActionInput& input, const Pad* pad) {
  ActionPrompt made;
  switch (input.device) {
    case InputDevice::kKey: return key_prompt(input.code);
    case InputDevice::kMouse:
      made = {"Mouse " + std::string(kButtonNames[input.code]), "mouse_" + std::string(kButtonNames[input.code])};
      break;
    case InputDevice::kWheel:
      made = {"Wheel " + std::string(kWheelNames[input.code]), "wheel_" + std::string(kWheelNames[input.code])};
      break;
    case InputDevice::kPadButton:
    case InputDevice::kPadStick: {
      const std::string labels = pad != nullptr ? pad->labels : "";
      const bool is_stick = input.device == InputDevice::kPadStick;
      const std::string place = is_stick ? std::string(kStickNames[input.code]) : pad_button_text(input.code);
      made = {is_stick ? place : pad_button_label(labels, input.code), "pad_" + (labels.empty() ? "" : labels + "_") + place};
      std::replace(made.picture.begin(), made.picture.end(), ' ', '_');
      break;
    }
  }
  return made;
}

std::string line_problem(std::size_t line, const std::string& what) { return "line " + std::to_string(line) + " of the actions: " + what; }

// One line, as actions_text writes it; "" or what is wrong.
std::string read_line(std::string_view line, ActionTables& into) {
  std::string_view columns[4];
  std::size_t count = 0;
  for (;; ++count) {
    if (count == 4) return "there are more than four columns";
    const std::size_t tab = line.find('\t');
    columns[count] = line.substr(0, tab);
    if (tab == std::string_view::npos) break;
    line.remove_prefix(tab + 1);
  }
  if (count < 2) return "there are less than three columns";
  if (columns[0].size() != 1 || columns[0][0] < '0' || columns[0][0] >= '0' + kPlayers) return "the player is none from 0 to 7";
  if (!is_action_name(columns[1])) return "the action has no name, or one that is too long";
  std::optional<ActionInput> input = input_of(columns[2]);
  if (!input) return "the input is none";
  const std::optional<Way> way = way_of(columns[3]);
  if (!way) return "the direction is none";
  input->way = *way;
  PlayerActions& of = into[static_cast<std::size_t>(columns[0][0] - '0')];
  std::size_t bound = 0;
  for (const auto& [name, inputs] : of.inputs) bound += inputs.size();
  if (bound >= kMostInputs) return "the player has too many inputs";
  of.inputs[std::string(columns[1])].push_back(*input);
  return "";
}

}  // namespace

ActionTables& action_tables() { return part().tables; }

std::optional<ActionInput> input_of(std::string_view text) {
  const std::size_t space = text.find(' ');
  if (space == std::string_view::npos) return std::nullopt;
  const std::string_view device = text.substr(0, space), name = text.substr(space + 1);
  if (device == "pad") return pad_input_of(name);
  int code = -1;
  InputDevice kind = InputDevice::kKey;
  if (device == "key") code = key_of(name);
  if (device == "mouse" && !name.empty()) kind = InputDevice::kMouse, code = index_in(kButtonNames, name);
  if (device == "wheel") kind = InputDevice::kWheel, code = index_in(kWheelNames, name);
  if (code < 0) return std::nullopt;
  return ActionInput{kind, code, Way::kNone};
}

std::string input_text(const ActionInput& input) {
  switch (input.device) {
    case InputDevice::kKey: return "key " + text_of_key(input.code);
    case InputDevice::kMouse: return "mouse " + std::string(kButtonNames[input.code]);
    case InputDevice::kWheel: return "wheel " + std::string(kWheelNames[input.code]);
    case InputDevice::kPadButton: return "pad " + pad_button_text(input.code);
    case InputDevice::kPadStick: return "pad " + std::string(kStickNames[input.code]);
  }
  return "";
}

std::optional<Way> way_of(std::string_view text) {
  const int way = index_in(kWayNames, text);
  return way >= 0 ? std::optional(static_cast<Way>(way)) : std::nullopt;
}
std::string_view way_text(Way way) { return kWayNames[static_cast<int>(way)]; }

bool is_action_name(std::string_view name) {
  return !name.empty() && name.size() <= kLongestActionName && name.find_first_of("\t\r\n") == std::string_view::npos;
}

ActionState action_state(int player, std::string_view action) {
  ActionState sum;
  bool is_held = false;
  const Pad* const pad = pad_of(player);
  for (const ActionInput& input : inputs_of(player, action)) {
    const Pressed found = pressed_by(input, pad);
    sum.down = sum.down || found.edges.down;
    sum.pressed = sum.pressed || found.edges.pressed;
    sum.released = sum.released || found.edges.released;
    is_held = is_held || found.edges.is_held_throughout();
    if (input.device == InputDevice::kPadStick && pad != nullptr) {
      sum.x += pad_axis(*pad, input.code * 2);
      sum.y += pad_axis(*pad, input.code * 2 + 1);
      continue;
    }
    sum.value = std::max(sum.value, found.value);
    if (input.way == Way::kLeft || input.way == Way::kRight) sum.x += input.way == Way::kRight ? found.value : -found.value;
    if (input.way == Way::kUp || input.way == Way::kDown) sum.y += input.way == Way::kDown ? found.value : -found.value;
  }
  if (is_held) sum.pressed = sum.released = false;
  sum.x = std::clamp(sum.x, -1.0, 1.0);
  sum.y = std::clamp(sum.y, -1.0, 1.0);
  return sum;
}

bool uses_pad(int player) {
  bool has_keys = false, has_pad = false;
  for (const auto& [name, inputs] : table_of(player).inputs) {
    for (const ActionInput& input : inputs) (is_of_pad(input) ? has_pad : has_keys) = true;
  }
  const Pad* const pad = pad_of(player);
  if (!has_keys || !has_pad || pad == nullptr) return has_pad && pad != nullptr;
  return pad->used > input_state().keyboard_used;
}

// Of an action with ways one input for each: "W A S D".
ActionPrompt action_prompt(int player, std::string_view action) {
  const bool wants_pad = uses_pad(player);
  ActionPrompt made;
  std::vector<Way> ways;
  for (const ActionInput& input : inputs_of(player, action)) {
    if (is_of_pad(input) != wants_pad || std::find(ways.begin(), ways.end(), input.way) != ways.end()) continue;
    const ActionPrompt next = prompt_of(input, pad_of(player));
    if (ways.empty()) {
      made = next;
    } else {
      made.text += " " + next.text;
    }
    ways.push_back(input.way);
    if (ways.front() == Way::kNone) break;
  }
  return made;
}

std::optional<ActionInput> heard_input(std::optional<int> player) {
  const InputState& input = input_state();
  for (int code = kVkAnyKey + 1; code < kKeys; ++code) {
    if (input.keys.data()[code].pressed) return ActionInput{InputDevice::kKey, code, Way::kNone};
  }
  for (int button = 1; button < kButtons; ++button) {
    if (input.buttons.data()[button].pressed) return ActionInput{InputDevice::kMouse, button, Way::kNone};
  }
  for (int direction = 0; direction < 4; ++direction) {
    if (wheel_steps(direction) > 0) return ActionInput{InputDevice::kWheel, direction, Way::kNone};
  }
  for (const Pad& pad : gamepads()) {
    if (player && pad_of(*player) != &pad) continue;
    for (int button = 0; button < kPadButtons; ++button) {
      if (pad.buttons.data()[button].pressed) return ActionInput{InputDevice::kPadButton, button, Way::kNone};
    }
  }
  return std::nullopt;
}

std::string actions_text() {
  std::string text;
  for (int player = 0; player < kPlayers; ++player) {
    for (const auto& [name, inputs] : table_of(player).inputs) {
      for (const ActionInput& input : inputs) {
        text += std::to_string(player) + "\t" + name + "\t" + input_text(input);
        if (input.way != Way::kNone) text += "\t" + std::string(way_text(input.way));
        text += "\n";
      }
    }
  }
  return text;
}

bool set_actions_text(std::string_view text, std::string& problem) {
  ActionTables read = Actions::own_pads();
  for (int player = 0; player < kPlayers; ++player) read[static_cast<std::size_t>(player)].pad = table_of(player).pad;
  for (std::size_t line = 1; !text.empty(); ++line) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view one = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (one.ends_with('\r')) one.remove_suffix(1);
    if (one.empty()) continue;
    if (const std::string what = read_line(one, read); !what.empty()) return problem = line_problem(line, what), false;
  }
  action_tables() = std::move(read);
  return true;
}

}  // namespace arena
