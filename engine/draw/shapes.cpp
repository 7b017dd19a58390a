// Lines, rectangles, circles: triangles in plain colour.
#include <algorithm>
#include <cmath>

#include "engine/draw/pictures.h"
#include "runtime/values/elementary.h"
#include "runtime/values/number_text.h"

namespace arena::draw {

void Draw::solid_triangle(const Corner (&corners)[3], const std::uint32_t (&colors)[3]) {
  gpu::Vertex vertices[3];
  for (int i = 0; i < 3; ++i) {
    vertices[i] = {static_cast<float>(corners[i].x), static_cast<float>(corners[i].y),      0, 0,
                   packed(colors[i], state().alpha), static_cast<float>(gpu::Paint::kSolid)};
  }
  gpu_.draw({{}, state().blend, 1, clips_.empty() ? gpu::Clip() : clips_.back()}, vertices, 3);
}

void Draw::triangle(const double (&x)[3], const double (&y)[3], const std::uint32_t (&colors)[3], bool outline) {
  if (outline) {
    for (int i = 0; i < 3; ++i) line(x[i], y[i], x[(i + 1) % 3], y[(i + 1) % 3], 1, colors[i], colors[(i + 1) % 3]);
    return;
  }
  solid_triangle({to_target(x[0], y[0]), to_target(x[1], y[1]), to_target(x[2], y[2])}, colors);
}

// Corners go top left, top right, bottom right, bottom left.
void Draw::rectangle(double x1, double y1, double x2, double y2, const std::uint32_t (&corners)[4], bool outline) {
  const double xs[4] = {x1, x2, x2, x1}, ys[4] = {y1, y1, y2, y2};
  if (outline) {
    for (int i = 0; i < 4; ++i) line(xs[i], ys[i], xs[(i + 1) % 4], ys[(i + 1) % 4], 1, corners[i], corners[(i + 1) % 4]);
    return;
  }
  const Corner at[4] = {to_target(x1, y1), to_target(x2, y1), to_target(x2, y2), to_target(x1, y2)};
  solid_triangle({at[0], at[1], at[2]}, {corners[0], corners[1], corners[2]});
  solid_triangle({at[0], at[2], at[3]}, {corners[0], corners[2], corners[3]});
}

void Draw::ellipse(double x, double y, double radius_x, double radius_y, std::uint32_t inner, std::uint32_t outer, bool outline) {
  if (!is_seen()) return;
  const double zoom = elementary::sqrt(std::fabs(a_ * d_ - b_ * c_));
  const double pixels = std::max(std::fabs(radius_x), std::fabs(radius_y)) * zoom;
  // Enough sides that a chord stays within a quarter of a pixel of the arc.
  const int sides =
      state().circle_precision > 0 ? state().circle_precision : std::clamp(saturate_int32(4.5 * elementary::sqrt(pixels)), 12, 128);
  const auto on_rim = [&](int side) {
    const double angle = 2 * elementary::kPi * side / sides;
    return Corner{x + elementary::cos(angle) * radius_x, y + elementary::sin(angle) * radius_y};
  };
  Corner from = on_rim(0);
  const Corner centre = to_target(x, y);
  for (int side = 1; side <= sides; ++side) {
    const Corner to = on_rim(side);
    if (outline) {
      line(from.x, from.y, to.x, to.y, 1, outer, outer);
    } else {
      solid_triangle({centre, to_target(from.x, from.y), to_target(to.x, to.y)}, {inner, outer, outer});
    }
    from = to;
  }
}

void Draw::line(double x1, double y1, double x2, double y2, double width, std::uint32_t from, std::uint32_t to) {
  if (!is_seen()) return;
  const double dx = x2 - x1, dy = y2 - y1, length = elementary::sqrt(dx * dx + dy * dy);
  if (length == 0) return;
  const double across_x = -dy / length * width / 2, across_y = dx / length * width / 2;
  const Corner a = to_target(x1 + across_x, y1 + across_y), b = to_target(x2 + across_x, y2 + across_y);
  const Corner c = to_target(x2 - across_x, y2 - across_y), d = to_target(x1 - across_x, y1 - across_y);
  solid_triangle({a, b, c}, {from, to, to});
  solid_triangle({a, c, d}, {from, to, from});
}

}  // namespace arena::draw
