// Keyboard, mouse, cameras and views.
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/input_state.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {
namespace {

bool keyboard_check(std::int32_t key) { return key_test(input_state().key_down, key); }
bool keyboard_check_pressed(std::int32_t key) { return key_test(input_state().key_pressed, key); }
bool keyboard_check_released(std::int32_t key) { return key_test(input_state().key_released, key); }
void keyboard_clear(std::int32_t key) {
  if (key < 0 || key >= kKeys) return;
  input_state().key_down[key] = input_state().key_pressed[key] = input_state().key_released[key] = false;
}

std::string keyboard_key_name(std::int32_t key) { return key_name(key); }
std::string keyboard_text() { return input_state().text; }  // typed in this frame

// -1 any button, 0 none, 1 left, 2 right, 3 middle.
bool test_button(const ButtonSet& buttons, std::int32_t button) {
  const bool any = buttons[1] || buttons[2] || buttons[3];
  if (button == -1) return any;
  if (button == 0) return !any;
  return button > 0 && button < kButtons && buttons[static_cast<std::size_t>(button)];
}
bool mouse_check_button(std::int32_t button) { return test_button(input_state().button_down, button); }
bool mouse_check_button_pressed(std::int32_t button) { return test_button(input_state().button_pressed, button); }
bool mouse_check_button_released(std::int32_t button) { return test_button(input_state().button_released, button); }
bool mouse_wheel_up() { return input_state().wheel > 0; }
bool mouse_wheel_down() { return input_state().wheel < 0; }
double device_mouse_x(std::int32_t) { return pointer_in_room().x; }
double device_mouse_y(std::int32_t) { return pointer_in_room().y; }
double device_mouse_x_to_gui(std::int32_t) { return pointer_in_gui().x; }
double device_mouse_y_to_gui(std::int32_t) { return pointer_in_gui().y; }

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
std::int32_t view_get_camera(std::int32_t view) { return view >= 0 && view < kViews ? cameras().views[view].camera : -1; }
void view_set_camera(std::int32_t view, std::int32_t camera) {
  if (view >= 0 && view < kViews) cameras().views[view].camera = camera;
}
void view_set_visible(std::int32_t view, bool visible) {
  if (view >= 0 && view < kViews) cameras().views[view].visible = visible;
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

const BuiltinEntry kEntries[] = {
    {"keyboard_check", builtin<keyboard_check>},
    {"keyboard_check_pressed", builtin<keyboard_check_pressed>},
    {"keyboard_check_released", builtin<keyboard_check_released>},
    {"keyboard_clear", builtin<keyboard_clear>},
    {"keyboard_key_name", builtin<keyboard_key_name>},
    {"keyboard_text", builtin<keyboard_text>},
    {"mouse_check_button", builtin<mouse_check_button>},
    {"mouse_check_button_pressed", builtin<mouse_check_button_pressed>},
    {"mouse_check_button_released", builtin<mouse_check_button_released>},
    {"mouse_wheel_up", builtin<mouse_wheel_up>},
    {"mouse_wheel_down", builtin<mouse_wheel_down>},
    {"device_mouse_x", builtin<device_mouse_x>},
    {"device_mouse_y", builtin<device_mouse_y>},
    {"device_mouse_x_to_gui", builtin<device_mouse_x_to_gui>},
    {"device_mouse_y_to_gui", builtin<device_mouse_y_to_gui>},
    {"view_get_camera", builtin<view_get_camera>},
    {"view_set_camera", builtin<view_set_camera>},
    {"view_set_visible", builtin<view_set_visible>},
    {"camera_create", builtin<camera_create>},
    {"camera_destroy", builtin<camera_destroy>},
    {"camera_set_view_pos", builtin<camera_set_view_pos>},
    {"camera_set_view_size", builtin<camera_set_view_size>},
    {"camera_set_view_angle", builtin<camera_set_view_angle>},
    {"camera_get_view_x", builtin<camera_get<&Camera::x>>},
    {"camera_get_view_y", builtin<camera_get<&Camera::y>>},
    {"camera_get_view_width", builtin<camera_get<&Camera::width>>},
    {"camera_get_view_height", builtin<camera_get<&Camera::height>>},
    {"camera_get_view_angle", builtin<camera_get<&Camera::angle>>},
    {"display_get_gui_width", builtin<display_get_gui_width>},
    {"display_get_gui_height", builtin<display_get_gui_height>},
    {"display_set_gui_size", builtin<display_set_gui_size>},
    {"window_get_width", builtin<window_get_width>},
    {"window_get_height", builtin<window_get_height>},
    {"window_has_focus", builtin<window_has_focus>},
};
const BuiltinTable table(kEntries);

}  // namespace
}  // namespace arena
