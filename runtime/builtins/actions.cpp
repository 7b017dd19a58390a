// Actions.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/actions.h"

#include <algorithm>

#include "runtime/arrays_structs/array.h"
#include "runtime/builtins/implement.h"
#include "runtime/input/actions.h"
#include "runtime/input/gamepads.h"

namespace arena {
namespace {

// Null for a player that is none, which is reported.
PlayerActions* player_at(std::int32_t player) {
  if (player >= 0 && player < kPlayers) return &action_tables().data()[player];
  report_invalid_resource(1, "player", player, kPlayers);
  return nullptr;
}

// False after a report.
bool check_input(std::string_view text, ActionInput& into) {
  const std::optional<ActionInput> found = input_of(text);
  if (!found) return report_error(messages::kNoInput, current_builtin_name(), 3, text), false;
  into = *found;
  return true;
}

void bind(std::int32_t player, std::string_view action, std::string_view input, std::optional<std::string_view> direction) {
  PlayerActions* const of = player_at(player);
  if (of == nullptr) return;
  if (!is_action_name(action))
    return report_error(messages::kActionName, current_builtin_name(), 2, static_cast<std::int32_t>(kLongestActionName));
  ActionInput bound;
  if (!check_input(input, bound)) return;
  const std::optional<Way> way = way_of(direction.value_or(""));
  if (!way) return report_error(messages::kNoDirection, current_builtin_name(), 4, *direction);
  bound.way = *way;
  std::size_t count = 0;
  for (const auto& [name, inputs] : of->inputs) count += inputs.size();
  if (count >= kMostInputs) return report_error(messages::kTooManyActions, current_builtin_name(), static_cast<std::int32_t>(kMostInputs));
  std::vector<ActionInput>& all = of->inputs[std::string(action)];
  if (std::find(all.begin(), all.end(), bound) == all.end()) all.push_back(bound);
}

void unbind(std::int32_t player, std::string_view action, std::optional<std::string_view> input) {
  PlayerActions* const of = player_at(player);
  if (of == nullptr) return;
  const auto found = of->inputs.find(std::string(action));
  ActionInput gone;
  if (input && !check_input(*input, gone)) return;
  if (found == of->inputs.end()) return;
  if (input) std::erase_if(found->second, [&](const ActionInput& each) { return each.is_same_input(gone); });
  if (!input || found->second.empty()) of->inputs.erase(found);
}

ActionState state_of(std::int32_t player, std::string_view action) {
  return player_at(player) != nullptr ? action_state(player, action) : ActionState();
}
template <auto ActionState::*which>
auto answer(std::int32_t player, std::string_view action) {
  return state_of(player, action).*which;
}

bool exists(std::int32_t player, std::string_view action) {
  const PlayerActions* const of = player_at(player);
  return of != nullptr && of->inputs.contains(std::string(action));
}
RValue get_inputs(std::int32_t player, std::string_view action) {
  RValue made = make_array();
  const PlayerActions* const of = player_at(player);
  if (of == nullptr) return made;
  const auto found = of->inputs.find(std::string(action));
  if (found == of->inputs.end()) return made;
  for (const ActionInput& each : found->second) {
    const std::string way = each.way == Way::kNone ? "" : " > " + std::string(way_text(each.way));
    array_append(*made.array, make_string(input_text(each) + way));
  }
  return made;
}
RValue get_names(std::int32_t player) {
  RValue made = make_array();
  const PlayerActions* const of = player_at(player);
  if (of == nullptr) return made;
  for (const auto& [name, inputs] : of->inputs) array_append(*made.array, make_string(name));
  return made;
}

std::string get_device(std::int32_t player) { return player_at(player) != nullptr && uses_pad(player) ? "pad" : "keyboard"; }
std::int32_t get_pad(std::int32_t player) {
  const PlayerActions* const of = player_at(player);
  return of != nullptr ? of->pad : -1;
}
void set_pad(std::int32_t player, std::int32_t pad) {
  PlayerActions* const of = player_at(player);
  if (of == nullptr) return;
  if (pad < -1 || pad >= kPads) return report_invalid_resource(2, "gamepad", pad, kPads);
  of->pad = pad;
}

std::string listen(std::optional<std::int32_t> player) {
  if (player && player_at(*player) == nullptr) return "";
  const std::optional<ActionInput> heard = heard_input(player);
  return heard ? input_text(*heard) : "";
}
std::string prompt(std::int32_t player, std::string_view action) {
  return player_at(player) != nullptr ? action_prompt(player, action).text : "";
}
std::string prompt_picture(std::int32_t player, std::string_view action) {
  return player_at(player) != nullptr ? action_prompt(player, action).picture : "";
}

std::string get_text() { return actions_text(); }
std::string set_text(std::string_view text) {
  std::string problem;
  set_actions_text(text, problem);
  return problem;
}

constexpr Implementation kRows[] = {
    implement<script::action_bind, bind>,
    implement<script::action_check, answer<&ActionState::down>>,
    implement<script::action_check_pressed, answer<&ActionState::pressed>>,
    implement<script::action_check_released, answer<&ActionState::released>>,
    implement<script::action_exists, exists>,
    implement<script::action_get_device, get_device>,
    implement<script::action_get_inputs, get_inputs>,
    implement<script::action_get_names, get_names>,
    implement<script::action_get_pad, get_pad>,
    implement<script::action_get_text, get_text>,
    implement<script::action_get_value, answer<&ActionState::value>>,
    implement<script::action_get_x, answer<&ActionState::x>>,
    implement<script::action_get_y, answer<&ActionState::y>>,
    implement<script::action_listen, listen>,
    implement<script::action_prompt, prompt>,
    implement<script::action_prompt_picture, prompt_picture>,
    implement<script::action_set_pad, set_pad>,
    implement<script::action_set_text, set_text>,
    implement<script::action_unbind, unbind>,
};
const BuiltinTable table(
    "Actions",
    "What players want to do, by name, and the inputs that say so: a table for each player, changed at run time. Inputs are \"key \" and "
    "what a "
    "US keyboard has there or # and a key code, \"mouse \" and left, right, middle, back, forward, \"wheel \" and up, down, left, right, "
    "\"pad \" and "
    "where the button lies (south, left trigger, left stick up, left stick pressed ...), \"pad left stick\" and \"pad right stick\" for "
    "both axes. docs/input.md shows how to use them.",
    kRows);

}  // namespace
}  // namespace arena
