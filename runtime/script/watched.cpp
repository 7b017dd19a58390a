#include "runtime/script/watched.h"

#include <optional>
#include <string>

#include "runtime/instances_loop/clock.h"
#include "runtime/session/session.h"
#include "runtime/values/strings.h"

namespace arena::script {
namespace {

const Part<const Session*> game{PartLevel::kScripts, "watched game"};

// Looks around in the game; the session that watches is the current one again afterwards. Nothing in here may write.
template <class Look>
auto in_game(Look look) {
  Session& seen = *const_cast<Session*>(game());
  const SessionScope scope(seen);
  return look(seen);
}

// A value as it can leave its session.
struct Carried {
  RValue plain;
  std::optional<std::string> text;
};

Carried carry(const PropertyObject* object, std::int32_t variable) {
  const RValue* const found = object != nullptr ? const_cast<PropertyObject*>(object)->find_variable(variable) : nullptr;
  if (found == nullptr) return {};
  switch (found->kind()) {
    case kString: return {RValue(), std::string(text_of(*found))};
    case kNumber:
    case kBool:
    case kInt32:
    case kInt64:
    case kRef: return {*found, {}};
    default: return {};
  }
}

Value arrive(const Carried& carried) { return Value(carried.text ? make_string(*carried.text) : carried.plain); }

}  // namespace

void watch(const Session* seen) { game() = seen; }

Value WatchedInstance::operator[](const Variable& name) const {
  return arrive(in_game([&](Session&) { return carry(instance_, name.slot); }));
}

bool WatchedGame::exists() const { return game() != nullptr; }

std::vector<WatchedInstance> WatchedGame::all(const ObjectName& object) const {
  std::vector<WatchedInstance> found;
  if (!exists()) return found;
  in_game([&](Session& seen) {
    if (!seen.object_types->has(object.index())) return;
    for (const CInstance* instance : seen.object_types->at(object.index()).instances) {
      if (instance->is_alive) found.emplace_back(instance);
    }
  });
  return found;
}

Value WatchedGame::operator[](const Variable& name) const {
  if (!exists()) return {};
  return arrive(in_game([&](Session& seen) { return carry(seen.globals, name.slot); }));
}

Real WatchedGame::seconds() const {
  if (!exists()) return 0;
  return in_game([](Session&) { return static_cast<double>(game_clock().total_microseconds) / 1e6; });
}

}  // namespace arena::script
