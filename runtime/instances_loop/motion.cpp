#include "runtime/instances_loop/motion.h"

#include "runtime/values/elementary.h"

namespace arena {
namespace {
constexpr double kDegree = elementary::kPi / 180.0;
}

double point_distance(double x1, double y1, double x2, double y2) {
  const double dx = x2 - x1, dy = y2 - y1;
  return elementary::sqrt(dx * dx + dy * dy);
}

double point_direction(double x1, double y1, double x2, double y2) {
  const double dx = x2 - x1, dy = y1 - y2;
  if (dx == 0 && dy == 0) return 0;
  const double degrees = elementary::atan2(dy, dx) / kDegree;
  return degrees < 0 ? degrees + 360.0 : degrees;
}

// Quarter turns are exact, so that an axis-aligned shot stays on its axis.
double lengthdir_x(double length, double direction) {
  if (direction == 90 || direction == 270 || direction == -90) return 0;
  return length * elementary::cos(direction * kDegree);
}

double lengthdir_y(double length, double direction) {
  if (direction == 0 || direction == 180 || direction == 360) return 0;
  return -length * elementary::sin(direction * kDegree);
}

void motion_from_direction(CInstance& instance) {
  instance.hspeed = lengthdir_x(instance.speed, instance.direction);
  instance.vspeed = lengthdir_y(instance.speed, instance.direction);
}

void motion_from_components(CInstance& instance) {
  instance.speed = point_distance(0, 0, instance.hspeed, instance.vspeed);
  if (instance.speed > 0) instance.direction = point_direction(0, 0, instance.hspeed, instance.vspeed);
}

void move_instance(CInstance& instance) {
  if (instance.speed == 0 && instance.gravity == 0) return;
  if (instance.friction != 0 && instance.speed != 0) {
    const double slowed = instance.speed > 0 ? instance.speed - instance.friction : instance.speed + instance.friction;
    instance.speed = slowed * instance.speed < 0 ? 0 : slowed;
    motion_from_direction(instance);
  }
  if (instance.gravity != 0) {
    instance.hspeed += lengthdir_x(instance.gravity, instance.gravity_direction);
    instance.vspeed += lengthdir_y(instance.gravity, instance.gravity_direction);
    motion_from_components(instance);
  }
  instance.x += instance.hspeed;
  instance.y += instance.vspeed;
}

}  // namespace arena
