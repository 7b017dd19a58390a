// Rooms: entering and leaving them, those that are kept as they were left, and those that scripts make and change.
#include <algorithm>
#include <utility>

#include "runtime/checks/assert.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/report.h"

namespace arena {

const RoomDefinition& World::room_definition(std::int32_t number) const {
  if (!own_rooms.empty()) {
    if (const auto own = own_rooms.find(number); own != own_rooms.end()) return own->second;
  }
  ARENA_ASSERT(number >= 0 && static_cast<std::size_t>(number) < rooms.size());
  return rooms[static_cast<std::size_t>(number)];
}

RoomDefinition& World::own_room(std::int32_t number) {
  const auto own = own_rooms.find(number);
  return own != own_rooms.end() ? own->second : own_rooms.emplace(number, room_definition(number)).first->second;
}

std::int32_t World::room_count() const {
  const std::int32_t of_data = static_cast<std::int32_t>(rooms.size());
  return own_rooms.empty() ? of_data : std::max(of_data, own_rooms.rbegin()->first + 1);
}

std::int32_t World::create_room(RoomDefinition definition) {
  const std::int32_t number = room_count();
  if (number >= kMostRooms) {
    report_error(messages::kRoomsFull, kMostRooms);
    return -1;
  }
  own_rooms.emplace(number, std::move(definition));
  return number;
}

std::int32_t World::find_room(std::string_view name) const {
  for (std::int32_t number = 0; number < room_count(); ++number) {
    if (has_room(number) && room_definition(number).name == name) return number;
  }
  return -1;
}

void World::leave_room(std::int32_t next) {
  run_for_all({EventKind::kOther, kOtherRoomEnd});
  // Who goes to the room that he is in wants it anew.
  if (room_definition(room).persistent && next != room) keep_room();
  end_instances(false);
}

// Whoever does not come along sleeps until the room is entered again.
void World::keep_room() {
  KeptRoom kept;
  kept.width = room_width;
  kept.height = room_height;
  kept.layers = layers;
  kept.cameras = cameras();
  for (CInstance* const instance : sleeping) {
    if (instance->persistent > 0.5 || instance->kept_in >= 0) continue;
    instance->kept_in = static_cast<std::int16_t>(room);
    if (std::find(waking.begin(), waking.end(), instance->id) == waking.end()) kept.asleep.push_back(instance->id);
  }
  const std::vector<CInstance*> all = instances;
  for (CInstance* const instance : all) {
    if (!instance->is_alive || instance->persistent > 0.5) continue;
    put_to_sleep(*instance);
    instance->kept_in = static_cast<std::int16_t>(room);
  }
  kept_rooms.emplace(room, std::move(kept));
}

void World::bring_back(KeptRoom kept) {
  room_width = kept.width;
  room_height = kept.height;
  layers = std::move(kept.layers);
  const double gui_across = cameras().gui_width, gui_down = cameras().gui_height;
  cameras() = std::move(kept.cameras);
  cameras().gui_width = gui_across;
  cameras().gui_height = gui_down;
  const std::vector<CInstance*> all = sleeping;
  for (CInstance* const instance : all) {
    if (instance->kept_in != room) continue;
    instance->kept_in = -1;
    if (std::find(kept.asleep.begin(), kept.asleep.end(), instance->id) != kept.asleep.end()) continue;
    leave_sleep(*instance);
    list_again(*instance);
  }
  restore_order();
}

bool World::has_persistent(const ObjectType& type) const {
  if (!type.definition.persistent) return false;
  const auto came_along = [&](const CInstance* each) { return each->kept_in < 0 && each->type->descends_from(type.index); };
  return type.live_count > 0 || std::any_of(sleeping.begin(), sleeping.end(), came_along);
}

// Makes a room as it is defined.
void World::furnish(const RoomDefinition& definition, bool is_first) {
  room_width = definition.width;
  room_height = definition.height;
  layers.clear();
  std::vector<std::int32_t> layer_ids;
  for (const Layer& layer : definition.layers) layer_ids.push_back(add_layer(layer));
  reset_cameras(definition.view_width, definition.view_height);
  for (const std::int32_t object : starters) {
    const auto is_placed = [&](const RoomInstance& placed) { return placed.object == object; };
    if (!is_first || std::any_of(definition.instances.begin(), definition.instances.end(), is_placed)) continue;
    create(0, 0, layer_ids.empty() ? -1 : layer_ids.front(), 0, object, nullptr, nullptr);
  }
  for (const RoomInstance& placed : definition.instances) {
    const bool has_layer = placed.layer >= 0 && static_cast<std::size_t>(placed.layer) < layer_ids.size();
    // A persistent object that came along is not made a second time.
    if (has_persistent(object_types().at(placed.object))) continue;
    CInstance* made =
        create(placed.x, placed.y, has_layer ? layer_ids[static_cast<std::size_t>(placed.layer)] : -1, 0, placed.object, nullptr, nullptr);
    if (made == nullptr) continue;
    made->image_angle += placed.angle;
    made->image_xscale *= placed.xscale;
    made->image_yscale *= placed.yscale;
  }
}

void World::enter_room(std::int32_t next) {
  if (room >= 0) leave_room(next);
  const bool is_first = room < 0;
  room = next;
  if (auto kept = kept_rooms.extract(next); !kept.empty()) {
    bring_back(std::move(kept.mapped()));
  } else {
    const RoomDefinition definition = room_definition(next);  // a copy: a handler may change the room
    furnish(definition, is_first);
  }
  if (is_first) run_for_all({EventKind::kOther, kOtherGameStart});
  run_for_all({EventKind::kOther, kOtherRoomStart});
}

}  // namespace arena
