// Pictures that stay where they are: baked once, one mesh for each texture page.
#include "engine/draw/batch.h"

#include <map>

#include "engine/draw/pictures.h"
#include "runtime/checks/assert.h"
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

std::unique_ptr<Draw::Batch> Draw::make_batch(std::span<const Sticker> stickers) {
  std::map<std::uint64_t, std::vector<gpu::Vertex>> by_texture;
  for (const Sticker& sticker : stickers) {
    const Picture* picture = find_picture(sticker.sprite, sticker.frame);
    const SpriteInfo* info = find_sprite(sticker.sprite);
    Corner corners[4];
    if (picture == nullptr || info == nullptr) continue;
    corners_of(*picture, *info, sticker.at, corners);
    gpu::Vertex vertices[6];
    vertices_of(*picture, corners, sticker.at.color, sticker.at.alpha, vertices);
    std::vector<gpu::Vertex>& all = by_texture[picture->texture.value];
    all.insert(all.end(), vertices, vertices + 6);
  }
  auto made = std::make_unique<Batch>(gpu_);
  for (const auto& [texture, vertices] : by_texture) made->parts.push_back({{texture}, gpu_.create_mesh(vertices.data(), vertices.size())});
  return made;
}

void Draw::draw_batch(const Batch& batch) {
  ARENA_ASSERT(&batch.gpu == &gpu_);
  gpu::Transform to;
  to.a = static_cast<float>(a_);
  to.b = static_cast<float>(b_);
  to.c = static_cast<float>(c_);
  to.d = static_cast<float>(d_);
  to.e = static_cast<float>(e_);
  to.f = static_cast<float>(f_);
  for (const Batch::Part& part : batch.parts) {
    gpu_.draw_mesh({part.texture, state().blend, 1, clips_.empty() ? gpu::Clip() : clips_.back()}, part.mesh, to);
  }
}

void Draw::QuadStream::add(std::int32_t sprite, double frame, float x, float y, float size, double angle, std::uint32_t color,
                           float alpha) {
  if (sprite != sprite_ || frame != frame_ || on_.state().blend != blend_ || picture_ == nullptr) {
    flush();
    sprite_ = sprite;
    frame_ = frame;
    blend_ = on_.state().blend;
    picture_ = on_.find_picture(sprite, frame);
    const SpriteInfo* info = find_sprite(sprite);
    if (picture_ == nullptr || info == nullptr) {
      picture_ = nullptr;
      return;
    }
    left_ = static_cast<float>(picture_->left - info->origin_x);
    top_ = static_cast<float>(picture_->top - info->origin_y);
    right_ = left_ + static_cast<float>(picture_->width);
    bottom_ = top_ + static_cast<float>(picture_->height);
  }
  const float a = static_cast<float>(on_.a_), b = static_cast<float>(on_.b_), c = static_cast<float>(on_.c_),
              d = static_cast<float>(on_.d_);
  const float middle_x = a * x + b * y + static_cast<float>(on_.e_), middle_y = c * x + d * y + static_cast<float>(on_.f_);
  float cosine = size, sine = 0;
  if (angle != 0) {
    const double turn = angle * elementary::kPi / 180.0;
    cosine = static_cast<float>(elementary::cos(turn)) * size;
    sine = static_cast<float>(elementary::sin(turn)) * size;
  }
  const std::uint32_t tint = on_.packed(color, static_cast<double>(alpha));
  const float paint = static_cast<float>(gpu::Paint::kTexture);
  const auto corner = [&](float dx, float dy, double u, double v) {
    const float to_x = dx * cosine + dy * sine, to_y = dy * cosine - dx * sine;
    return gpu::Vertex{
        middle_x + a * to_x + b * to_y, middle_y + c * to_x + d * to_y, static_cast<float>(u), static_cast<float>(v), tint, paint};
  };
  const gpu::Vertex one = corner(left_, top_, picture_->u1, picture_->v1), two = corner(right_, top_, picture_->u2, picture_->v1);
  const gpu::Vertex three = corner(right_, bottom_, picture_->u2, picture_->v2), four = corner(left_, bottom_, picture_->u1, picture_->v2);
  const gpu::Vertex six[6] = {one, two, three, one, three, four};
  vertices_.insert(vertices_.end(), six, six + 6);
  if (vertices_.size() >= 3000) flush();
}

void Draw::QuadStream::flush() {
  if (vertices_.empty() || picture_ == nullptr) return;
  const gpu::Clip clip = on_.clips_.empty() ? gpu::Clip() : on_.clips_.back();
  on_.gpu_.draw({picture_->texture, blend_, 1, clip}, vertices_.data(), vertices_.size());
  vertices_.clear();
}

}  // namespace arena::draw
