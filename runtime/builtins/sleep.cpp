// Sleep, change of object, copies.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/sleep.h"

#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/collision_shapes.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

// An instance by id or reference, awake or asleep; null for none.
CInstance* instance_named(const RValue& target) {
  if (target.is_object()) return instance_of(target.object);
  return is_number_like(target) ? instance_of(resolve_object(target)) : nullptr;
}

bool names_many(const RValue& target, std::int32_t& object) {
  if (!is_number_like(target) || target.is_object()) return false;
  object = to_int32(target);
  return object == kAllTarget || object_types().has(object);
}

bool require_target(const CallContext& call) {
  if (is_number_like(argument_at(call, 0))) return true;
  report_argument_type(call, 0, "instance or object");
  return false;
}

// The one that is meant: the argument, or without it the caller; null after a report.
CInstance* require_instance(const CallContext& call, int at) {
  const RValue& given = argument_at(call, at);
  if (given.is_undefined()) return check_self_instance(call);
  CInstance* const found = instance_named(given);
  if (found != nullptr && (found->is_alive || found->is_asleep)) return found;
  if (is_number_like(given)) {
    report_invalid_resource(at + 1, "instance", to_int32(given), -1);
  } else {
    report_argument_type(call, at, "instance");
  }
  return nullptr;
}

template <class Which>
void sleep_where(const CallContext& call, Which which) {
  const CInstance* const caller = instance_of(call.self);
  const std::vector<CInstance*> all = world().all();
  for (CInstance* const instance : all) {
    if (instance->is_alive && instance != caller && which(*instance)) world().put_to_sleep(*instance);
  }
}
template <class Which>
void wake_where(Which which) {
  const std::vector<CInstance*> all = world().sleeping;
  for (CInstance* const instance : all) {
    if (which(*instance)) world().wake(*instance);
  }
}

bool is_of(const CInstance& instance, std::int32_t object) { return object == kAllTarget || instance.type->descends_from(object); }

void sleep(const CallContext& call, const RValue& target) {
  if (!require_target(call)) return;
  if (std::int32_t object = 0; names_many(target, object)) {
    sleep_where(call, [&](const CInstance& each) { return is_of(each, object); });
  } else if (CInstance* const instance = instance_named(target)) {
    world().put_to_sleep(*instance);
  }
}
void wake(const CallContext& call, const RValue& target) {
  if (!require_target(call)) return;
  if (std::int32_t object = 0; names_many(target, object)) {
    wake_where([&](const CInstance& each) { return is_of(each, object); });
  } else if (CInstance* const instance = instance_named(target)) {
    world().wake(*instance);
  }
}

// -1 after a report.
std::int32_t require_layer(const CallContext& call) {
  const RValue& value = argument_at(call, 0);
  const Layer* layer = value.is_string()       ? world().find_layer(text_of(value))
                       : is_number_like(value) ? world().find_layer(to_int32(value))
                                               : nullptr;
  if (layer != nullptr) return layer->id;
  if (is_number_like(value)) {
    report_invalid_resource(1, "layer", to_int32(value), -1);
  } else {
    report_argument_type(call, 0, value.is_string() ? "layer of this room" : "layer");
  }
  return -1;
}
void sleep_layer(const CallContext& call, const RValue&) {
  if (const std::int32_t layer = require_layer(call); layer >= 0)
    sleep_where(call, [&](const CInstance& each) { return each.layer == layer; });
}
void wake_layer(const CallContext& call, const RValue&) {
  if (const std::int32_t layer = require_layer(call); layer >= 0) wake_where([&](const CInstance& each) { return each.layer == layer; });
}

// A box without any size, of an instance without a sprite, is a point.
bool reaches_into(const CInstance& instance, const Box& region) {
  const Box box = bounding_box(instance);
  return box.left <= region.right && region.left <= box.right && box.top <= region.bottom && region.top <= box.bottom;
}
void sleep_region(const CallContext& call, double left, double top, double right, double bottom, bool inside) {
  sleep_where(call, [&](const CInstance& each) { return reaches_into(each, {left, top, right, bottom}) == inside; });
}
void wake_region(double left, double top, double right, double bottom, bool inside) {
  wake_where([&](const CInstance& each) { return reaches_into(each, {left, top, right, bottom}) == inside; });
}

bool is_asleep(const RValue& which) {
  const CInstance* const found = instance_named(which);
  return found != nullptr && found->is_asleep;
}

void change(const CallContext& call, std::int32_t object, const RValue&, bool runs_events) {
  if (!object_types().has(object)) {
    report_invalid_resource(1, "object", object, object_types().count());
    return;
  }
  if (const CInstance* const instance = require_instance(call, 1)) world().change_object(*instance, object, runs_events);
}

RValue copy(const CallContext& call, const RValue&, bool runs_create) {
  CInstance* const instance = require_instance(call, 0);
  const CInstance* const made = instance != nullptr ? world().copy(*instance, runs_create, call.self) : nullptr;
  return RValue(made != nullptr ? made->id : kNoone);
}

constexpr Implementation kRows[] = {
    implement<script::instance_sleep, sleep>,
    implement<script::instance_sleep_layer, sleep_layer>,
    implement<script::instance_sleep_region, sleep_region>,
    implement<script::instance_wake, wake>,
    implement<script::instance_wake_layer, wake_layer>,
    implement<script::instance_wake_region, wake_region>,
    implement<script::instance_is_asleep, is_asleep>,
    implement<script::instance_change, change>,
    implement<script::instance_copy, copy>,
};
const BuiltinTable table(
    "Sleep, change and copies of instances",
    "A sleeping instance exists and is found by its id, and by nothing else: it has no events, is in no list, meets nobody and is not "
    "drawn; "
    "its alarms and timers stand still. It falls asleep at once; who fell asleep in the same frame wakes at once, others for the next one.",
    kRows);

}  // namespace
}  // namespace arena
