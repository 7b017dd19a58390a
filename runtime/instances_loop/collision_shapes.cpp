#include "runtime/instances_loop/collision_shapes.h"

#include <algorithm>
#include <cmath>

#include "runtime/values/elementary.h"
#include "runtime/values/number_text.h"

namespace arena {
namespace {

using Form = CollisionShape::Form;

struct Vector {
  double x, y;
};
double dot(Vector a, Vector b) { return a.x * b.x + a.y * b.y; }

// The point of the shape furthest in a direction.
Vector support(const CollisionShape& shape, Vector towards) {
  const double along_u = shape.ux * towards.x + shape.uy * towards.y, along_v = shape.vx * towards.x + shape.vy * towards.y;
  double u = along_u > 0 ? 1 : -1, v = along_v > 0 ? 1 : -1;
  if (shape.form == Form::kEllipse) {
    const double length = elementary::sqrt(along_u * along_u + along_v * along_v);
    if (length == 0) return {shape.x, shape.y};
    u = along_u / length;
    v = along_v / length;
  }
  return {shape.x + shape.ux * u + shape.vx * v, shape.y + shape.uy * u + shape.vy * v};
}

Vector support_of_difference(const CollisionShape& a, const CollisionShape& b, Vector towards) {
  const Vector from_a = support(a, towards), from_b = support(b, {-towards.x, -towards.y});
  return {from_a.x - from_b.x, from_a.y - from_b.y};
}

// The direction from segment a-b towards the origin, square to it; zero when the origin lies on the line.
Vector square_towards_origin(Vector a, Vector b) {
  const Vector edge{b.x - a.x, b.y - a.y};
  const double side = edge.x * -a.y - edge.y * -a.x;
  return side > 0 ? Vector{-edge.y, edge.x} : side < 0 ? Vector{edge.y, -edge.x} : Vector{0, 0};
}

// Two convex regions overlap when their difference contains the origin: a growing triangle of its points hunts for it.
bool convex_overlap(const CollisionShape& a, const CollisionShape& b) {
  Vector direction{b.x - a.x, b.y - a.y};
  if (direction.x == 0 && direction.y == 0) return true;
  Vector first = support_of_difference(a, b, direction);
  if (dot(first, direction) <= 0) return false;
  direction = {-first.x, -first.y};
  Vector second = support_of_difference(a, b, direction);
  if (dot(second, direction) <= 0) return false;
  for (int round = 0; round < 64; ++round) {
    direction = square_towards_origin(first, second);
    if (direction.x == 0 && direction.y == 0) {  // the origin lies between the two: is there anything on both sides of it?
      const Vector left{first.y - second.y, second.x - first.x}, right{-left.x, -left.y};
      return dot(support_of_difference(a, b, left), left) > 0 && dot(support_of_difference(a, b, right), right) > 0;
    }
    const Vector third = support_of_difference(a, b, direction);
    if (dot(third, direction) <= 0) return false;
    const auto cross = [](Vector p, Vector q) { return p.x * q.y - p.y * q.x; };
    const double around_ab = cross(first, second);
    const double beyond_bc = cross(second, third), beyond_ca = cross(third, first);
    if ((around_ab >= 0) == (beyond_bc >= 0) && (around_ab >= 0) == (beyond_ca >= 0)) return true;
    // The origin lies beyond the edge whose turn differs: that edge goes on.
    if ((around_ab >= 0) != (beyond_bc >= 0)) {
      first = third;
    } else {
      second = third;
    }
  }
  return true;  // as good as touching along a curve
}

bool is_circle(const CollisionShape& shape) {
  return shape.form == Form::kEllipse && shape.ux * shape.ux + shape.uy * shape.uy == shape.vx * shape.vx + shape.vy * shape.vy;
}

bool precise_overlap(const CollisionShape& precise, const CollisionShape& other) {
  const SpriteInfo& sprite = *precise.sprite;
  const int columns = static_cast<int>(sprite.right - sprite.left), rows = static_cast<int>(sprite.bottom - sprite.top);
  if (columns <= 0 || rows <= 0) return false;
  const std::size_t stride = (static_cast<std::size_t>(columns) + 7) / 8;
  CollisionShape pixel;
  pixel.form = Form::kParallelogram;
  pixel.ux = precise.ux / columns;
  pixel.uy = precise.uy / columns;
  pixel.vx = precise.vx / rows;
  pixel.vy = precise.vy / rows;
  const Box reach = other.box();
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      if ((sprite.precise[static_cast<std::size_t>(row) * stride + static_cast<std::size_t>(column) / 8] >> (column % 8) & 1) == 0)
        continue;
      const double across = 2 * column + 1 - columns, down = 2 * row + 1 - rows;
      pixel.x = precise.x + pixel.ux * across + pixel.vx * down;
      pixel.y = precise.y + pixel.uy * across + pixel.vy * down;
      if (pixel.box().overlaps(reach) && shapes_overlap(pixel, other)) return true;
    }
  }
  return false;
}

const SpriteInfo* mask_sprite(const CInstance& instance) {
  const double index = instance.mask_index >= 0 ? instance.mask_index : instance.sprite_index;
  return find_sprite(saturate_int32(index));
}

}  // namespace

Box CollisionShape::box() const {
  double half_width = std::fabs(ux) + std::fabs(vx), half_height = std::fabs(uy) + std::fabs(vy);
  if (form == Form::kEllipse) {
    half_width = elementary::sqrt(ux * ux + vx * vx);
    half_height = elementary::sqrt(uy * uy + vy * vy);
  }
  return {x - half_width, y - half_height, x + half_width, y + half_height};
}

CollisionShape shape_at(const CInstance& instance, double x, double y) {
  CollisionShape shape;
  shape.x = x;
  shape.y = y;
  const SpriteInfo* sprite = mask_sprite(instance);
  if (sprite == nullptr) return shape;
  const double half_width = (sprite->right - sprite->left) / 2 * instance.image_xscale;
  const double half_height = (sprite->bottom - sprite->top) / 2 * instance.image_yscale;
  const double centre_x = ((sprite->left + sprite->right) / 2 - sprite->origin_x) * instance.image_xscale;
  const double centre_y = ((sprite->top + sprite->bottom) / 2 - sprite->origin_y) * instance.image_yscale;
  const double angle = instance.image_angle * elementary::kPi / 180.0;
  const double c = angle == 0 ? 1 : elementary::cos(angle), s = angle == 0 ? 0 : elementary::sin(angle);
  shape.x = x + centre_x * c + centre_y * s;
  shape.y = y - centre_x * s + centre_y * c;
  shape.ux = half_width * c;
  shape.uy = -half_width * s;
  shape.vx = half_height * s;
  shape.vy = half_height * c;
  switch (sprite->mask) {
    case MaskKind::kEllipse: shape.form = Form::kEllipse; break;
    case MaskKind::kPrecise:
      shape.form = Form::kPrecise;
      shape.sprite = sprite;
      break;
    case MaskKind::kRotatedRectangle: shape.form = Form::kParallelogram; break;
    case MaskKind::kRectangle: {  // stays square to the axes: the box around the turned rectangle
      shape.form = Form::kParallelogram;
      return box_shape(shape.box());
    }
  }
  return shape;
}

CollisionShape shape_of(const CInstance& instance) { return shape_at(instance, instance.x, instance.y); }

CollisionShape box_shape(const Box& box) { return rectangle_shape(box.left, box.top, box.right, box.bottom); }

CollisionShape rectangle_shape(double x1, double y1, double x2, double y2) {
  CollisionShape shape;
  shape.form = Form::kParallelogram;
  shape.x = (x1 + x2) / 2;
  shape.y = (y1 + y2) / 2;
  shape.ux = std::fabs(x2 - x1) / 2;
  shape.vy = std::fabs(y2 - y1) / 2;
  return shape;
}

CollisionShape point_shape(double x, double y) { return rectangle_shape(x, y, x, y); }

CollisionShape segment_shape(double x1, double y1, double x2, double y2) {
  CollisionShape shape;
  shape.form = Form::kParallelogram;
  shape.x = (x1 + x2) / 2;
  shape.y = (y1 + y2) / 2;
  shape.ux = (x2 - x1) / 2;
  shape.uy = (y2 - y1) / 2;
  return shape;
}

CollisionShape ellipse_shape(double x1, double y1, double x2, double y2) {
  CollisionShape shape = rectangle_shape(x1, y1, x2, y2);
  shape.form = Form::kEllipse;
  return shape;
}

CollisionShape circle_shape(double x, double y, double radius) { return ellipse_shape(x - radius, y - radius, x + radius, y + radius); }

bool shapes_overlap(const CollisionShape& a, const CollisionShape& b) {
  if (a.form == Form::kNone || b.form == Form::kNone) return false;
  if (a.form == Form::kPrecise) return precise_overlap(a, b);
  if (b.form == Form::kPrecise) return precise_overlap(b, a);
  if (is_circle(a) && is_circle(b)) {
    const double dx = a.x - b.x, dy = a.y - b.y;
    const double reach = elementary::sqrt(a.ux * a.ux + a.uy * a.uy) + elementary::sqrt(b.ux * b.ux + b.uy * b.uy);
    return dx * dx + dy * dy < reach * reach;
  }
  return convex_overlap(a, b);
}

Box bounding_box(const CInstance& instance) { return shape_of(instance).box(); }

double bounding_radius(const CInstance& instance) {
  const SpriteInfo* sprite = mask_sprite(instance);
  if (sprite == nullptr) return 0;
  return sprite->radius * std::max(std::fabs(instance.image_xscale), std::fabs(instance.image_yscale));
}

}  // namespace arena
