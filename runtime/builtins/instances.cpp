// Instances, the layers they stand on, objects and their events.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/instances.h"

#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/resolve.h"

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
RValue create_on_layer(const CallContext& call, double x, double y, const RValue&, std::int32_t object, const RValue&) {
  const Layer* layer = require_layer(call, 2);
  if (layer == nullptr || !require_object_type(4, object)) return RValue(kNoone);
  return id_of(world().create(x, y, layer->id, 0, object, optional_fields(call, 4), call.self));
}
RValue create_at_depth(const CallContext& call, double x, double y, double depth, std::int32_t object, const RValue&) {
  if (!require_object_type(4, object)) return RValue(kNoone);
  return id_of(world().create(x, y, -1, depth, object, optional_fields(call, 4), call.self));
}

void destroy_one(CInstance* instance, bool runs_event) {
  if (instance != nullptr) world().destroy(*instance, runs_event);
}
// Without an argument the caller; with an object index all its instances; with an id or a reference that one.
void destroy(const CallContext& call, const RValue& target, bool runs) {
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
  return found != nullptr && (found->is_alive || found->is_asleep);
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

constexpr Implementation kRows[] = {
    implement<script::instance_create_layer, create_on_layer>,
    implement<script::instance_create_depth, create_at_depth>,
    implement<script::instance_destroy, destroy>,
    implement<script::checked::instance_exists, exists>,
    implement<script::instance_number, number_of>,
    implement<script::instance_find, find_nth>,
    implement<script::instance_nearest, nearest>,
    implement<script::instance_furthest, furthest>,
    implement<script::object_get_name, object_get_name>,
    implement<script::object_get_parent, object_get_parent>,
    implement<script::object_is_ancestor, object_is_ancestor>,
    implement<script::object_exists, object_exists>,
    implement<script::event_inherited, run_inherited>,
    implement<script::event_user, run_user_event>,
    implement<script::layer_get_id, layer_get_id>,
    implement<script::layer_exists, layer_exists>,
    implement<script::layer_create, layer_create>,
    implement<script::layer_get_depth, layer_get_depth>,
    implement<script::layer_set_visible, layer_set_visible>,
};
const BuiltinTable table(
    "Instances, objects, layers",
    "Creating is all or nothing: where a field cannot be written, or the instance's Create event ends by an error, there is no instance, "
    "and the error goes on to the script that wanted it. At most 200,000 instances live at once.",
    kRows);

}  // namespace
}  // namespace arena
