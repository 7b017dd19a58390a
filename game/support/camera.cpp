#include "game/support/camera.h"

#include "toolkit/support/motion.h"

namespace game {
extern const Constructor TarnCamera;
namespace {

const Variable width{"width"}, height{"height"}, target_object{"target_object"}, x_offset{"x_offset"}, y_offset{"y_offset"};
const Variable width_half{"width_half"}, height_half{"height_half"}, x1{"x1"}, y1{"y1"}, x2{"x2"}, y2{"y2"};
const Variable view_index{"view_index"}, camera_view{"camera_view"}, smoothness{"smoothness"}, max_distance{"max_distance"};
const Variable debug_enabled{"debug_enabled"}, shake{"shake"}, shake_length{"shake_length"}, shake_length_max{"shake_length_max"};
const Variable shake_magnitude{"shake_magnitude"}, camera_zoom{"camera_zoom"}, camera_zoom_target{"camera_zoom_target"};
const Variable camera_zoom_max{"camera_zoom_max"}, camera_zoom_min{"camera_zoom_min"}, camera_zoom_smoothness{"camera_zoom_smoothness"};
const Variable camera_angle{"camera_angle"}, camera_angle_target{"camera_angle_target"}, camera_angle_smoothness{"camera_angle_smoothness"};
const Variable camera_width_offset{"camera_width_offset"}, camera_height_offset{"camera_height_offset"};
const Variable last_window_width{"last_window_width"}, last_window_height{"last_window_height"};
const Variable debug_x1{"debug_x1"}, debug_y1{"debug_y1"}, debug_x2{"debug_x2"}, debug_y2{"debug_y2"}, instance{"instance"};
const Variable updateViewSize{"updateViewSize"}, setViewSize{"setViewSize"}, getViewSize{"getViewSize"};
const Variable zoomIn{"zoomIn"}, zoomOut{"zoomOut"}, setTarget{"setTarget"}, setOffset{"setOffset"}, setSmoothness{"setSmoothness"};
const Variable setZoomSmoothness{"setZoomSmoothness"}, setMaxDistance{"setMaxDistance"}, setAngle{"setAngle"};
const Variable setAngleSmoothness{"setAngleSmoothness"}, toggleDebugMode{"toggleDebugMode"};
const Variable view_camera{"view_camera"};

constexpr Real kZoomStep = 0.1;                   // of zoomIn and zoomOut: ten steps from normal to double
constexpr Real kDebugLine = 0x00FFFF;             // yellow
constexpr Real kDebugInset = 8, kDebugMark = 16;  // pixels

// What the view shows in its middle: the camera and, beside it, the offset. The camera itself knows nothing of the offset, so that the
// smoothing does not chase it.
Real middle_x(const ObjectSelf& self) { return self[x] + Value(self[x_offset]); }
Real middle_y(const ObjectSelf& self) { return self[y] + Value(self[y_offset]); }

// The corners of the view around its middle.
void place_rectangle(ObjectSelf self) {
  const Real across = middle_x(self), down = middle_y(self);
  self[x1] = across - Value(self[width_half]);
  self[y1] = down - Value(self[height_half]);
  self[x2] = across + Value(self[width_half]);
  self[y2] = down + Value(self[height_half]);
}

// Towards the wanted value; at once when the smoothing is off.
Real approached(Real from, Real to, Real amount) { return amount == 0 ? to : SmoothApproachDelta(from, to, amount); }

}  // namespace
}  // namespace game

METHOD(void, TarnCamera, init, Value target) {
  if (!is_undefined(target)) self[target_object] = target;
  self[x_offset] = 0;
  self[y_offset] = 0;
  self[camera_zoom] = 1;
  self[camera_zoom_target] = 1;
  self[shake] = 0;
  self[camera_angle] = 0;
  self[camera_angle_target] = 0;
  self[updateViewSize]();
}

// A zoom of 2 shows everything at twice its size. The height rules and the width follows the window's proportions, so that any window
// shows the world undistorted; the factors stretch either side on purpose.
METHOD(void, TarnCamera, updateViewSize) {
  const Real window_width = window_get_width(), window_height = window_get_height();
  Real proportion = window_width / window_height;
  if (window_height <= 0 || window_width <= 0) proportion = self[width] / self[height];
  const Real zoom = self[camera_zoom];
  const Real view_height = self[height] / zoom * self[camera_height_offset];
  const Real view_width = self[height] / zoom * proportion * self[camera_width_offset];
  self[last_window_width] = window_width;
  self[last_window_height] = window_height;
  self[width_half] = floor(view_width / 2);
  self[height_half] = floor(view_height / 2);
  self[camera_view] = view_get_camera(self[view_index]);
  camera_set_view_size(self[camera_view], view_width, view_height);
  place_rectangle(self);
}

METHOD(void, TarnCamera, update) {
  const Real dt = global[dt_steady];

  // Zoom
  const bool resized = window_get_width() != self[last_window_width] || window_get_height() != self[last_window_height];
  if (resized || self[camera_zoom] != self[camera_zoom_target]) {
    const Real wanted = clamp(self[camera_zoom_target], self[camera_zoom_min], self[camera_zoom_max]);
    self[camera_zoom] = approached(self[camera_zoom], wanted, self[camera_zoom_smoothness]);
    self[updateViewSize]();
  }

  // Angle
  if (self[camera_angle] != self[camera_angle_target]) {
    self[camera_angle] = approached(self[camera_angle], self[camera_angle_target], self[camera_angle_smoothness]);
    camera_set_view_angle(self[camera_view], self[camera_angle]);
  }

  // Follow, on the leash
  const Value target = self[target_object];
  if (target != noone && instance_exists(target)) {
    const Real target_x = target[x], target_y = target[y];
    self[x] = approached(self[x], target_x, self[smoothness]);
    self[y] = approached(self[y], target_y, self[smoothness]);
    if (point_distance(self[x], self[y], target_x, target_y) > self[max_distance]) {
      const Real behind = point_direction(target_x, target_y, self[x], self[y]);
      self[x] = target_x + lengthdir_x(self[max_distance], behind);
      self[y] = target_y + lengthdir_y(self[max_distance], behind);
    }
  }

  // Shake. It ends when its time has run out.
  if (self[shake] > 0) {
    const Real reach = self[shake];
    self[x] += random_range(-reach, reach);
    self[y] += random_range(-reach, reach);
    self[shake] = self[shake_length] > 0 ? self[shake_magnitude] * self[shake_length] / self[shake_length_max] : Value(0);
    self[shake_length] -= dt;
  }

  camera_set_view_pos(self[camera_view], middle_x(self) - Value(self[width_half]), middle_y(self) - Value(self[height_half]));
  place_rectangle(self);

  if (self[debug_enabled]) {
    const Real across = camera_get_view_width(self[camera_view]), down = camera_get_view_height(self[camera_view]);
    self[debug_x1] = middle_x(self) - across / 2;
    self[debug_y1] = middle_y(self) - down / 2;
    self[debug_x2] = middle_x(self) + across / 2;
    self[debug_y2] = middle_y(self) + down / 2;
  }
}

// In room coordinates: the view's frame a little inside its edge, the camera, its target with the leash, and numbers. What was set for
// drawing stays as it was.
METHOD(void, TarnCamera, drawDebug) {
  if (!self[debug_enabled]) return;
  const Value colour_before = draw_get_colour(), alpha_before = draw_get_alpha(), font_before = draw_get_font(),
              halign_before = draw_get_halign(), valign_before = draw_get_valign();
  draw_set_colour(kDebugLine);
  draw_set_alpha(1);
  draw_rectangle(self[x1] + kDebugInset, self[y1] + kDebugInset, self[x2] - kDebugInset, self[y2] - kDebugInset, true);
  draw_circle(self[x], self[y], kDebugMark, true);
  const Value target = self[target_object];
  if (target != noone && instance_exists(target)) {
    const Real target_x = target[x], target_y = target[y];
    draw_circle(target_x, target_y, self[max_distance], true);
    draw_line(target_x - kDebugMark, target_y, target_x + kDebugMark, target_y);
    draw_line(target_x, target_y - kDebugMark, target_x, target_y + kDebugMark);
  }
  draw_set_font(fntUi);
  draw_set_halign(fa_left);
  draw_set_valign(fa_top);
  draw_text(self[x1] + 2 * kDebugInset, self[y1] + 2 * kDebugInset,
            string_of("zoom {0}  shake {1}  angle {2}", self[camera_zoom], self[shake], self[camera_angle]));
  draw_set_colour(colour_before);
  draw_set_alpha(alpha_before);
  draw_set_font(font_before);
  draw_set_halign(halign_before);
  draw_set_valign(valign_before);
}

METHOD(void, TarnCamera, setViewSize, Value to_width, Value to_height) {
  self[width] = to_width;
  self[height] = to_height;
  self[updateViewSize]();
}

METHOD(Value, TarnCamera, getViewSize) { return struct_of({{width, self[width]}, {height, self[height]}}); }

METHOD(void, TarnCamera, zoomIn) { self[camera_zoom_target] = min(self[camera_zoom_target] + kZoomStep, self[camera_zoom_max]); }

METHOD(void, TarnCamera, zoomOut) { self[camera_zoom_target] = max(self[camera_zoom_target] - kZoomStep, self[camera_zoom_min]); }

METHOD(void, TarnCamera, setPosition, Value to_x, Value to_y) {
  self[x] = to_x;
  self[y] = to_y;
  place_rectangle(self);
}

METHOD(Value, TarnCamera, setTarget, Value target) { return self[target_object] = target, undefined; }
METHOD(void, TarnCamera, setOffset, Value across, Value down) {
  self[x_offset] = across;
  self[y_offset] = down;
}

// A weaker shake never cuts a stronger one short. Pixels and seconds.
METHOD(void, TarnCamera, applyShake, Value magnitude, Value length) {
  if (magnitude > self[shake]) {
    self[shake] = magnitude;
    self[shake_magnitude] = magnitude;
    self[shake_length] = length;
    self[shake_length_max] = length;
  }
}

METHOD(Value, TarnCamera, setSmoothness, Value amount) { return self[smoothness] = amount, undefined; }
METHOD(Value, TarnCamera, setZoomSmoothness, Value amount) { return self[camera_zoom_smoothness] = amount, undefined; }
METHOD(Value, TarnCamera, setMaxDistance, Value distance) { return self[max_distance] = distance, undefined; }
METHOD(Value, TarnCamera, setAngle, Value degrees) { return self[camera_angle_target] = degrees, undefined; }
METHOD(Value, TarnCamera, setAngleSmoothness, Value amount) { return self[camera_angle_smoothness] = amount, undefined; }
METHOD(Value, TarnCamera, toggleDebugMode) { return self[debug_enabled] = !self[debug_enabled], undefined; }

CONSTRUCTOR(TarnCamera) {
  self[x] = room_width / 2;
  self[y] = room_height / 2;
  self[width] = 1920;
  self[height] = 1080;
  self[target_object] = noone;
  self[x_offset] = 0;
  self[y_offset] = 0;
  self[width_half] = floor(self[width] / 2);
  self[height_half] = floor(self[height] / 2);
  place_rectangle(self);
  self[view_index] = 0;
  self[camera_view] = view_get_camera(0);
  self[smoothness] = 0.1;
  self[max_distance] = 512;
  self[debug_enabled] = false;
  self[shake] = 0;
  self[shake_length] = 0;
  self[shake_length_max] = 0;
  self[shake_magnitude] = 0;
  self[camera_zoom] = 1;
  self[camera_zoom_target] = 1;
  self[camera_zoom_max] = 2;
  self[camera_zoom_min] = 0.1;
  self[camera_zoom_smoothness] = 0.1;
  self[camera_angle] = 0;
  self[camera_angle_target] = 0;
  self[camera_angle_smoothness] = 0.1;
  self[camera_width_offset] = 1;
  self[camera_height_offset] = 1;
  self[last_window_width] = window_get_width();
  self[last_window_height] = window_get_height();

  self[init] = bind(self, TarnCamera_init);
  self[updateViewSize] = bind(self, TarnCamera_updateViewSize);
  self[update] = bind(self, TarnCamera_update);
  self[drawDebug] = bind(self, TarnCamera_drawDebug);
  self[setViewSize] = bind(self, TarnCamera_setViewSize);
  self[getViewSize] = bind(self, TarnCamera_getViewSize);
  self[zoomIn] = bind(self, TarnCamera_zoomIn);
  self[zoomOut] = bind(self, TarnCamera_zoomOut);
  self[setPosition] = bind(self, TarnCamera_setPosition);
  self[setTarget] = bind(self, TarnCamera_setTarget);
  self[setOffset] = bind(self, TarnCamera_setOffset);
  self[applyShake] = bind(self, TarnCamera_applyShake);
  self[setSmoothness] = bind(self, TarnCamera_setSmoothness);
  self[setZoomSmoothness] = bind(self, TarnCamera_setZoomSmoothness);
  self[setMaxDistance] = bind(self, TarnCamera_setMaxDistance);
  self[setAngle] = bind(self, TarnCamera_setAngle);
  self[setAngleSmoothness] = bind(self, TarnCamera_setAngleSmoothness);
  self[toggleDebugMode] = bind(self, TarnCamera_toggleDebugMode);
}

SCRIPT(getTarnCamera) {
  ObjectSelf kept = statics(getTarnCamera);
  if (kept.object()->find_variable(instance.slot) == nullptr) kept[instance] = TarnCamera.make();
  return kept[instance];
}
