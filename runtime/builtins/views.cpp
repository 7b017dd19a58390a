// Cameras, views, and the sizes of GUI and window.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/views.h"

#include "runtime/builtins/implement.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"

namespace arena {
namespace {

Camera* require_camera(std::int32_t id) {
  Camera* camera = find_camera(id);
  if (camera == nullptr) report_invalid_resource(1, "camera", id, -1);
  return camera;
}
void camera_set_view_pos(std::int32_t id, double x, double y) {
  if (Camera* camera = require_camera(id)) {
    camera->x = x;
    camera->y = y;
  }
}
void camera_set_view_size(std::int32_t id, double width, double height) {
  if (Camera* camera = require_camera(id)) {
    camera->width = width;
    camera->height = height;
  }
}
void camera_set_view_angle(std::int32_t id, double angle) {
  if (Camera* camera = require_camera(id)) camera->angle = angle;
}
template <double Camera::*measure>
double camera_get(std::int32_t id) {
  const Camera* camera = require_camera(id);
  return camera != nullptr ? camera->*measure : 0;
}
std::int32_t view_get_camera(std::int32_t view) { return view >= 0 && view < kViews ? cameras().views.data()[view].camera : -1; }
void view_set_camera(std::int32_t view, std::int32_t camera) {
  if (view >= 0 && view < kViews) cameras().views.data()[view].camera = camera;
}
void view_set_visible(std::int32_t view, bool visible) {
  if (view >= 0 && view < kViews) cameras().views.data()[view].visible = visible;
}
void camera_destroy(std::int32_t id) {
  if (Camera* camera = require_camera(id)) camera->exists = false;
}
double display_get_gui_width() { return gui_width(); }
double display_get_gui_height() { return gui_height(); }
void display_set_gui_size(double width, double height) {
  cameras().gui_width = width;
  cameras().gui_height = height;
}
std::int32_t window_get_width() { return input_state().window_width; }
std::int32_t window_get_height() { return input_state().window_height; }
bool window_has_focus() { return input_state().has_focus; }

constexpr Implementation kRows[] = {
    implement<script::view_get_camera, view_get_camera>,
    implement<script::view_set_camera, view_set_camera>,
    implement<script::view_set_visible, view_set_visible>,
    implement<script::camera_create, camera_create>,
    implement<script::camera_destroy, camera_destroy>,
    implement<script::camera_set_view_pos, camera_set_view_pos>,
    implement<script::camera_set_view_size, camera_set_view_size>,
    implement<script::camera_set_view_angle, camera_set_view_angle>,
    implement<script::camera_get_view_x, camera_get<&Camera::x>>,
    implement<script::camera_get_view_y, camera_get<&Camera::y>>,
    implement<script::camera_get_view_width, camera_get<&Camera::width>>,
    implement<script::camera_get_view_height, camera_get<&Camera::height>>,
    implement<script::camera_get_view_angle, camera_get<&Camera::angle>>,
    implement<script::display_get_gui_width, display_get_gui_width>,
    implement<script::display_get_gui_height, display_get_gui_height>,
    implement<script::display_set_gui_size, display_set_gui_size>,
    implement<script::window_get_width, window_get_width>,
    implement<script::window_get_height, window_get_height>,
    implement<script::window_has_focus, window_has_focus>,
};
const BuiltinTable table("Cameras and views", "", kRows);

}  // namespace
}  // namespace arena
