#pragma once
// Instances, the layers they stand on, objects and their events. A function that gives an instance gives its id, or noone (-4).
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(event_inherited, void(), "", "Runs the handler that the parent object has for this event.");
BUILTIN(event_user, void(In<Whole, 0, 15>), "number", "Runs a user event of the caller; there are no others.");
BUILTIN(instance_create_depth, InstanceId(Number, Number, Number, ObjectIndex, Optional<Fields>), "x, y, depth, object, fields",
        "Makes an instance at a depth; it has the fields before its Create event runs.");
BUILTIN(instance_create_layer, InstanceId(Number, Number, LayerName, ObjectIndex, Optional<Fields>), "x, y, layer, object, fields",
        "Makes an instance on a layer; it has the fields before its Create event runs.");
BUILTIN(instance_destroy, void(Optional<Target>, Or<Flag, true>), "target, runs_event",
        "Ends an instance, all of an object, or without a target the caller; its Destroy event may run.");
BUILTIN(instance_find, InstanceId(ObjectIndex, Whole), "object, nth",
        "The instance of an object at a place, from 0, in the order of creation.");
BUILTIN(instance_furthest, InstanceId(Number, Number, ObjectIndex), "x, y, object",
        "The instance of an object that is furthest from a point.");
BUILTIN(instance_nearest, InstanceId(Number, Number, ObjectIndex), "x, y, object", "The instance of an object that is nearest to a point.");
BUILTIN(instance_number, Whole(ObjectIndex), "object", "How many instances of an object exist, its children's included.");
BUILTIN(layer_create, LayerIndex(Number, Optional<Text>), "depth, name", "Makes a layer in this room.");
BUILTIN(layer_exists, Flag(LayerName), "which", "Whether this room has such a layer.");
BUILTIN(layer_get_depth, Number(LayerName), "layer", "The layer's depth.");
BUILTIN(layer_get_id, LayerIndex(Text), "name", "The layer of that name; -1 when there is none.");
BUILTIN(layer_set_visible, void(LayerName, Flag), "layer, visible", "Shows or hides what is on the layer.");
BUILTIN(object_exists, Flag(ObjectIndex), "object", "Whether there is such an object.");
BUILTIN(object_get_name, Text(ObjectIndex), "object", "The object's name.");
BUILTIN(object_get_parent, Number(ObjectIndex), "object", "The object's parent; -100 when it has none.");
BUILTIN(object_is_ancestor, Flag(ObjectIndex, ObjectIndex), "object, ancestor", "Whether the object descends from the other.");

namespace checked {

BUILTIN(instance_exists, Flag(Target), "target", "Whether the instance lives, or one of the object does.");

}  // namespace checked
}  // namespace arena::script
