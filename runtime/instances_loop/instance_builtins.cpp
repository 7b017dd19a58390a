// Instances, objects, layers, rooms, time and the game itself.
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/resolve.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/text.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/arguments.h"
#include "runtime/variables_calls/log.h"

namespace arena {
namespace {

bool require_object_type(int argument, std::int32_t object) {
  if (object_types().has(object)) return true;
  report_invalid_resource(argument, "object", object, object_types().count());
  return false;
}

// A layer is named by its text or its id.
const Layer* require_layer(const CallContext& call, int at) {
  const RValue& value = argument_at(call, at);
  const Layer* layer = value.is_string()       ? world().find_layer(text_of(value))
                       : is_number_like(value) ? world().find_layer(to_int32(value))
                                               : nullptr;
  if (layer != nullptr) return layer;
  if (is_number_like(value)) {
    report_invalid_resource(at + 1, "layer", to_int32(value), -1);
  } else {
    report_argument_type(call, at, value.is_string() ? "layer of this room" : "layer");
  }
  return nullptr;
}

PropertyObject* optional_fields(const CallContext& call, int at) {
  return argument_at(call, at).is_undefined() ? nullptr : check_struct(call, at, true);
}

RValue id_of(const CInstance* created) { return RValue(created != nullptr ? created->id : kNoone); }
RValue create_on_layer(const CallContext& call, double x, double y, const RValue&, std::int32_t object) {
  const Layer* layer = require_layer(call, 2);
  if (layer == nullptr || !require_object_type(4, object)) return RValue(kNoone);
  return id_of(world().create(x, y, layer->id, 0, object, optional_fields(call, 4), call.self));
}
RValue create_at_depth(const CallContext& call, double x, double y, double depth, std::int32_t object) {
  if (!require_object_type(4, object)) return RValue(kNoone);
  return id_of(world().create(x, y, -1, depth, object, optional_fields(call, 4), call.self));
}

void destroy_one(CInstance* instance, bool runs_event) {
  if (instance != nullptr) world().destroy(*instance, runs_event);
}
// Without an argument the caller; with an object index all its instances; with an id or a reference that one.
void destroy(const CallContext& call, const RValue& target, std::optional<bool> runs_event) {
  const bool runs = runs_event.value_or(true);
  if (target.is_undefined()) {
    destroy_one(check_self_instance(call), runs);
    return;
  }
  if (target.is_object()) {
    destroy_one(instance_of(target.object), runs);
    return;
  }
  const std::int32_t number = to_int32(target);
  if (!object_types().has(number)) {
    destroy_one(instance_of(resolve_object(target)), runs);
    return;
  }
  const std::vector<CInstance*> all = object_types().at(number).instances;
  for (CInstance* instance : all) destroy_one(instance, runs);
}

bool exists(const RValue& target) {
  if (target.is_undefined() || target.is_array() || target.is_string()) return false;
  const CInstance* found = target.is_object() ? instance_of(target.object) : instance_of(resolve_object(target));
  return found != nullptr && found->is_alive;
}
std::int32_t number_of(std::int32_t object) {
  if (object == kAllTarget) return world().live_count();
  return object_types().has(object) ? object_types().at(object).live_count : exists(RValue(object)) ? 1 : 0;
}
RValue find_nth(std::int32_t object, std::int32_t nth) {
  if (!require_object_type(1, object)) return RValue(kNoone);
  for (const CInstance* instance : object_types().at(object).instances) {
    if (instance->is_alive && nth-- == 0) return RValue(instance->id);
  }
  return RValue(kNoone);
}
template <class Better>
RValue pick_by_distance(double x, double y, std::int32_t object, Better better) {
  const CInstance* best = nullptr;
  double best_distance = 0;
  if (!require_object_type(3, object)) return RValue(kNoone);
  for (const CInstance* instance : object_types().at(object).instances) {
    const double dx = instance->x - x, dy = instance->y - y, distance = dx * dx + dy * dy;
    if (!instance->is_alive || (best != nullptr && !better(distance, best_distance))) continue;
    best = instance;
    best_distance = distance;
  }
  return RValue(best != nullptr ? best->id : kNoone);
}
RValue nearest(double x, double y, std::int32_t object) {
  return pick_by_distance(x, y, object, [](double a, double b) { return a < b; });
}
RValue furthest(double x, double y, std::int32_t object) {
  return pick_by_distance(x, y, object, [](double a, double b) { return a > b; });
}
std::string object_get_name(std::int32_t object) { return std::string(object_type_name(object)); }
RValue object_get_parent(std::int32_t object) {
  if (!require_object_type(1, object)) return {};
  const std::int32_t parent = object_types().at(object).definition.parent;
  return RValue(parent >= 0 ? parent : -100.0);
}
bool object_is_ancestor(std::int32_t object, std::int32_t ancestor) {
  return object != ancestor && object_types().has(object) && object_types().at(object).descends_from(ancestor);
}
bool object_exists(std::int32_t object) { return object_types().has(object); }
void run_inherited() { run_inherited_event(); }
// The user events 0 to 15 are the "other" events 10 to 25; there are no more.
void run_user_event(SelfInstance self, std::int32_t number) {
  if (number >= 0 && number < 16) run_event(*self.instance, self.instance, {EventKind::kOther, number + 10});
}

// Layers
RValue layer_get_id(std::string_view name) {
  const Layer* layer = world().find_layer(name);
  return RValue(layer != nullptr ? layer->id : -1);
}
bool layer_exists(const RValue& which) {
  return which.is_string() ? world().find_layer(text_of(which)) != nullptr
                           : is_number_like(which) && world().find_layer(to_int32(which)) != nullptr;
}
RValue layer_create(double depth, std::optional<std::string_view> name) {
  Layer layer;
  layer.depth = depth;
  layer.name = name ? std::string(*name) : "layer" + std::to_string(world().layers.size());
  return RValue(world().add_layer(layer));
}
RValue layer_get_depth(const CallContext& call, const RValue&) {
  const Layer* layer = require_layer(call, 0);
  return RValue(layer != nullptr ? layer->depth : 0);
}
void layer_set_visible(const CallContext& call, const RValue&, bool visible) {
  if (const Layer* layer = require_layer(call, 0)) world().find_layer(layer->id)->visible = visible;
}

// Rooms and the game
}  // namespace

bool require_room(std::int32_t room) {
  if (world().has_room(room)) return true;
  report_invalid_resource(1, "room", room, static_cast<std::int32_t>(world().rooms.size()));
  return false;
}

namespace {

bool room_exists(std::int32_t room) { return world().has_room(room); }
void room_goto(std::int32_t room) {
  if (require_room(room)) world().room_wanted = room;
}
void room_restart() { world().room_wanted = world().room; }
std::string room_get_name(std::int32_t room) {
  return require_room(room) ? world().rooms[static_cast<std::size_t>(room)].name : std::string();
}
void game_restart() { world().restart_wanted = true; }
void game_end() { world().ended = true; }
void debug_message(const RValue& value) { log_message(to_text(value)); }
double get_timer() { return static_cast<double>(game_clock().total_microseconds); }

// Sprites as the world knows them
const SpriteInfo* require_sprite(std::int32_t sprite) {
  const SpriteInfo* info = find_sprite(sprite);
  if (info == nullptr) report_invalid_resource(1, "sprite", sprite, static_cast<std::int32_t>(sprite_infos().size()));
  return info;
}
template <double SpriteInfo::*measure>
double sprite_measure(std::int32_t sprite) {
  const SpriteInfo* info = require_sprite(sprite);
  return info != nullptr ? info->*measure : 0;
}
std::int32_t sprite_get_number(std::int32_t sprite) {
  const SpriteInfo* info = require_sprite(sprite);
  return info != nullptr ? info->frames : 0;
}
std::string sprite_get_name(std::int32_t sprite) {
  const SpriteInfo* info = require_sprite(sprite);
  return info != nullptr ? info->name : std::string();
}
bool sprite_exists(std::int32_t sprite) { return find_sprite(sprite) != nullptr; }

const BuiltinEntry kEntries[] = {
    {"instance_create_layer", builtin<create_on_layer>},
    {"instance_create_depth", builtin<create_at_depth>},
    {"instance_destroy", builtin<destroy>},
    {"instance_exists", builtin<exists>},
    {"instance_number", builtin<number_of>},
    {"instance_find", builtin<find_nth>},
    {"instance_nearest", builtin<nearest>},
    {"instance_furthest", builtin<furthest>},
    {"object_get_name", builtin<object_get_name>},
    {"object_get_parent", builtin<object_get_parent>},
    {"object_is_ancestor", builtin<object_is_ancestor>},
    {"object_exists", builtin<object_exists>},
    {"event_inherited", builtin<run_inherited>},
    {"event_user", builtin<run_user_event>},
    {"layer_get_id", builtin<layer_get_id>},
    {"layer_exists", builtin<layer_exists>},
    {"layer_create", builtin<layer_create>},
    {"layer_get_depth", builtin<layer_get_depth>},
    {"layer_set_visible", builtin<layer_set_visible>},
    {"room_goto", builtin<room_goto>},
    {"room_restart", builtin<room_restart>},
    {"room_get_name", builtin<room_get_name>},
    {"room_exists", builtin<room_exists>},
    {"game_restart", builtin<game_restart>},
    {"game_end", builtin<game_end>},
    {"show_debug_message", builtin<debug_message>},
    {"get_timer", builtin<get_timer>},
    {"sprite_get_width", builtin<sprite_measure<&SpriteInfo::width>>},
    {"sprite_get_height", builtin<sprite_measure<&SpriteInfo::height>>},
    {"sprite_get_xoffset", builtin<sprite_measure<&SpriteInfo::origin_x>>},
    {"sprite_get_yoffset", builtin<sprite_measure<&SpriteInfo::origin_y>>},
    {"sprite_get_number", builtin<sprite_get_number>},
    {"sprite_get_name", builtin<sprite_get_name>},
    {"sprite_exists", builtin<sprite_exists>},
};
const BuiltinTable table(kEntries);

}  // namespace
}  // namespace arena
