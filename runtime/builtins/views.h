#pragma once
// Cameras, the views that show what they see, and the sizes of GUI and window.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(camera_create, CameraIndex(), "", "Makes a camera.");
BUILTIN(camera_destroy, void(CameraIndex), "id", "Ends a camera.");
BUILTIN(camera_get_view_angle, Degrees(CameraIndex), "id", "How far the camera is turned.");
BUILTIN(camera_get_view_height, Pixels(CameraIndex), "id", "The height of what the camera sees.");
BUILTIN(camera_get_view_width, Pixels(CameraIndex), "id", "The width of what the camera sees.");
BUILTIN(camera_get_view_x, Pixels(CameraIndex), "id", "The left edge of what the camera sees.");
BUILTIN(camera_get_view_y, Pixels(CameraIndex), "id", "The top edge of what the camera sees.");
BUILTIN(camera_set_view_angle, void(CameraIndex, Degrees), "id, angle", "Turns the camera.");
BUILTIN(camera_set_view_pos, void(CameraIndex, Pixels, Pixels), "id, x, y", "Moves the left and the top edge of what the camera sees.");
BUILTIN(camera_set_view_size, void(CameraIndex, Pixels, Pixels), "id, width, height", "Sets how much the camera sees.");
BUILTIN(display_get_gui_height, Pixels(), "", "The height of the GUI.");
BUILTIN(display_get_gui_width, Pixels(), "", "The width of the GUI.");
BUILTIN(display_set_gui_size, void(Pixels, Pixels), "width, height", "Sets the size of the GUI.");
BUILTIN(view_get_camera, CameraIndex(In<Whole, 0, 7>), "view", "The view's camera; -1 of no such view.");
BUILTIN(view_set_camera, void(In<Whole, 0, 7>, CameraIndex), "view, camera", "Gives the view a camera.");
BUILTIN(view_set_visible, void(In<Whole, 0, 7>, Flag), "view, visible", "Shows or hides the view.");
BUILTIN(window_get_height, Whole(), "", "The height of the window in pixels.");
BUILTIN(window_get_width, Whole(), "", "The width of the window in pixels.");
BUILTIN(window_has_focus, Flag(), "", "Whether the window has the keyboard.");

}  // namespace arena::script
