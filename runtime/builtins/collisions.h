#pragma once
// Overlaps and distances. An object includes its children; "precise" off asks the bounding boxes, "not_me" leaves the caller out.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(collision_circle, InstanceId(Pixels, Pixels, Pixels, ObjectIndex, Flag, Flag), "x, y, radius, object, precise, not_me",
        "An instance that overlaps the circle, or noone.");
BUILTIN(collision_circle_list, Whole(Pixels, Pixels, Pixels, Targets, Flag, Flag, ListNumber, Flag),
        "x, y, radius, targets, precise, not_me, list, ordered",
        "Adds all that overlap the circle to the list, the nearest first when ordered, and gives their number.");
BUILTIN(collision_ellipse, InstanceId(Pixels, Pixels, Pixels, Pixels, ObjectIndex, Flag, Flag), "x1, y1, x2, y2, object, precise, not_me",
        "An instance that overlaps the ellipse inside a box, or noone.");
BUILTIN(collision_line, InstanceId(Pixels, Pixels, Pixels, Pixels, ObjectIndex, Flag, Flag), "x1, y1, x2, y2, object, precise, not_me",
        "An instance that overlaps the line, or noone.");
BUILTIN(collision_line_list, Whole(Pixels, Pixels, Pixels, Pixels, Targets, Flag, Flag, ListNumber, Flag),
        "x1, y1, x2, y2, targets, precise, not_me, list, ordered",
        "Adds all that overlap the line to the list, those nearest to its beginning first when ordered, and gives their number.");
BUILTIN(collision_point, InstanceId(Pixels, Pixels, ObjectIndex, Flag, Flag), "x, y, object, precise, not_me",
        "An instance that covers the point, or noone.");
BUILTIN(collision_rectangle, InstanceId(Pixels, Pixels, Pixels, Pixels, ObjectIndex, Flag, Flag), "x1, y1, x2, y2, object, precise, not_me",
        "An instance that overlaps the rectangle, or noone.");
BUILTIN(collision_rectangle_list, Whole(Pixels, Pixels, Pixels, Pixels, Targets, Flag, Flag, ListNumber, Flag),
        "x1, y1, x2, y2, targets, precise, not_me, list, ordered",
        "Adds all that overlap the rectangle to the list, those nearest to its middle first when ordered, and gives their number.");
BUILTIN(distance_to_object, Pixels(Target), "target",
        "From the caller's bounding box to that of the nearest instance; 1000000 when there is none.");
BUILTIN(distance_to_point, Pixels(Pixels, Pixels), "x, y", "From the caller's bounding box to the point.");
BUILTIN(instance_place, InstanceId(Pixels, Pixels, ObjectIndex), "x, y, object",
        "An instance that the caller would overlap if it stood there, or noone.");
BUILTIN(place_empty, Flag(Pixels, Pixels), "x, y", "Whether the caller would overlap nothing if it stood there.");
BUILTIN(place_meeting, Flag(Pixels, Pixels, ObjectIndex), "x, y, object",
        "Whether the caller would overlap an instance of the object if it stood there.");
BUILTIN(point_in_circle, Flag(Pixels, Pixels, Pixels, Pixels, Pixels), "x, y, cx, cy, radius", "Whether the point lies in the circle.");
BUILTIN(point_in_rectangle, Flag(Pixels, Pixels, Pixels, Pixels, Pixels, Pixels), "x, y, x1, y1, x2, y2",
        "Whether the point lies in the rectangle.");
BUILTIN(position_meeting, Flag(Pixels, Pixels, ObjectIndex), "x, y, object", "Whether an instance of the object covers the point.");

}  // namespace arena::script
