// What must hold after every frame of every game.
#include <algorithm>
#include <map>
#include <set>

#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/frame.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

std::int32_t id_of(const CInstance* instance) { return instance->id; }
std::int32_t id_of(const Participant& each) { return each.instance->id; }
const CInstance* instance_of(const CInstance* instance) { return instance; }
const CInstance* instance_of(const Participant& each) { return each.instance; }

// The living in order of creation, each once.
template <class Element>
bool is_orderly(const std::vector<Element>& list) {
  const auto is_dead = [](const Element& each) { return !instance_of(each)->is_alive; };
  const auto is_behind = [](const Element& one, const Element& next) { return id_of(one) >= id_of(next); };
  return std::none_of(list.begin(), list.end(), is_dead) && std::adjacent_find(list.begin(), list.end(), is_behind) == list.end();
}

std::string broken_list_of_all() {
  if (!is_orderly(world().all())) return "instances are dead, listed twice or not in order of creation";
  if (world().has_dead) return "the dead were not forgotten";
  for (const CInstance* instance : world().all()) {
    if (world().find(instance->id) != instance) return "an id does not find its instance";
    if (!instance->is_root) return "a live instance is no root";
  }
  std::size_t found = 0;
  for (const World::Page& page : world().pages) {
    const auto used = page.slots.size() - static_cast<std::size_t>(std::count(page.slots.begin(), page.slots.end(), nullptr));
    if (used != static_cast<std::size_t>(page.used)) return "a page of ids counts wrong";
    found += used;
  }
  if (found != world().all().size() + world().sleeping.size()) return "an id finds what does not live";
  return static_cast<std::size_t>(world().live_count()) == world().all().size() ? "" : "the count of instances is wrong";
}

// Sleepers stand in no other list: those hold the living alone, which is checked with each.
std::string broken_sleepers() {
  const std::vector<CInstance*>& all = world().sleeping;
  const auto is_behind = [](const CInstance* one, const CInstance* next) { return one->id >= next->id; };
  if (std::adjacent_find(all.begin(), all.end(), is_behind) != all.end()) return "sleepers are not in order of creation";
  for (const CInstance* instance : all) {
    if (instance->is_alive || !instance->is_asleep) return "one who does not sleep is listed among the sleepers";
    if (world().find(instance->id) != instance) return "an id does not find its sleeper";
    if (!instance->is_root) return "a sleeper is no root";
    if (instance->kept_in >= 0 && (instance->kept_in == world().room || !world().kept_rooms.contains(instance->kept_in)))
      return "a sleeper is kept in a room that was not left";
  }
  for (const CInstance* instance : world().all()) {
    if (instance->is_asleep) return "a sleeper is listed among the living";
  }
  return "";
}

std::string broken_depth_order() {
  std::size_t ordered = 0;
  for (const auto& [depth, instances] : world().by_depth()) {
    if (!is_orderly(instances)) return "a list by depth is not in order";
    for (const CInstance* instance : instances) {
      if (instance->depth != depth) return "an instance is listed by another depth than its own";
    }
    ordered += instances.size();
  }
  return ordered == world().all().size() ? "" : "an instance is missing among those by depth";
}

std::string broken_populations() {
  std::vector<std::size_t> expected(static_cast<std::size_t>(object_types().count()));
  std::map<EventKey, std::size_t> participants;
  for (const CInstance* instance : world().all()) {
    for (const std::int32_t ancestor : instance->type->lineage) ++expected[static_cast<std::size_t>(ancestor)];
    for (const EventSubscription& each : instance->type->subscriptions) ++participants[each.event->key];
  }
  for (std::int32_t i = 0; i < object_types().count(); ++i) {
    const ObjectType& type = object_types().at(i);
    const std::string& name = type.definition.name;
    if (!is_orderly(type.instances)) return "the instances of " + name + " are not in order";
    for (const CInstance* instance : type.instances) {
      if (!instance->type->descends_from(i)) return name + " lists an instance of another type";
    }
    if (type.instances.size() != expected[static_cast<std::size_t>(i)]) return "an instance is missing among those of " + name;
    if (static_cast<std::size_t>(type.live_count) != type.instances.size()) return "the count of " + name + " is wrong";
  }
  for (const auto& [key, list] : object_types().lists()) {
    if (!is_orderly(list)) return "the participants of an event are not in order";
    for (const Participant& each : list) {
      if (each.event != each.instance->type->find_event(key)) return "a participant has the handler of another type or event";
    }
    if (list.size() != participants[key]) return "a participant of an event is missing";
  }
  return "";
}

std::string broken_layers() {
  std::set<std::int32_t> ids;
  for (const Layer& layer : world().layers) {
    if (layer.id < 0 || layer.id >= world().next_layer_id) return "a layer's id was never given";
    if (!ids.insert(layer.id).second) return "two layers have one id";
    if (layer.depth != layer.depth) return "a layer has no depth";
  }
  for (const CInstance* instance : world().all()) {
    if (instance->layer >= world().next_layer_id) return "an instance stands on a layer that never was";
  }
  return "";
}

}  // namespace

std::string broken_invariant() {
  if (innermost_frame() != nullptr) return "a frame was left open";
  if (session().call_depth != 0) return "a call was left open";
  if (session().running_event != nullptr) return "an event was left open";
  if (container_depth() != 0) return "the container stack is not empty";
  if (session().current_builtin != nullptr) return "a built-in is still current";
  for (const auto check :
       {broken_list_of_all, broken_sleepers, broken_depth_order, broken_populations, broken_layers, broken_collector_invariant}) {
    if (std::string broken = check(); !broken.empty()) return broken;
  }
  return "";
}

}  // namespace arena::test
