#include "engine/console/draw_calls.h"

#include <vector>

#include "engine/console/value_json.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/functions.h"
#include "runtime/session/session.h"
#include "runtime/variables_calls/resolve.h"

namespace arena::console {
namespace {

constexpr std::size_t kMostCalls = 200000;

struct DrawCall {
  const BuiltinEntry* entry;
  const ObjectType* object;
  std::int32_t instance;
  EventKey event;
  std::size_t end;  // of its arguments, which begin where those of the call before end
};
struct DrawCalls {
  std::vector<DrawCall> calls;
  std::vector<json> arguments;  // values as they were: what they are made of may change and die
  bool keeps_all = false;
};
const Part<DrawCalls> part{PartLevel::kHost, "console: drawing calls"};

void observe(const BuiltinEntry& entry, std::int32_t argc, const RValue* args) {
  DrawCalls& kept = part();
  if (!kept.keeps_all && !world().ended) return;
  RunningHandler running{};
  if (!running_handler(running) || running.key.kind != EventKind::kDraw || kept.calls.size() >= kMostCalls) return;
  const std::string_view name = entry.name;
  if (!name.starts_with("draw_") && !name.starts_with("gpu_set_")) return;
  for (std::int32_t i = 0; i < argc; ++i) kept.arguments.push_back(value_to_json(args[i]));
  kept.calls.push_back({&entry, running.self->type, running.self->id, running.key, kept.arguments.size()});
}

}  // namespace

FrameDrawCalls::FrameDrawCalls(bool is_asked_about) {
  part().calls.clear();
  part().arguments.clear();
  part().keeps_all = is_asked_about;
  session().builtin_observer = observe;
}

FrameDrawCalls::~FrameDrawCalls() { session().builtin_observer = nullptr; }

json draw_calls_json() {
  json list = json::array();
  std::size_t at = 0;
  for (const DrawCall& call : part().calls) {
    json values = json::array();
    for (; at < call.end; ++at) values.push_back(part().arguments[at]);
    list.push_back({{"object", call.object->definition.name},
                    {"instance", call.instance},
                    {"event", event_suffix(call.event)},
                    {"call", call.entry->name},
                    {"args", std::move(values)}});
  }
  return {{"draws", std::move(list)}};
}

}  // namespace arena::console
