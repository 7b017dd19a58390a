#include "runtime/instances_loop/crossings.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>
#include <vector>

#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/collision_shapes.h"
#include "runtime/instances_loop/world.h"

namespace arena {
namespace {

constexpr std::int32_t kAreas = 1 + kViews;  // the room and the views

// Who was where in the frame before, by ids in order.
struct Crossings {
  std::vector<std::int32_t> pointed;                     // under the pointer
  std::array<std::vector<std::int32_t>, kAreas> inside;  // of the room, of the views
  void visit_content(StateVisitor& visitor) {
    const auto show = [&](const char* name, std::vector<std::int32_t>& ids) {
      if (ids.empty()) return;
      visitor.name(name);
      visit_state(visitor, ids);
    };
    show("pointed", pointed);
    for (std::vector<std::int32_t>& each : inside) show("inside", each);
  }
  static constexpr auto fields() { return std::tuple(derived("pointed", &Crossings::pointed), derived("inside", &Crossings::inside)); }
};
const StatePart<Crossings> part{PartLevel::kWorld, "crossings"};

EventList* participants(EventKey key) {
  const auto entry = object_types().lists().find(key);
  return entry == object_types().lists().end() || entry->second.empty() ? nullptr : &entry->second;
}

// Those events come last in the order of kinds.
bool anybody_handles(EventKind first, EventKind last) {
  const auto from = object_types().lists().lower_bound({first, 0});
  return from != object_types().lists().end() && from->first.kind <= last;
}

// Whether anybody took part.
bool run_for_all(EventKey key) {
  EventList* const list = participants(key);
  if (list == nullptr) return false;
  bool has_run = false;
  const std::size_t count = list->size();
  for (std::size_t i = 0; i < count && i < list->size(); ++i) {
    const Participant each = (*list)[i];
    if (!each.instance->is_alive) continue;
    run_handler(*each.instance, each.instance, *each.event);
    has_run = true;
  }
  return has_run;
}

// The living participants of two events, each once, in order of creation.
std::vector<CInstance*> participants_of_both(EventKey one, EventKey other) {
  std::vector<CInstance*> all;
  for (const EventKey key : {one, other}) {
    if (const EventList* const list = participants(key)) {
      for (const Participant& each : *list) {
        if (each.instance->is_alive) all.push_back(each.instance);
      }
    }
  }
  std::sort(all.begin(), all.end(), [](const CInstance* a, const CInstance* b) { return a->id < b->id; });
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

bool has(const std::vector<std::int32_t>& ids, std::int32_t id) { return std::binary_search(ids.begin(), ids.end(), id); }

void run_pointer_events() {
  const EventKey enters{EventKind::kPointer, kPointerEnters}, leaves{EventKind::kPointer, kPointerLeaves};
  const std::vector<CInstance*> all = participants_of_both(enters, leaves);
  const Point pointer = pointer_in_room();
  std::vector<std::int32_t> pointed;
  for (const CInstance* instance : all) {
    if (!input_state().is_pointer_inside) break;  // over nothing
    if (shapes_overlap(shape_of(*instance), point_shape(pointer.x, pointer.y))) pointed.push_back(instance->id);
  }
  const std::vector<std::int32_t> before = std::exchange(part().pointed, pointed);
  for (CInstance* const instance : all) {
    const bool was = has(before, instance->id), is = has(pointed, instance->id);
    if (was != is && instance->is_alive) run_event(*instance, instance, is ? enters : leaves);
  }
}

void run_window_events() {
  for (const InputEvent& event : applied_input()) {  // what handlers push comes with the next frame
    switch (event.type) {
      case InputEvent::Type::kClose:
        if (!run_for_all({EventKind::kWindow, kWindowClose})) world().ended = true;
        break;
      case InputEvent::Type::kWindowSize: run_for_all({EventKind::kWindow, kWindowResize}); break;
      case InputEvent::Type::kFocus: run_for_all({EventKind::kWindow, event.value != 0 ? kWindowFocus : kWindowFocusLost}); break;
      default: break;
    }
  }
}

// False: there is no such area now.
bool area_of(std::int32_t number, Box& area) {
  if (number == kOutsideRoom) {
    area = {0, 0, world().room_width, world().room_height};
    return true;
  }
  const View& view = cameras().views[static_cast<std::size_t>(number - kOutsideView)];
  const Camera* const camera = view.visible ? find_camera(view.camera) : nullptr;
  if (camera != nullptr) area = {camera->x, camera->y, camera->x + camera->width, camera->y + camera->height};
  return camera != nullptr;
}

bool is_inside(const CInstance& instance, const Box& area) {
  const Box box = bounding_box(instance);
  // A box without any size overlaps nothing.
  return box.left <= area.right && area.left <= box.right && box.top <= area.bottom && area.top <= box.bottom;
}

void run_outside_events(std::int32_t number) {
  const EventKey key{EventKind::kOutside, number};
  std::vector<std::int32_t>& inside = part().inside[static_cast<std::size_t>(number)];
  const EventList* const list = participants(key);
  Box area;
  if (list == nullptr || !area_of(number, area)) {
    inside.clear();
    return;
  }
  std::vector<std::int32_t> now;
  std::vector<CInstance*> left;
  for (const Participant& each : *list) {
    if (!each.instance->is_alive) continue;
    if (is_inside(*each.instance, area)) {
      now.push_back(each.instance->id);
    } else if (has(inside, each.instance->id)) {
      left.push_back(each.instance);
    }
  }
  inside = std::move(now);
  for (CInstance* const instance : left) {
    if (instance->is_alive) run_event(*instance, instance, key);
  }
}

}  // namespace

void run_wheel_pointer_and_window_events() {
  if (anybody_handles(EventKind::kWheel, EventKind::kPointer)) {
    if (input_state().wheel_up > 0) run_for_all({EventKind::kWheel, kWheelUp});
    if (input_state().wheel_down > 0) run_for_all({EventKind::kWheel, kWheelDown});
    run_pointer_events();
  }
  if (!applied_input().empty()) run_window_events();
}

void run_outside_events() {
  if (!anybody_handles(EventKind::kOutside, EventKind::kOutside)) return;
  for (std::int32_t number = 0; number < kAreas; ++number) run_outside_events(number);
}

}  // namespace arena
