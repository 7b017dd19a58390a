#include "engine/console/console.h"

#include <nlohmann/json.hpp>

#include "engine/audio/audio.h"
#include "engine/console/evaluator.h"
#include "engine/console/state_hash.h"
#include "engine/console/value_json.h"
#include "engine/draw/draw_service.h"
#include "engine/host/game.h"
#include "runtime/arrays_structs/holder.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/input_state.h"
#include "runtime/instances_loop/resolve.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/number_text.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/log.h"
#include "runtime/variables_calls/report.h"

namespace arena::console {
namespace {

using json = nlohmann::ordered_json;

constexpr std::size_t kMostDraws = 200000;
constexpr double kDefaultFrame = 1.0 / 60;
constexpr std::int64_t kMostFrames = 10000000;  // in one request

// A request that asks for something impossible.
struct RequestError {
  std::string message;
};

// The console's last value lives on until the next one.
class LastValue final : public Holder {
 public:
  LastValue() : Holder(Keeps::kToolState) {}
  void visit_values(ValueVisitor& visitor) override { visitor(value); }
  RValue value;
};

json draws = json::array();
json frame_errors = json::array();

void observe(const BuiltinEntry& entry, std::int32_t argc, const RValue* args) {
  const std::string_view name = entry.name;
  RunningHandler running{};
  if (!(name.starts_with("draw_") || name.starts_with("gpu_set_")) || !running_handler(running)) return;
  if (running.key.kind != EventKind::kDraw || draws.size() >= kMostDraws) return;
  json values = json::array();
  for (std::int32_t i = 0; i < argc; ++i) values.push_back(value_to_json(args[i]));
  draws.push_back({{"object", object_name_of(*running.self)},
                   {"instance", running.self->id},
                   {"event", event_suffix(running.key)},
                   {"call", name},
                   {"args", std::move(values)}});
}

void keep_error(const WBKSLException& error) {
  draw::restore_draw_state();
  log_message("ERROR: " + error.message());
  frame_errors.push_back({{"error", error.message()}, {"report", error.report()}});
}

WBObjectBase* instance_argument(const json& request, const char* key) {
  if (!request.contains(key) || request[key].is_null()) return nullptr;
  if (!request[key].is_number()) throw RequestError{std::string("\"") + key + "\" must be an instance id"};
  CInstance* found = resolve_instance(saturate_int32(request[key].get<double>()));
  if (found == nullptr) throw RequestError{std::string("\"") + key + "\" names no instance: " + request[key].dump()};
  return found;
}

int whole(const json& request, const char* key) {
  if (!request.at(key).is_number()) throw RequestError{std::string("\"") + key + "\" must be a number"};
  return saturate_int32(request.at(key).get<double>());
}

bool down(const json& request) {
  if (!request.contains("down") || !request["down"].is_boolean()) throw RequestError{"\"down\" must be true or false"};
  return request["down"].get<bool>();
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
  const std::int32_t object = named.is_string() ? object_types().find(named.get<std::string>()) : whole(request, "instances");
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

std::string hex(std::uint64_t number) {
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4) digits += "0123456789abcdef"[number >> shift & 15];
  return digits;
}

}  // namespace

struct Console::State {
  host::Game& game;
  LastValue last;
  bool quit = false;

  json eval(const json& request) {
    if (!request["eval"].is_string()) throw RequestError{"\"eval\" must be a text"};
    last.value = RValue();
    last.value = evaluate(request["eval"].get<std::string>(), instance_argument(request, "self"), instance_argument(request, "other"));
    const std::string text = last.value.is_unset() ? "unset" : to_text(last.value);  // fails for what is too large to show
    return {{"kind", type_name(last.value)}, {"value", value_to_json(last.value)}, {"text", text}};
  }

  json step(const json& request) {
    const std::int64_t frames = whole(request, "step");
    const double seconds = request.contains("dt") && request["dt"].is_number() ? request["dt"].get<double>() : kDefaultFrame;
    if (frames < 0 || frames > kMostFrames) throw RequestError{"\"step\" is out of range"};
    if (!(seconds >= 0) || seconds > 3600) throw RequestError{"\"dt\" is out of range"};
    frame_errors = json::array();
    for (std::int64_t i = 0; i < frames && !world().ended; ++i) {
      draws = json::array();
      game.run_frame(static_cast<std::int64_t>(seconds * 1e6 + 0.5));
    }
    json reply = {
        {"frame", game_clock.frame}, {"room", world().rooms[static_cast<std::size_t>(world().room)].name}, {"ended", world().ended}};
    if (!frame_errors.empty()) reply["errors"] = frame_errors;
    return reply;
  }

  json pointer(const json& request) {
    const json& place = request["mouse"];
    if (!place.is_array() || place.size() != 2 || !place[0].is_number() || !place[1].is_number())
      throw RequestError{"\"mouse\" must be [x, y]"};
    const bool gui = request.contains("gui") && request["gui"].is_boolean() && request["gui"].get<bool>();
    push_pointer(gui ? PointerSpace::kGui : PointerSpace::kRoom, place[0].get<double>(), place[1].get<double>());
    return {{"ok", true}};
  }

  json perform(const json& request) {
    if (!request.is_object()) throw RequestError{"a request is a JSON object"};
    if (request.contains("eval")) return eval(request);
    if (request.contains("step")) return step(request);
    if (request.contains("key")) return push_key(whole(request, "key"), down(request)), json{{"ok", true}};
    if (request.contains("mouse")) return pointer(request);
    if (request.contains("button")) return push_button(whole(request, "button"), down(request)), json{{"ok", true}};
    if (request.contains("instances")) return instances_json(request);
    if (request.contains("draws")) return {{"draws", draws}};
    if (request.contains("sounds")) return sounds_json();
    if (request.contains("log")) return {{"log", take_log()}};
    if (request.contains("hash")) return {{"hash", hex(state_hash())}};
    if (request.contains("stages")) return stages_json();
    if (request.contains("quit")) return quit = true, json{{"ok", true}};
    throw RequestError{"unknown request; known are eval, step, key, mouse, button, instances, draws, sounds, log, hash, stages, quit"};
  }
};

Console::Console(host::Game& game) : state_(new State{game, {}, false}) {
  set_script_error_sink(keep_error);
  builtin_observer = observe;
}

Console::~Console() {
  set_script_error_sink(nullptr);
  builtin_observer = nullptr;
}

bool Console::has_quit() const { return state_->quit; }

std::string Console::answer(const std::string& line) {
  const auto failure = [](const std::string& message, const std::string& report) {
    return json{{"error", message}, {"report", report}}.dump(-1, ' ', false, json::error_handler_t::replace);
  };
  try {
    return state_->perform(json::parse(line)).dump(-1, ' ', false, json::error_handler_t::replace);
  } catch (const WBKSLException& error) {
    return failure(error.message(), error.report());
  } catch (const ParseError& error) {
    return failure(error.message, "");
  } catch (const RequestError& error) {
    return failure(error.message, "");
  } catch (const std::exception& error) {
    return failure(error.what(), "");
  }
}

}  // namespace arena::console
