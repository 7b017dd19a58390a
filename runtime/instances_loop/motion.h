#pragma once
// Built-in motion: speed and direction, their components, friction and gravity.
#include "runtime/instances_loop/instance.h"

namespace arena {

// After a write to direction or speed, and after one to hspeed or vspeed.
void motion_from_direction(CInstance& instance);
void motion_from_components(CInstance& instance);
// One frame of it: friction, gravity, then the position.
void move_instance(CInstance& instance);

// Angle from one point to another, 0 <= angle < 360; 0 for equal points. Computed in doubles.
double point_direction(double x1, double y1, double x2, double y2);
double point_distance(double x1, double y1, double x2, double y2);
double lengthdir_x(double length, double direction);
double lengthdir_y(double length, double direction);

}  // namespace arena
