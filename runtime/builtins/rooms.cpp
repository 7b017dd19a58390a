// Rooms that scripts make and change.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/rooms.h"

#include <algorithm>
#include <cmath>

#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/world.h"

namespace arena {
namespace {

constexpr std::int32_t kLargestRoom = 1 << 20;  // pixels a side, as in the data
constexpr std::size_t kMostPlaced = 200000, kMostLayers = 10000;

// Null after a report.
const RoomDefinition* require(std::int32_t room) {
  return require_room(room, current_builtin_name()) ? &world().room_definition(room) : nullptr;
}
// The same, to be changed.
RoomDefinition* require_own(std::int32_t room) { return require_room(room, current_builtin_name()) ? &world().own_room(room) : nullptr; }

std::int32_t side(std::int32_t pixels) { return std::clamp(pixels, 1, kLargestRoom); }
double place(double pixels) { return std::isfinite(pixels) ? pixels : 0; }

bool require_new_name(const CallContext& call, int at, std::string_view name) {
  if (!name.empty() && world().find_room(name) < 0) return true;
  report_argument_type(call, at, "name that no room has");
  return false;
}

RValue create(const CallContext& call, std::string_view name, std::int32_t width, std::int32_t height) {
  if (!require_new_name(call, 0, name)) return RValue(-1.0);
  RoomDefinition made;
  made.name = name;
  made.width = made.view_width = side(width);
  made.height = made.view_height = side(height);
  made.layers.emplace_back();
  made.layers.back().name = "layer";
  return RValue(static_cast<double>(world().create_room(std::move(made))));
}

RValue copy(const CallContext& call, std::int32_t room, std::string_view name) {
  const RoomDefinition* const of = require(room);
  if (of == nullptr || !require_new_name(call, 1, name)) return RValue(-1.0);
  RoomDefinition made = *of;
  made.name = name;
  return RValue(static_cast<double>(world().create_room(std::move(made))));
}

void add_layer(const CallContext& call, std::int32_t room, double depth, std::string_view name) {
  const RoomDefinition* const before = require(room);
  if (before == nullptr) return;
  const auto has_name = [&](const Layer& layer) { return layer.name == name; };
  if (name.empty() || before->layers.size() >= kMostLayers || std::any_of(before->layers.begin(), before->layers.end(), has_name)) {
    report_argument_type(call, 2, "name that no layer of the room has");
    return;
  }
  Layer layer;
  layer.name = name;
  layer.depth = orderly_depth(depth);
  world().own_room(room).layers.push_back(layer);
}

void add_instance(const CallContext& call, std::int32_t room, double x, double y, std::string_view layer, std::int32_t object) {
  const RoomDefinition* const before = require(room);
  if (before == nullptr) return;
  const auto on = std::find_if(before->layers.begin(), before->layers.end(), [&](const Layer& each) { return each.name == layer; });
  if (on == before->layers.end()) {
    report_argument_type(call, 3, "layer of the room");
    return;
  }
  if (!object_types().has(object)) {
    report_invalid_resource(5, "object", object, object_types().count());
    return;
  }
  if (before->instances.size() >= kMostPlaced) {
    report_error(messages::kWorldFull, static_cast<std::int32_t>(kMostPlaced));
    return;
  }
  const std::int32_t at = static_cast<std::int32_t>(on - before->layers.begin());
  world().own_room(room).instances.push_back({object, at, place(x), place(y), 0, 1, 1});
}

void clear(std::int32_t room) {
  if (RoomDefinition* const own = require_own(room)) own->instances.clear();
}
void set_size(std::int32_t room, std::int32_t width, std::int32_t height) {
  RoomDefinition* const own = require_own(room);
  if (own == nullptr) return;
  own->width = side(width);
  own->height = side(height);
}
void set_view_size(std::int32_t room, std::int32_t width, std::int32_t height) {
  RoomDefinition* const own = require_own(room);
  if (own == nullptr) return;
  own->view_width = side(width);
  own->view_height = side(height);
}
void set_colour(std::int32_t room, double colour) {
  if (RoomDefinition* const own = require_own(room)) own->color = static_cast<std::uint32_t>(saturate_int64(colour)) & 0xFFFFFF;
}
void set_persistent(std::int32_t room, bool wanted) {
  if (RoomDefinition* const own = require_own(room)) own->persistent = wanted;
}
bool get_persistent(std::int32_t room) {
  const RoomDefinition* const found = require(room);
  return found != nullptr && found->persistent;
}
std::int32_t get_width(std::int32_t room) {
  const RoomDefinition* const found = require(room);
  return found != nullptr ? found->width : 0;
}
std::int32_t get_height(std::int32_t room) {
  const RoomDefinition* const found = require(room);
  return found != nullptr ? found->height : 0;
}
RValue find(std::string_view name) { return RValue(static_cast<double>(world().find_room(name))); }

constexpr Implementation kRows[] = {
    implement<script::room_create, create>,
    implement<script::room_copy, copy>,
    implement<script::room_find, find>,
    implement<script::room_add_layer, add_layer>,
    implement<script::room_add_instance, add_instance>,
    implement<script::room_clear, clear>,
    implement<script::room_set_size, set_size>,
    implement<script::room_set_view_size, set_view_size>,
    implement<script::room_set_colour, set_colour>,
    implement<script::room_set_persistent, set_persistent>,
    implement<script::room_get_persistent, get_persistent>,
    implement<script::room_get_width, get_width>,
    implement<script::room_get_height, get_height>,
};
const BuiltinTable table("Rooms at run time",
                         "What is changed shows when the room is entered the next time; a new run begins with the rooms of the data.",
                         kRows);

}  // namespace
}  // namespace arena
