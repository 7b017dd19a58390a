#include "runtime/instances_loop/world.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/checks/assert.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/random.h"
#include "runtime/program/builtin_variable.h"
#include "runtime/program/names.h"
#include "runtime/reports/report.h"
#include "runtime/values/refs.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/arguments.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

const RefKind instance_refs{ref_type::kInstance, "instance"};
const RefKind object_refs{ref_type::kObject, "object", [](std::int32_t index) {
                            return object_types().has(index) ? object_types().at(index).definition.name : std::string();
                          }};
const RefKind room_refs{ref_type::kRoom, "room",
                        [](std::int32_t index) { return world().has_room(index) ? world().room_definition(index).name : std::string(); }};
const RefKind layer_refs{ref_type::kLayer, "layer", [](std::int32_t id) {
                           const Layer* const layer = world().find_layer(id);
                           return layer != nullptr ? layer->name : std::string();
                         }};

// Fields that arrive with a creation reach built-in variables too.
void write_fields(CInstance& instance, PropertyObject& fields) {
  for (const std::int32_t id : fields.variable_ids()) {
    const RValue value(*fields.find_variable(id));
    var_set(RValue::of_object(&instance), id, kNoIndex, value);
  }
}

// So that adding one takes no memory any more.
template <class Element>
void make_room(std::vector<Element>& list) {
  if (list.size() == list.capacity()) list.reserve(std::max<std::size_t>(16, list.size() * 2));
}

void drop_dead(std::vector<CInstance*>& list) {
  list.erase(std::remove_if(list.begin(), list.end(), [](const CInstance* instance) { return !instance->is_alive; }), list.end());
}

const StatePart<World> part{PartLevel::kWorld, "world"};

constexpr std::string_view kGlobalScriptPrefix = "ksl_GlobalScript_";

void run_global_scripts() {
  for (std::int32_t i = 0; i < script_count(); ++i) {
    if (!std::string_view(script_at(i).name).starts_with(kGlobalScriptPrefix)) continue;
    RValue ignored;
    script_at(i).script(global_object(), nullptr, ignored, 0, nullptr);
  }
}

}  // namespace

World::World() { session().world = this; }

CInstance* World::create(double x, double y, std::int32_t layer, double depth, std::int32_t object, PropertyObject* fields,
                         WBObjectBase* creator) {
  if (alive + std::ssize(sleeping) >= kMostInstances) {
    report_error(messages::kWorldFull, kMostInstances);
    return nullptr;
  }
  ObjectType& type = object_types().at(object);
  CInstance* instance = new CInstance;
  instance->is_alive = false;  // until it is listed: a field that cannot be written leaves nothing behind
  instance->type = &type;
  instance->x = instance->xprevious = instance->xstart = x;
  instance->y = instance->yprevious = instance->ystart = y;
  instance->layer = layer;
  const Layer* on = find_layer(layer);
  instance->depth = on != nullptr ? on->depth : orderly_depth(depth);
  instance->sprite_index = type.definition.sprite;
  instance->mask_index = type.definition.mask;
  instance->visible = type.definition.visible;
  instance->solid = type.definition.solid;
  instance->persistent = type.definition.persistent;
  instance->reserve_row(type.typical_row);
  if (fields != nullptr) write_fields(*instance, *fields);
  list(*instance);
  if (!runs_to_its_end(*instance, creator, EventKind::kPreCreate) || !runs_to_its_end(*instance, creator, EventKind::kCreate)) {
    if (instance->is_alive) unlist(*instance);
    return instance;
  }
  type.typical_row = std::max(type.typical_row, std::min(instance->variable_count(), kLongestRow));
  return instance;
}

// Whether the handler, if there is one, ran without an error; an error that ends the caller's script, too, takes the instance with it.
bool World::runs_to_its_end(CInstance& instance, WBObjectBase* creator, EventKind kind) {
  if (!instance.is_alive) return true;
  const BoundEvent* event = instance.type->find_event({kind, 0});
  try {
    return event == nullptr || run_handler(instance, creator, *event);
  } catch (...) {
    if (instance.is_alive) unlist(instance);
    throw;
  }
}

// Made when nobody has lived there yet.
World::Page& World::page_of(std::uint32_t place) {
  if (place / kPageSlots >= pages.size()) pages.resize(place / kPageSlots + 1);
  Page& page = pages[place / kPageSlots];
  if (page.slots.empty()) page.slots.resize(kPageSlots);
  return page;
}

void World::after_load() {
  pages.clear();
  const auto note = [&](CInstance* instance) {
    const std::uint32_t place = static_cast<std::uint32_t>(instance->id - kFirstInstanceId);
    Page& page = page_of(place);
    page.slots[place % kPageSlots] = instance;
    ++page.used;
  };
  for (CInstance* const instance : instances) {
    if (instance->is_alive) note(instance);
  }
  for (CInstance* const instance : sleeping) note(instance);
}

// Gives the instance its id and a place in every list. Where memory runs out it stands in none.
void World::list(CInstance& instance) {
  const std::uint32_t place = static_cast<std::uint32_t>(next_id - kFirstInstanceId);
  Page& page = page_of(place);
  ARENA_ASSERT(!instance.is_alive && page.slots[place % kPageSlots] == nullptr);
  make_room(instances);
  for (const std::int32_t ancestor : instance.type->lineage) make_room(object_types().at(ancestor).instances);
  for (const EventSubscription& subscription : instance.type->subscriptions) make_room(*subscription.list);
  make_room(depth_order[instance.depth]);

  instance.id = next_id++;
  instance.is_alive = true;
  instance.is_root = true;
  page.slots[place % kPageSlots] = &instance;
  ++page.used;
  instances.push_back(&instance);
  ++alive;
  for (const std::int32_t ancestor : instance.type->lineage) {
    object_types().at(ancestor).instances.push_back(&instance);
    ++object_types().at(ancestor).live_count;
  }
  for (const EventSubscription& subscription : instance.type->subscriptions) subscription.list->push_back({&instance, subscription.event});
  depth_order[instance.depth].push_back(&instance);
}

void World::unlist(CInstance& instance) {
  ARENA_ASSERT(instance.is_alive && alive > 0 && find(instance.id) == &instance);
  instance.is_alive = false;
  instance.is_root = false;
  has_dead = true;
  count_as_awake(instance, false);
  forget_id(instance);
}

void World::forget_id(const CInstance& instance) {
  const std::uint32_t place = static_cast<std::uint32_t>(instance.id - kFirstInstanceId);
  Page& page = pages[place / kPageSlots];
  page.slots[place % kPageSlots] = nullptr;
  if (--page.used == 0 && place / kPageSlots + 1 < pages.size()) page = Page();
}

void World::destroy(CInstance& instance, bool runs_destroy_event) {
  if (instance.is_asleep) {
    leave_sleep(instance);
    instance.is_root = false;
    forget_id(instance);
  } else if (instance.is_alive) {
    unlist(instance);
  } else {
    return;
  }
  WBObjectBase* const self = &instance;
  if (runs_destroy_event) run_event(instance, self, {EventKind::kDestroy, 0});
  run_event(instance, self, {EventKind::kCleanUp, 0});
}

Layer* World::find_layer(std::string_view name) {
  const auto found = std::find_if(layers.begin(), layers.end(), [&](const Layer& layer) { return layer.name == name; });
  return found == layers.end() ? nullptr : &*found;
}

Layer* World::find_layer(std::int32_t id) {
  const auto found = std::find_if(layers.begin(), layers.end(), [&](const Layer& layer) { return layer.id == id; });
  return found == layers.end() ? nullptr : &*found;
}

std::int32_t World::add_layer(const Layer& layer) {
  layers.push_back(layer);
  layers.back().id = next_layer_id++;
  layers.back().depth = orderly_depth(layer.depth);
  return layers.back().id;
}

void World::depth_changed(CInstance& instance, double old_depth) {
  std::vector<CInstance*>& from = depth_order[old_depth];
  const auto place = std::find(from.begin(), from.end(), &instance);
  if (place == from.end() && instance.is_asleep) return;  // it stands in no list
  ARENA_ASSERT(place != from.end());
  from.erase(place);
  std::vector<CInstance*>& to = depth_order[instance.depth];
  const auto by_id = [](const CInstance* left, const CInstance* right) { return left->id < right->id; };
  to.insert(std::upper_bound(to.begin(), to.end(), &instance, by_id), &instance);
}

void World::forget_dead() {
  ARENA_ASSERT(session().running_event == nullptr);  // handlers walk over the lists
  if (!has_dead) return;
  has_dead = false;
  drop_dead(instances);
  for (std::int32_t i = 0; i < object_types().count(); ++i) drop_dead(object_types().at(i).instances);
  for (auto& [key, list] : object_types().lists()) {
    list.erase(std::remove_if(list.begin(), list.end(), [](const Participant& each) { return !each.instance->is_alive; }), list.end());
  }
  for (auto bucket = depth_order.begin(); bucket != depth_order.end();) {
    drop_dead(bucket->second);
    bucket = bucket->second.empty() ? depth_order.erase(bucket) : std::next(bucket);
  }
}

void World::run_for_all(EventKey key) {
  const std::vector<CInstance*> snapshot = instances;
  for (CInstance* instance : snapshot) {
    if (instance->is_alive) run_event(*instance, instance, key);
  }
}

// What a Clean Up handler makes goes with the rest; the bound only breaks endless circles.
void World::end_instances(bool persistent_too) {
  const auto goes = [&](const CInstance* instance) {
    const bool is_here = instance->is_alive || (instance->is_asleep && (persistent_too || instance->kept_in < 0));
    return is_here && (persistent_too || instance->persistent < 0.5);
  };
  for (int round = 0; round < 100; ++round) {
    std::vector<CInstance*> leaving;
    std::copy_if(instances.begin(), instances.end(), std::back_inserter(leaving), goes);
    std::copy_if(sleeping.begin(), sleeping.end(), std::back_inserter(leaving),
                 [&](const CInstance* each) { return goes(each) && !is_listed(*each); });
    if (leaving.empty()) break;
    for (CInstance* instance : leaving) destroy(*instance, false);
  }
  for (CInstance* instance : instances) {
    if (goes(instance) && instance->is_alive) unlist(*instance);
  }
  forget_dead();
}

void World::start_game(std::int32_t starting_room) {
  run_global_scripts();
  first_room = starting_room;
  room = -1;
  enter_room(starting_room);
}

void World::restart_game() {
  run_for_all({EventKind::kOther, kOtherRoomEnd});
  run_for_all({EventKind::kOther, kOtherGameEnd});
  end_instances(true);
  session().restart_parts();
  start_game(first_room);
}

// Ids of instances go on.
void World::restart() {
  room_wanted = -1;
  layers.clear();
  next_layer_id = 0;
  kept_rooms.clear();
  own_rooms.clear();
  waking.clear();
  changes.clear();
}

// By type, so that two runs that differ can say whose instances do.
void WorldState::visit_content(StateVisitor& visitor) {
  for (std::int32_t type = 0; type < object_types().count(); ++type) {
    visitor.group(object_types().at(type).definition.name);
    for (CInstance* const instance : object_types().at(type).instances) {
      if (!instance->is_alive || instance->type->index != type) continue;
      visitor.instance_id(instance->id);
      visit_state(visitor, *instance);
      visitor.variables(*instance);
    }
  }
  visit_extras(visitor);
}

void World::carry_out_requests() {
  // A room may send on to the next one from its Create events; the bound only breaks endless circles.
  for (int turns = 0; turns < 100 && room_wanted >= 0 && !restart_wanted; ++turns) {
    const std::int32_t next = room_wanted;
    room_wanted = -1;
    enter_room(next);
  }
  if (ended) run_for_all({EventKind::kOther, kOtherGameEnd});
}

bool require_room(std::int32_t room, std::string_view function) {
  if (world().has_room(room)) return true;
  report_error(messages::kArgumentResource, function, 1, "room", room, world().room_count());
  return false;
}

std::string_view CInstance::called() const { return type->definition.name; }

}  // namespace arena
