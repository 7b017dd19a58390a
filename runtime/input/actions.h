#pragma once
// Actions: what a player wants ("move", "fire"), and the inputs that say so. A table for each player, changed at run time, that can be
// written as text and read again.
//
// Always true: what an action answers follows from the tables and from what keys, mouse and pads do in this frame; nothing else is kept.
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "runtime/session/state.h"

namespace arena {

inline constexpr int kPlayers = 8;
inline constexpr std::size_t kLongestActionName = 64;  // bytes
inline constexpr std::size_t kMostInputs = 1024;       // of a player's actions together

enum class InputDevice : std::uint8_t { kKey, kMouse, kWheel, kPadButton, kPadStick };
// Where an input leads when it is a way of an action with two axes.
enum class Way : std::uint8_t { kNone, kLeft, kRight, kUp, kDown };

struct ActionInput {
  InputDevice device = InputDevice::kKey;
  std::int32_t code = 0;  // key, mouse button, 0 up 1 down 2 left 3 right of the wheel, button of the pad, 0 left and 1 right stick
  Way way = Way::kNone;
  static constexpr auto fields() {
    return std::tuple(field("device", &ActionInput::device), field("code", &ActionInput::code), field("way", &ActionInput::way));
  }
  bool is_same_input(const ActionInput& other) const { return device == other.device && code == other.code; }
  friend bool operator==(const ActionInput&, const ActionInput&) = default;
};

struct PlayerActions {
  std::map<std::string, std::vector<ActionInput>> inputs;  // by the actions' names; none without an input
  std::int32_t pad = 0;                                    // place of the player's gamepad; -1: none
  static constexpr auto fields() { return std::tuple(field("inputs", &PlayerActions::inputs), field("pad", &PlayerActions::pad)); }
};
using ActionTables = std::array<PlayerActions, kPlayers>;
ActionTables& action_tables();

// "key A", "mouse left", "wheel up", "pad south", "pad left stick": none for any other text. Keys are named as on a US keyboard, or by
// number: "key #112".
std::optional<ActionInput> input_of(std::string_view text);
std::string input_text(const ActionInput& input);  // without the way
std::optional<Way> way_of(std::string_view text);
std::string_view way_text(Way way);  // "" for none
bool is_action_name(std::string_view name);

// What the inputs of an action do in this frame.
struct ActionState {
  bool down = false, pressed = false, released = false;
  double value = 0, x = 0, y = 0;
};
ActionState action_state(int player, std::string_view action);

// Whether the player used a pad last; one who used nothing yet: keyboard and mouse, where something is bound to them.
bool uses_pad(int player);
// What is printed on the first input that the action has on the device used last, for a way: "" when it has none.
struct ActionPrompt {
  std::string text, picture;
};
ActionPrompt action_prompt(int player, std::string_view action);
// An input that was pressed in this frame, by anyone or by a player; a stick counts as its directions.
std::optional<ActionInput> heard_input(std::optional<int> player);

// All tables as lines "player <tab> action <tab> input <tab> way", sorted by player and action.
std::string actions_text();
// False with one sentence in `problem` for a text that is none; nothing changes then.
bool set_actions_text(std::string_view text, std::string& problem);

}  // namespace arena
