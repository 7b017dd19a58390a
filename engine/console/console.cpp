#include "engine/console/console.h"

#include <limits>

#include "engine/audio/audio.h"
#include "engine/console/draw_calls.h"
#include "engine/console/evaluator.h"
#include "engine/console/past.h"
#include "engine/console/request.h"
#include "engine/console/value_json.h"
#include "engine/draw/draw_service.h"
#include "engine/host/game.h"
#include "engine/host/state_hash.h"
#include "runtime/arrays_structs/holder.h"
#include "runtime/builtins/describe.h"
#include "runtime/input/gamepads.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/log.h"
#include "runtime/reports/report.h"
#include "runtime/session/session.h"
#include "runtime/values/number_text.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::console {
namespace {

constexpr double kDefaultFrame = 1.0 / 60, kLongestFrame = 3600;  // seconds
constexpr std::int64_t kMostFrames = 10000000;                    // in one request
constexpr std::size_t kMostErrors = 1000;                         // shown of one step
constexpr std::size_t kLongestComplaint = 1000;                   // bytes of what is said about a line: it may quote all of it

// The console's last value lives on until the next one.
class LastValue final : public Holder {
 public:
  LastValue() : Holder(Keeps::kToolState) {}
  void visit_values(ValueVisitor& visitor) override { visitor(value); }
  void let_go() override { value = RValue(); }
  RValue value;
};

struct StepErrors {
  json shown = json::array();
  std::int64_t more = 0;
  host::Game* game = nullptr;  // of the console

  void clear() {
    shown = json::array();
    more = 0;
  }
};
const Part<StepErrors> step_errors{PartLevel::kHost, "console: errors of a step"};

void keep_error(const WBKSLException& error) {
  draw::restore_draw_state();
  log_message("ERROR: " + error.message());
  if (host::FrameListener* const listener = step_errors().game->listener(); listener != nullptr)
    listener->console_says("! " + error.message());
  if (step_errors().shown.size() >= kMostErrors) {
    ++step_errors().more;
  } else {
    step_errors().shown.push_back({{"error", error.message()}, {"report", error.report()}});
  }
}

std::int32_t whole_number(const json& request, const char* key) {
  return static_cast<std::int32_t>(
      whole(request, key, "a whole number", std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

WBObjectBase* instance_argument(const json& request, const char* key) {
  if (!request.contains(key) || request[key].is_null()) return nullptr;
  CInstance* found = resolve_instance(whole_number(request, key));
  if (found == nullptr) throw RequestError{std::string("\"") + key + "\" names no instance: " + request[key].dump()};
  return found;
}

json sounds_json() {
  json list = json::array();
  for (const audio::Voice& voice : audio::audio().take_started()) {
    list.push_back({{"sound", voice.sound},
                    {"handle", voice.handle},
                    {"x", voice.is_positional ? real_to_json(voice.x) : json()},
                    {"y", voice.is_positional ? real_to_json(voice.y) : json()},
                    {"gain", real_to_json(voice.gain)},
                    {"pitch", real_to_json(voice.pitch)},
                    {"loop", voice.loop}});
  }
  return {{"sounds", std::move(list)}};
}

json instances_json(const json& request) {
  const json& named = request["instances"];
  const std::int32_t object = named.is_string() ? object_types().find(named.get<std::string>()) : whole_number(request, "instances");
  if (!object_types().has(object)) throw RequestError{"there is no object " + named.dump()};
  json ids = json::array();
  for (const CInstance* instance : object_types().at(object).instances) {
    if (instance->is_alive) ids.push_back(instance->id);
  }
  return {{"instances", std::move(ids)}};
}

json stages_json() {
  json stages = json::object();
  for (int stage = 0; stage < kStages; ++stage) stages[kStageNames[stage]] = real_to_json(last_stage_times().stages[stage]);
  return {{"stages", std::move(stages)}};
}

json help_json(const json& request) {
  if (!request["help"].is_string()) throw RequestError{"\"help\" must be a text: a name, with * and ? for what is left open"};
  json found = json::array();
  for (const BuiltinRow* row : builtins_like(request["help"].get<std::string>())) {
    json parameters = json::array();
    for (const Parameter& parameter : row->parameters()) {
      json shown = {{"name", parameter.name}, {"kind", parameter.kind.word}};
      if (parameter.kind.is_bounded()) shown["range"] = {parameter.kind.low, parameter.kind.high};
      if (parameter.kind.may_be_left_out) shown["optional"] = true;
      if (parameter.kind.takes_the_rest) shown["rest"] = true;
      if (parameter.kind.has_default) shown["default"] = json::parse(default_text(parameter.kind));
      parameters.push_back(std::move(shown));
    }
    found.push_back({{"name", row->text}, {"parameters", std::move(parameters)}, {"result", row->gives}, {"sentence", row->sentence}});
  }
  return {{"help", std::move(found)}};
}

// Of the work, or of how it failed.
template <class Work>
json reply_to(Work work) {
  const auto complaint = [](const std::string& about) -> json {
    return {{"error", about.size() > kLongestComplaint ? about.substr(0, kLongestComplaint) + "..." : about}, {"report", ""}};
  };
  try {
    return work();
  } catch (const WBKSLException& error) {
    return {{"error", error.message()}, {"report", error.report()}};
  } catch (const ParseError& error) {
    return complaint(error.message);
  } catch (const RequestError& error) {
    return complaint(error.message);
  } catch (const std::bad_alloc&) {
    return complaint(messages::kOutOfMemory.format);
  } catch (const std::exception& error) {
    return complaint(error.what());
  }
}

void turn_wheel(std::int32_t steps) {
  InputEvent event;
  event.type = InputEvent::Type::kWheel;
  event.code = steps;
  push_input(event);
}

std::string hex(std::uint64_t number) {
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4) digits += "0123456789abcdef"[number >> shift & 15];
  return digits;
}

json hash_json(const json& request) {
  json reply = {{"hash", hex(host::state_hash())}};
  if (!request.contains("parts") || !flag(request, "parts")) return reply;
  json parts = json::object();
  for (const host::StateFigure& figure : host::state_figures()) parts[figure.name] = hex(figure.hash);
  reply["parts"] = std::move(parts);
  return reply;
}

}  // namespace

struct Console::State {
  host::Game& game;
  StepHooks hooks;
  LastValue last{};
  bool quit = false, holds_clock = false;
  Past past{game, [this](const json& request) { eval_again(request); }};

  // Fails as it did.
  void eval_again(const json& request) {
    try {
      eval(request);
    } catch (const WBKSLException&) {
    } catch (const ParseError&) {
    } catch (const RequestError&) {
    } catch (const std::exception&) {
    }
  }

  json eval(const json& request) {
    const std::string statements = text(request, "eval");
    past.note_evaluation(request);
    last.value = RValue();
    last.value = evaluate(statements, instance_argument(request, "self"), instance_argument(request, "other"));
    const std::string text = last.value.is_unset() ? "unset" : to_text(last.value);  // fails for what is too large to show
    return {{"kind", type_name(last.value)}, {"value", value_to_json(last.value)}, {"text", text}};
  }

  json place() const {
    return {{"frame", game_clock().frame}, {"room", world().room_definition(world().room).name}, {"ended", world().ended}};
  }

  json step(const json& request) {
    const std::int64_t frames = whole(request, "step", "a whole number of frames", 0, kMostFrames);
    const double seconds = request.contains("dt") ? number(request, "dt", "a number of seconds", 0, kLongestFrame) : kDefaultFrame;
    step_errors().clear();
    for (std::int64_t left = frames; left > 0 && !world().ended; --left) {
      if (hooks.must_end && hooks.must_end()) break;
      if (hooks.before_frame) hooks.before_frame();
      const FrameDrawCalls kept(left == 1);
      past.run_frame(static_cast<std::int64_t>(seconds * 1e6 + 0.5));
    }
    holds_clock = holds_clock || frames > 0;
    json reply = place();
    if (!step_errors().shown.empty()) reply["errors"] = step_errors().shown;
    if (step_errors().more > 0) reply["more_errors"] = step_errors().more;
    return reply;
  }

  json pointer(const json& request) {
    const json& place = request["mouse"];
    if (!place.is_array() || place.size() != 2 || !place[0].is_number() || !place[1].is_number())
      throw RequestError{"\"mouse\" must be [x, y]"};
    const bool gui = request.contains("gui") && flag(request, "gui");
    push_pointer(gui ? PointerSpace::kGui : PointerSpace::kRoom, place[0].get<double>(), place[1].get<double>());
    return {{"ok", true}};
  }

  // {"pad": 1, "plugged": true, "name": "A pad"}, {"pad": 1, "button": 0, "down": true}, {"pad": 1, "axis": 0, "at": -0.5}: as the device
  // of that number would do it.
  json gamepad(const json& request) {
    const std::int32_t device = whole_number(request, "pad");
    if (request.contains("button")) {
      push_pad_button(device, whole_number(request, "button"), flag(request, "down"));
    } else if (request.contains("axis")) {
      push_pad_axis(device, whole_number(request, "axis"), number(request, "at", "a number from -1 to 1", -1, 1));
    } else if (flag(request, "plugged")) {
      const std::string name = request.contains("name") ? text(request, "name") : "Gamepad";
      push_pad(device, {"console", std::to_string(device), name, request.contains("labels") ? text(request, "labels") : "", ""});
    } else {
      push_pad_gone(device);
    }
    return {{"ok", true}};
  }

  json rewind(const json& request) {
    past.rewind(whole(request, "rewind", "a whole number of frames", 0, kMostRewound));
    step_errors().clear();  // of frames that were run again
    return place();
  }

  // A recording that runs along has the request, and a text of what comes of it.
  json eval_recorded(const json& request) {
    host::FrameListener* const listener = game.listener();
    if (listener == nullptr) return eval(request);
    listener->before_request(request.dump(-1, ' ', false, json::error_handler_t::replace));
    json reply = reply_to([&] { return eval(request); });
    listener->console_says(reply.contains("error") ? "! " + reply["error"].get<std::string>() : reply["text"].get<std::string>());
    return reply;
  }

  json perform(const json& request) {
    if (request.contains("eval")) return eval_recorded(request);
    if (request.contains("step")) return step(request);
    if (request.contains("snapshot")) return past.save(text(request, "snapshot")), place();
    if (request.contains("restore")) return past.restore(text(request, "restore")), place();
    if (request.contains("rewind")) return rewind(request);
    if (request.contains("pad")) return gamepad(request);
    if (request.contains("key")) return push_key(whole_number(request, "key"), flag(request, "down")), json{{"ok", true}};
    if (request.contains("mouse")) return pointer(request);
    if (request.contains("wheel")) return turn_wheel(whole_number(request, "wheel")), json{{"ok", true}};
    if (request.contains("button")) return push_button(whole_number(request, "button"), flag(request, "down")), json{{"ok", true}};
    if (request.contains("instances")) return instances_json(request);
    if (request.contains("draws")) return draw_calls_json();
    if (request.contains("sounds")) return sounds_json();
    if (request.contains("log")) return {{"log", take_log()}};
    if (request.contains("hash")) return hash_json(request);
    if (request.contains("stages")) return stages_json();
    if (request.contains("help")) return help_json(request);
    if (request.contains("run")) return holds_clock = !flag(request, "run"), json{{"ok", true}};
    if (request.contains("quit")) return quit = true, json{{"ok", true}};
    throw RequestError{
        "unknown request; known are eval, step, run, snapshot, restore, rewind, key, mouse, wheel, button, pad, instances, draws, sounds, "
        "log, "
        "hash, "
        "stages, help, quit"};
  }
};

Console::Console(host::Game& game, StepHooks hooks) {
  const SessionScope scope(game.session());
  state_.reset(new State{game, std::move(hooks)});
  step_errors().game = &game;
  set_script_error_sink(keep_error);
}

Console::~Console() {
  const SessionScope scope(state_->game.session());
  set_script_error_sink(nullptr);
  state_.reset();
}

bool Console::has_quit() const { return state_->quit; }
bool Console::holds_clock() const { return state_->holds_clock; }

std::string Console::answer(const std::string& line) {
  const SessionScope scope(state_->game.session());
  return reply_to([&] { return state_->perform(parse_request(line)); }).dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace arena::console
