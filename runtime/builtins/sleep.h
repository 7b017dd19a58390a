#pragma once
// Instances that sleep and wake, change their object, or are copied.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(
    instance_change, void(ObjectIndex, Optional<InstanceId>, Or<Flag, true>), "object, instance, runs_events",
    "Makes an instance, or without one the caller, one of another object at the end of the frame; Clean Up of the old one and Create of "
    "the new one may run.");
BUILTIN(instance_copy, InstanceId(Optional<InstanceId>, Or<Flag, false>), "instance, runs_create",
        "Makes an instance with all that another one, or without one the caller, has; its Create event may run.");
BUILTIN(instance_is_asleep, Flag(InstanceId), "instance", "Whether the instance is there and sleeps.");
BUILTIN(instance_sleep, void(Target), "target",
        "Puts an instance, all of an object or all to sleep at once, but the caller only by its id.");
BUILTIN(instance_sleep_layer, void(LayerName), "layer", "Puts to sleep whoever stands on a layer, but the caller.");
BUILTIN(instance_sleep_region, void(Pixels, Pixels, Pixels, Pixels, Or<Flag, true>), "left, top, right, bottom, inside",
        "Puts to sleep whose boxes reach into a region, or whose do not, but the caller.");
BUILTIN(instance_wake, void(Target), "target", "Wakes an instance, all of an object or all for the next frame.");
BUILTIN(instance_wake_layer, void(LayerName), "layer", "Wakes whoever stands on a layer for the next frame.");
BUILTIN(instance_wake_region, void(Pixels, Pixels, Pixels, Pixels, Or<Flag, true>), "left, top, right, bottom, inside",
        "Wakes whose boxes reach into a region, or whose do not, for the next frame.");

}  // namespace arena::script
