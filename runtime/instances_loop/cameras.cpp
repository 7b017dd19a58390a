#include "runtime/instances_loop/cameras.h"

#include <utility>

#include "runtime/input/input_state.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/elementary.h"
#include "runtime/values/refs.h"

namespace arena {
namespace {

const StatePart<Cameras> part{PartLevel::kWorld, "cameras"};
const RefKind camera_refs{ref_type::kCamera, "camera"};

double window_width() { return input_state().window_width > 0 ? input_state().window_width : 1; }
double window_height() { return input_state().window_height > 0 ? input_state().window_height : 1; }

Point turned(Point point, Point centre, double degrees) {
  if (degrees == 0) return point;
  const double angle = degrees * elementary::kPi / 180.0, c = elementary::cos(angle), s = elementary::sin(angle);
  const double dx = point.x - centre.x, dy = point.y - centre.y;
  return {centre.x + dx * c + dy * s, centre.y - dx * s + dy * c};
}

}  // namespace

Cameras& cameras() { return part(); }

std::int32_t camera_create() {
  Camera camera;
  camera.exists = true;
  cameras().cameras.push_back(camera);
  return static_cast<std::int32_t>(cameras().cameras.size()) - 1;
}

Camera* find_camera(std::int32_t id) {
  std::vector<Camera>& all = cameras().cameras;
  if (id < 0 || static_cast<std::size_t>(id) >= all.size() || !all[static_cast<std::size_t>(id)].exists) return nullptr;
  return &all[static_cast<std::size_t>(id)];
}

Camera active_camera() {
  for (const View& view : cameras().views) {
    if (!view.visible) continue;
    if (const Camera* camera = find_camera(view.camera)) return *camera;
  }
  Camera whole;
  whole.width = world().room_width;
  whole.height = world().room_height;
  return whole;
}

void reset_cameras(double width, double height) {
  const Cameras before = std::exchange(cameras(), Cameras());
  cameras().gui_width = before.gui_width;
  cameras().gui_height = before.gui_height;
  const std::int32_t camera = camera_create();
  find_camera(camera)->width = width;
  find_camera(camera)->height = height;
  cameras().views[0] = {camera, true};
}

double gui_width() { return cameras().gui_width > 0 ? cameras().gui_width : window_width(); }
double gui_height() { return cameras().gui_height > 0 ? cameras().gui_height : window_height(); }

Point window_to_room(Point window) {
  const Camera camera = active_camera();
  const Point straight{camera.x + window.x / window_width() * camera.width, camera.y + window.y / window_height() * camera.height};
  return turned(straight, {camera.x + camera.width / 2, camera.y + camera.height / 2}, camera.angle);
}

Point room_to_window(Point room) {
  const Camera camera = active_camera();
  const Point straight = turned(room, {camera.x + camera.width / 2, camera.y + camera.height / 2}, -camera.angle);
  return {(straight.x - camera.x) / camera.width * window_width(), (straight.y - camera.y) / camera.height * window_height()};
}

Point window_to_gui(Point window) { return {window.x / window_width() * gui_width(), window.y / window_height() * gui_height()}; }
Point gui_to_window(Point gui) { return {gui.x / gui_width() * window_width(), gui.y / gui_height() * window_height()}; }

Point pointer_in_room() {
  const InputState& input = input_state();
  const Point pointer{input.pointer_x, input.pointer_y};
  if (input.pointer_space == PointerSpace::kRoom) return pointer;
  return window_to_room(input.pointer_space == PointerSpace::kGui ? gui_to_window(pointer) : pointer);
}

Point pointer_in_gui() {
  const InputState& input = input_state();
  const Point pointer{input.pointer_x, input.pointer_y};
  if (input.pointer_space == PointerSpace::kGui) return pointer;
  return window_to_gui(input.pointer_space == PointerSpace::kRoom ? room_to_window(pointer) : pointer);
}

}  // namespace arena
