// Instances that sleep, wake, become those of another object, or are copied. Lists are walked by handlers, so that who leaves them is
// only marked, and who comes back is listed between two frames.
#include <algorithm>
#include <tuple>
#include <utility>

#include "runtime/arrays_structs/method.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/timers.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/report.h"
#include "runtime/variables_calls/access.h"

namespace arena {
namespace {

std::int32_t id_of(const CInstance* instance) { return instance->id; }
std::int32_t id_of(const Participant& each) { return each.instance->id; }

template <class Element>
void sort_by_id(std::vector<Element>& list) {
  const auto by_id = [](const Element& one, const Element& other) { return id_of(one) < id_of(other); };
  if (!std::is_sorted(list.begin(), list.end(), by_id)) std::sort(list.begin(), list.end(), by_id);
}

template <class Element>
auto place_in(std::vector<Element>& list, std::int32_t id) {
  return std::lower_bound(list.begin(), list.end(), id, [](const Element& each, std::int32_t wanted) { return id_of(each) < wanted; });
}

template <class Element>
void take_out(std::vector<Element>& list, std::int32_t id) {
  const auto place = place_in(list, id);
  if (place != list.end() && id_of(*place) == id) list.erase(place);
}

}  // namespace

bool World::is_listed(const CInstance& instance) const {
  const auto place = std::lower_bound(instances.begin(), instances.end(), instance.id,
                                      [](const CInstance* each, std::int32_t wanted) { return each->id < wanted; });
  return place != instances.end() && *place == &instance;
}

void World::count_as_awake(CInstance& instance, bool awake) {
  const std::int32_t more = awake ? 1 : -1;
  alive += more;
  for (const std::int32_t ancestor : instance.type->lineage) {
    object_types().at(ancestor).live_count += more;
    ARENA_ASSERT(object_types().at(ancestor).live_count >= 0);
  }
}

void World::put_to_sleep(CInstance& instance) {
  if (!instance.is_alive) return;
  instance.is_alive = false;
  instance.is_asleep = true;
  has_dead = true;
  count_as_awake(instance, false);
  sleeping.insert(place_in(sleeping, instance.id), &instance);
}

// It is no sleeper any more, and stands in no list if it stood in none.
void World::leave_sleep(CInstance& instance) {
  ARENA_ASSERT(instance.is_asleep);
  take_out(sleeping, instance.id);
  instance.is_asleep = false;
  instance.kept_in = -1;
}

void World::wake(CInstance& instance) {
  if (!instance.is_asleep || instance.kept_in >= 0) return;
  if (!is_listed(instance)) {
    if (std::find(waking.begin(), waking.end(), instance.id) == waking.end()) waking.push_back(instance.id);
    return;
  }
  leave_sleep(instance);
  instance.is_alive = true;
  count_as_awake(instance, true);
}

// Behind all others: restore_order() follows.
void World::list_again(CInstance& instance) {
  instance.is_alive = true;
  instances.push_back(&instance);
  count_as_awake(instance, true);
  for (const std::int32_t ancestor : instance.type->lineage) object_types().at(ancestor).instances.push_back(&instance);
  for (const EventSubscription& subscription : instance.type->subscriptions) subscription.list->push_back({&instance, subscription.event});
  depth_order[instance.depth].push_back(&instance);
}

void World::restore_order() {
  sort_by_id(instances);
  for (std::int32_t i = 0; i < object_types().count(); ++i) sort_by_id(object_types().at(i).instances);
  for (auto& [key, list] : object_types().lists()) sort_by_id(list);
  for (auto& [depth, list] : depth_order) sort_by_id(list);
}

void World::wake_up_waiting() {
  if (waking.empty()) return;
  for (const std::int32_t id : std::exchange(waking, {})) {
    CInstance* const instance = find(id);
    if (instance == nullptr || !instance->is_asleep || instance->kept_in >= 0) continue;
    leave_sleep(*instance);
    list_again(*instance);
  }
  restore_order();
}

void World::change_object(const CInstance& instance, std::int32_t object, bool runs_events) {
  changes.push_back({instance.id, object, runs_events});
}

void World::carry_out_change(const ObjectChange& change) {
  CInstance* const instance = find(change.instance);
  ObjectType& wanted = object_types().at(change.object);
  if (instance == nullptr || instance->type == &wanted) return;
  if (change.runs_events) run_event(*instance, instance, {EventKind::kCleanUp, 0});
  if (!instance->is_alive && !instance->is_asleep) return;  // its own event ended it
  const bool is_awake = instance->is_alive;
  if (is_awake) {
    count_as_awake(*instance, false);
    take_out(instances, instance->id);
    for (const std::int32_t ancestor : instance->type->lineage) take_out(object_types().at(ancestor).instances, instance->id);
    for (const EventSubscription& subscription : instance->type->subscriptions) take_out(*subscription.list, instance->id);
    take_out(depth_order[instance->depth], instance->id);
  }
  instance->type = &wanted;
  instance->sprite_index = wanted.definition.sprite;
  instance->mask_index = wanted.definition.mask;
  if (is_awake) {
    list_again(*instance);
    restore_order();
  }
  if (change.runs_events) run_event(*instance, instance, {EventKind::kCreate, 0});
}

// What the handlers of a change ask for is done with the next frame.
void World::settle_lists() {
  ARENA_ASSERT(session().running_event == nullptr);
  if (!changes.empty()) {
    forget_dead();
    for (const ObjectChange& change : std::exchange(changes, {})) {
      carry_out_change(change);
      forget_dead();
    }
  }
  forget_dead();
  wake_up_waiting();
}

CInstance* World::copy(CInstance& of, bool runs_create, WBObjectBase* creator) {
  if (alive + std::ssize(sleeping) >= kMostInstances) {
    report_error(messages::kWorldFull, kMostInstances);
    return nullptr;
  }
  CInstance* const made = new CInstance;
  const auto take_over = [&](const auto& field) { made->*field.member = of.*field.member; };
  std::apply([&](const auto&... field) { (take_over(field), ...); }, CInstance::fields());
  made->is_alive = made->is_asleep = false;
  made->kept_in = -1;
  made->reserve_row(of.variable_count());
  for (const std::int32_t variable : of.variable_ids()) {
    RValue value(*of.find_variable(variable));
    if (value.is_unset()) continue;
    if (const MethodClosure* const method = method_of(value);
        method != nullptr && method->bound_self.is_object() && method->bound_self.object == &of && method->function != nullptr) {
      make_method(value, *method->function, made);
    }
    var_set(RValue::of_object(made), variable, kNoIndex, value);
  }
  list(*made);
  copy_named_alarms(of, *made);
  if (runs_create && !runs_to_its_end(*made, creator, EventKind::kCreate) && made->is_alive) unlist(*made);
  return made;
}

// A game that has none of this is as if it could not be.
void WorldState::visit_extras(StateVisitor& visitor) {
  const auto show = [&](const char* name, auto& all) {
    if (all.empty()) return;
    visitor.group(name);
    visitor.name("all");
    visit_state(visitor, all);
  };
  if (!sleeping.empty()) {
    visitor.group("sleeping instances");
    for (CInstance* const instance : sleeping) {
      visitor.instance_id(instance->id);
      visitor.count(static_cast<std::uint64_t>(instance->type->index));
      visitor.count(static_cast<std::uint64_t>(instance->kept_in + 1));
      visit_state(visitor, *instance);
      visitor.variables(*instance);
    }
  }
  show("waking instances", waking);
  show("changes of objects", changes);
  show("rooms that are kept", kept_rooms);
  show("rooms of scripts", own_rooms);
}

}  // namespace arena
