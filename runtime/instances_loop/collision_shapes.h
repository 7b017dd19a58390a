#pragma once
// Collision shapes and exact overlap tests. A shape comes from the mask of an instance's sprite (or mask sprite), turned and scaled
// with the instance. Shapes that only touch do not overlap.
#include <cstdint>

#include "runtime/instances_loop/instance.h"
#include "runtime/instances_loop/sprites.h"

namespace arena {

struct Box {
  double left = 0, top = 0, right = 0, bottom = 0;
  bool overlaps(const Box& other) const { return left < other.right && other.left < right && top < other.bottom && other.top < bottom; }
};

// A convex region: a parallelogram or an ellipse given by a centre and two half axes, or a point or segment with an axis of length 0.
// A precise mask is a parallelogram whose pixels `sprite` tells.
struct CollisionShape {
  enum class Form : std::uint8_t { kNone, kParallelogram, kEllipse, kPrecise } form = Form::kNone;
  double x = 0, y = 0;                    // centre
  double ux = 0, uy = 0, vx = 0, vy = 0;  // half axes
  const SpriteInfo* sprite = nullptr;     // kPrecise only
  Box box() const;
};

CollisionShape shape_of(const CInstance& instance);
// The same at another place.
CollisionShape shape_at(const CInstance& instance, double x, double y);
CollisionShape point_shape(double x, double y);
CollisionShape segment_shape(double x1, double y1, double x2, double y2);
CollisionShape rectangle_shape(double x1, double y1, double x2, double y2);
CollisionShape ellipse_shape(double x1, double y1, double x2, double y2);
CollisionShape circle_shape(double x, double y, double radius);
CollisionShape box_shape(const Box& box);

bool shapes_overlap(const CollisionShape& a, const CollisionShape& b);
// Box of the instance's mask; empty (all at its position) without a sprite.
Box bounding_box(const CInstance& instance);
// No point of the mask is further from (x, y) than this.
double bounding_radius(const CInstance& instance);

}  // namespace arena
