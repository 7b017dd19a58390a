// Pictures that stay where they are: baked once, one mesh for each texture page.
#include "engine/draw/batch.h"

#include <map>

#include "engine/draw/pictures.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/values/elementary.h"

namespace arena::draw {

Draw::Batch::~Batch() {
  for (const Part& part : parts) gpu.destroy_mesh(part.mesh);
}

void Draw::corners_of(const Picture& picture, const SpriteInfo& info, const Placement& at, Corner (&corners)[4]) const {
  const double left = (picture.left - info.origin_x) * at.xscale, top = (picture.top - info.origin_y) * at.yscale;
  const double right = left + picture.width * at.xscale, bottom = top + picture.height * at.yscale;
  const double angle = at.angle * elementary::kPi / 180.0;
  const double c = at.angle == 0 ? 1 : elementary::cos(angle), s = at.angle == 0 ? 0 : elementary::sin(angle);
  const auto corner = [&](double dx, double dy) { return Corner{at.x + dx * c + dy * s, at.y - dx * s + dy * c}; };
  corners[0] = corner(left, top);
  corners[1] = corner(right, top);
  corners[2] = corner(right, bottom);
  corners[3] = corner(left, bottom);
}

std::unique_ptr<Draw::Batch> Draw::make_batch(std::span<const Stamp> stamps) {
  std::map<std::uint32_t, std::vector<gpu::Vertex>> by_texture;
  for (const Stamp& stamp : stamps) {
    const Picture* picture = find_picture(stamp.sprite, stamp.frame);
    const SpriteInfo* info = find_sprite(stamp.sprite);
    Corner corners[4];
    if (picture == nullptr || info == nullptr) continue;
    corners_of(*picture, *info, stamp.at, corners);
    gpu::Vertex vertices[6];
    vertices_of(*picture, corners, stamp.at.color, stamp.at.alpha, vertices);
    std::vector<gpu::Vertex>& all = by_texture[picture->texture.value];
    all.insert(all.end(), vertices, vertices + 6);
  }
  auto made = std::make_unique<Batch>(gpu_);
  for (const auto& [texture, vertices] : by_texture) made->parts.push_back({{texture}, gpu_.create_mesh(vertices.data(), vertices.size())});
  return made;
}

void Draw::draw_batch(const Batch& batch) {
  gpu::Transform to;
  to.a = static_cast<float>(a_);
  to.b = static_cast<float>(b_);
  to.c = static_cast<float>(c_);
  to.d = static_cast<float>(d_);
  to.e = static_cast<float>(e_);
  to.f = static_cast<float>(f_);
  for (const Batch::Part& part : batch.parts) {
    gpu_.draw_mesh({part.texture, state.blend, 1, clips_.empty() ? gpu::Clip() : clips_.back()}, part.mesh, to);
  }
}

}  // namespace arena::draw
