// Questions about overlaps. An object index includes its children. "precise" off tests the instances' bounding boxes.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/collisions.h"

#include <algorithm>
#include <cmath>

#include "runtime/arrays_structs/containers.h"
#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/collisions.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/compare.h"
#include "runtime/values/elementary.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/resolve.h"

namespace arena {
namespace {

RValue id_or_noone(const CInstance* instance) { return RValue(instance != nullptr ? instance->id : kNoone); }

const CInstance* excluded(const CallContext& call, bool not_me) { return not_me ? instance_of(call.self) : nullptr; }

// The targets of a question: one object, an id, or an array of them.
std::vector<CInstance*> find_all(const CollisionShape& shape, const RValue& targets, bool precise, const CInstance* except) {
  if (!targets.is_array()) return overlapping(shape, to_int32(targets), precise, except);
  std::vector<CInstance*> found;
  const std::int32_t count = targets.array != nullptr ? targets.array->length : 0;
  for (std::int32_t i = 0; i < count; ++i) {
    const std::vector<CInstance*> some = overlapping(shape, to_int32(targets.array->elements[i]), precise, except);
    found.insert(found.end(), some.begin(), some.end());
  }
  std::sort(found.begin(), found.end(), [](const CInstance* a, const CInstance* b) { return a->id < b->id; });
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

// Adds what overlaps to a list, ordered by distance from a point when asked; gives the count.
std::int32_t into_list(std::vector<CInstance*> found, std::int32_t handle, int argument, bool ordered, double x, double y) {
  DsList* list = ds_lists().find(handle);
  if (list == nullptr) {
    report_invalid_resource(argument, "list", handle, -1);
    return 0;
  }
  if (ordered) {
    const auto distance = [&](const CInstance* each) { return (each->x - x) * (each->x - x) + (each->y - y) * (each->y - y); };
    std::stable_sort(found.begin(), found.end(),
                     [&](const CInstance* a, const CInstance* b) { return sorts_before(distance(a), distance(b)); });
  }
  for (const CInstance* instance : found) list->values.push_back(RValue(instance->id));
  return static_cast<std::int32_t>(found.size());
}

RValue collision_point(const CallContext& call, double x, double y, std::int32_t object, bool precise, bool not_me) {
  return id_or_noone(first_overlapping(point_shape(x, y), object, precise, excluded(call, not_me)));
}
RValue collision_circle(const CallContext& call, double x, double y, double radius, std::int32_t object, bool precise, bool not_me) {
  return id_or_noone(first_overlapping(circle_shape(x, y, radius), object, precise, excluded(call, not_me)));
}
RValue collision_rectangle(const CallContext& call, double x1, double y1, double x2, double y2, std::int32_t object, bool precise,
                           bool not_me) {
  return id_or_noone(first_overlapping(rectangle_shape(x1, y1, x2, y2), object, precise, excluded(call, not_me)));
}
RValue collision_ellipse(const CallContext& call, double x1, double y1, double x2, double y2, std::int32_t object, bool precise,
                         bool not_me) {
  return id_or_noone(first_overlapping(ellipse_shape(x1, y1, x2, y2), object, precise, excluded(call, not_me)));
}
RValue collision_line(const CallContext& call, double x1, double y1, double x2, double y2, std::int32_t object, bool precise, bool not_me) {
  return id_or_noone(first_overlapping(segment_shape(x1, y1, x2, y2), object, precise, excluded(call, not_me)));
}
std::int32_t collision_circle_list(const CallContext& call, double x, double y, double radius, const RValue& targets, bool precise,
                                   bool not_me, std::int32_t list, bool ordered) {
  return into_list(find_all(circle_shape(x, y, radius), targets, precise, excluded(call, not_me)), list, 7, ordered, x, y);
}
std::int32_t collision_line_list(const CallContext& call, double x1, double y1, double x2, double y2, const RValue& targets, bool precise,
                                 bool not_me, std::int32_t list, bool ordered) {
  return into_list(find_all(segment_shape(x1, y1, x2, y2), targets, precise, excluded(call, not_me)), list, 8, ordered, x1, y1);
}
std::int32_t collision_rectangle_list(const CallContext& call, double x1, double y1, double x2, double y2, const RValue& targets,
                                      bool precise, bool not_me, std::int32_t list, bool ordered) {
  return into_list(find_all(rectangle_shape(x1, y1, x2, y2), targets, precise, excluded(call, not_me)), list, 8, ordered, (x1 + x2) / 2,
                   (y1 + y2) / 2);
}
RValue instance_place(SelfInstance self, double x, double y, std::int32_t object) {
  return id_or_noone(first_overlapping(shape_at(*self.instance, x, y), object, true, self.instance));
}
bool place_meeting(SelfInstance self, double x, double y, std::int32_t object) {
  return first_overlapping(shape_at(*self.instance, x, y), object, true, self.instance) != nullptr;
}
bool place_empty(SelfInstance self, double x, double y) { return !place_meeting(self, x, y, kAllTarget); }
bool position_meeting(double x, double y, std::int32_t object) {
  return first_overlapping(point_shape(x, y), object, true, nullptr) != nullptr;
}
bool point_in_rectangle(double x, double y, double x1, double y1, double x2, double y2) { return x >= x1 && x <= x2 && y >= y1 && y <= y2; }
bool point_in_circle(double x, double y, double cx, double cy, double radius) {
  return (x - cx) * (x - cx) + (y - cy) * (y - cy) <= radius * radius;
}

double distance_to_box(double x, double y, const Box& box) {
  const double dx = std::max({box.left - x, 0.0, x - box.right}), dy = std::max({box.top - y, 0.0, y - box.bottom});
  return elementary::sqrt(dx * dx + dy * dy);
}
// Between the caller's box and that of the nearest instance; 1e6 when there is none.
double distance_to_object(SelfInstance self, const RValue& target) {
  const Box mine = bounding_box(*self.instance);
  const std::int32_t number = to_int32(target);
  double best = 1e6;
  const auto consider = [&](const CInstance& each) {
    if (!each.is_alive || &each == self.instance) return;
    const Box box = bounding_box(each);
    const double dx = std::max({box.left - mine.right, 0.0, mine.left - box.right}),
                 dy = std::max({box.top - mine.bottom, 0.0, mine.top - box.bottom});
    best = std::min(best, elementary::sqrt(dx * dx + dy * dy));
  };
  if (object_types().has(number)) {
    for (const CInstance* each : object_types().at(number).instances) consider(*each);
  } else if (const CInstance* one = resolve_instance(number)) {
    consider(*one);
  }
  return best;
}
double distance_to_point(SelfInstance self, double x, double y) { return distance_to_box(x, y, bounding_box(*self.instance)); }

constexpr Implementation kRows[] = {
    implement<script::collision_point, collision_point>,
    implement<script::collision_circle, collision_circle>,
    implement<script::collision_rectangle, collision_rectangle>,
    implement<script::collision_ellipse, collision_ellipse>,
    implement<script::collision_line, collision_line>,
    implement<script::collision_circle_list, collision_circle_list>,
    implement<script::collision_line_list, collision_line_list>,
    implement<script::collision_rectangle_list, collision_rectangle_list>,
    implement<script::instance_place, instance_place>,
    implement<script::place_meeting, place_meeting>,
    implement<script::place_empty, place_empty>,
    implement<script::position_meeting, position_meeting>,
    implement<script::point_in_rectangle, point_in_rectangle>,
    implement<script::point_in_circle, point_in_circle>,
    implement<script::distance_to_object, distance_to_object>,
    implement<script::distance_to_point, distance_to_point>,
};
const BuiltinTable table("Overlaps and distances",
                         "An object includes its children; precise off asks the bounding boxes, not_me leaves the caller out.", kRows);

}  // namespace
}  // namespace arena
