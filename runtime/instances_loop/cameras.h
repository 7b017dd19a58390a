#pragma once
// Cameras, the views of a room, and the mapping between window, GUI layer and room.
#include <array>
#include <cstdint>
#include <tuple>
#include <vector>

#include "runtime/session/state.h"

namespace arena {

inline constexpr int kViews = 8;

struct Camera {
  double x = 0, y = 0, width = 1920, height = 1080;  // top left corner and size, room pixels
  double angle = 0;                                  // degrees
  bool exists = false;
  static constexpr auto fields() {
    return std::tuple(field("x", &Camera::x), field("y", &Camera::y), field("width", &Camera::width), field("height", &Camera::height),
                      field("angle", &Camera::angle), field("exists", &Camera::exists));
  }
};

struct View {
  std::int32_t camera = -1;
  bool visible = false;
  static constexpr auto fields() { return std::tuple(field("camera", &View::camera), field("visible", &View::visible)); }
};

struct Cameras {
  std::vector<Camera> cameras;
  std::array<View, kViews> views;
  double gui_width = 0, gui_height = 0;  // size of the GUI layer; 0: that of the window

  void restart() { gui_width = gui_height = 0; }  // the first room brings its own cameras
  static constexpr auto fields() {
    return std::tuple(field("cameras", &Cameras::cameras), field("views", &Cameras::views), field("gui_width", &Cameras::gui_width),
                      field("gui_height", &Cameras::gui_height));
  }
};

Cameras& cameras();
std::int32_t camera_create();
Camera* find_camera(std::int32_t id);
// The camera of the first visible view; without one, a camera over the whole room.
Camera active_camera();
double gui_width();
double gui_height();
// A fresh set for a room: view 0 on, with camera 0. The size of the GUI layer is not the room's and stays.
void reset_cameras(double width, double height);

struct Point {
  double x, y;
};
Point window_to_room(Point window);
Point room_to_window(Point room);
Point window_to_gui(Point window);
Point gui_to_window(Point gui);
// Where the pointer is, whatever it was given in.
Point pointer_in_room();
Point pointer_in_gui();

}  // namespace arena
