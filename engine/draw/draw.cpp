#include "engine/draw/draw.h"

#include <algorithm>
#include <cmath>

#include "arena_generated.h"
#include "engine/draw/draw_service.h"
#include "engine/draw/pictures.h"
#include "engine/files/zipped.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/world.h"
#include "runtime/values/elementary.h"
#include "runtime/values/number_text.h"

namespace arena::draw {
namespace {

constexpr double kDegree = elementary::kPi / 180.0;

std::uint32_t room_color() {
  const World& the = world();
  return the.room >= 0 ? the.room_definition(the.room).color : 0;
}

}  // namespace

Draw::Draw(gpu::Gpu& gpu, const data::DataFile& file)
    : state_(&draw_state()), gpu_(gpu), file_(file), density_(static_cast<double>(file.content->density())) {
  for (const data::Page* page : *file.content->pages()) {
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(page->width()) * static_cast<std::size_t>(page->height()) * 4);
    files::unpack(pixels.data(), pixels.size(), page->pixels()->data(), page->pixels()->size());  // a short page stays transparent
    pages_.push_back({gpu.create_texture(page->width(), page->height(), pixels.data()), static_cast<double>(page->width()),
                      static_cast<double>(page->height())});
  }
  for (const data::Sprite* sprite : *file.content->sprites()) {
    if (static_cast<std::size_t>(sprite->index()) >= pictures_.size()) pictures_.resize(static_cast<std::size_t>(sprite->index()) + 1);
    for (const data::Frame* frame : *sprite->frames()) {
      const Page& page = pages_[static_cast<std::size_t>(frame->page())];
      Picture picture;
      picture.texture = page.texture;
      picture.u1 = frame->x() / page.width;
      picture.v1 = frame->y() / page.height;
      picture.u2 = (frame->x() + frame->width()) / page.width;
      picture.v2 = (frame->y() + frame->height()) / page.height;
      picture.left = static_cast<double>(frame->left());
      picture.top = static_cast<double>(frame->top());
      picture.width = frame->width() / density_;
      picture.height = frame->height() / density_;
      pictures_[static_cast<std::size_t>(sprite->index())].push_back(picture);
    }
  }
  load_fonts();
}

Draw::~Draw() {
  for (const Page& page : pages_) gpu_.destroy_texture(page.texture);
}

void Draw::serve_session() { state_ = &draw_state(); }

void Draw::begin_world(int width, int height) {
  gpu_.begin_frame(width, height, room_color());
  begin_world_above();
}

void Draw::begin_world_above() {
  clips_.clear();
  const double width = gpu_.width(), height = gpu_.height();
  const Camera camera = active_camera();
  const double across = width / camera.width, down = height / camera.height;
  const double angle = -camera.angle * kDegree, c = elementary::cos(angle), s = elementary::sin(angle);
  const double centre_x = camera.x + camera.width / 2, centre_y = camera.y + camera.height / 2;
  a_ = c * across;
  b_ = s * across;
  c_ = -s * down;
  d_ = c * down;
  e_ = width / 2 - a_ * centre_x - b_ * centre_y;
  f_ = height / 2.0 - c_ * centre_x - d_ * centre_y;
  const double reach = camera.angle == 0 ? 0 : elementary::sqrt(camera.width * camera.width + camera.height * camera.height) / 2;
  view_left_ = reach > 0 ? centre_x - reach : camera.x;
  view_right_ = reach > 0 ? centre_x + reach : camera.x + camera.width;
  view_top_ = reach > 0 ? centre_y - reach : camera.y;
  view_bottom_ = reach > 0 ? centre_y + reach : camera.y + camera.height;
}

void Draw::begin_gui() {
  clips_.clear();
  a_ = gpu_.width() / gui_width();
  d_ = gpu_.height() / gui_height();
  b_ = c_ = e_ = f_ = 0;
  view_left_ = view_top_ = 0;
  view_right_ = gui_width();
  view_bottom_ = gui_height();
}

void Draw::end_frame() { gpu_.end_frame(); }

Draw::Corner Draw::to_target(double x, double y) const { return {a_ * x + b_ * y + e_, c_ * x + d_ * y + f_}; }

// A script's colour already has red in its low byte.
std::uint32_t Draw::packed(std::uint32_t color, double alpha) const {
  const double opaque = (alpha > 0 ? std::min(alpha, 1.0) : 0.0) * 255.0;  // what is no number is not seen
  return (color & 0xFFFFFF) | static_cast<std::uint32_t>(opaque + 0.5) << 24;
}

const Draw::Picture* Draw::find_picture(std::int32_t sprite, double frame) const {
  if (sprite < 0 || static_cast<std::size_t>(sprite) >= pictures_.size() || pictures_[static_cast<std::size_t>(sprite)].empty())
    return nullptr;
  const std::vector<Picture>& frames = pictures_[static_cast<std::size_t>(sprite)];
  const double count = static_cast<double>(frames.size());
  if (!(std::fabs(frame) < 1e9)) frame = 0;
  const double wrapped = frame - std::floor(frame / count) * count;
  return &frames[std::min(static_cast<std::size_t>(wrapped), frames.size() - 1)];
}

void Draw::vertices_of(const Picture& picture, const Corner (&corners)[4], std::uint32_t color, double alpha,
                       gpu::Vertex (&vertices)[6]) const {
  const std::uint32_t tint = packed(color, alpha);
  const float paint = static_cast<float>(picture.is_field ? gpu::Paint::kField : gpu::Paint::kTexture);
  const auto vertex = [&](const Corner& corner, double u, double v) {
    return gpu::Vertex{
        static_cast<float>(corner.x), static_cast<float>(corner.y), static_cast<float>(u), static_cast<float>(v), tint, paint};
  };
  vertices[0] = vertices[3] = vertex(corners[0], picture.u1, picture.v1);
  vertices[1] = vertex(corners[1], picture.u2, picture.v1);
  vertices[2] = vertices[4] = vertex(corners[2], picture.u2, picture.v2);
  vertices[5] = vertex(corners[3], picture.u1, picture.v2);
}

void Draw::quad(const Picture& picture, const Corner (&corners)[4], std::uint32_t color, double alpha) {
  gpu::Vertex vertices[6];
  vertices_of(picture, corners, color, alpha, vertices);
  gpu_.draw(state_for(picture), vertices, 6);
}

gpu::State Draw::state_for(const Picture& picture) const {
  return {picture.texture, state().blend, picture.field_pixels, clips_.empty() ? gpu::Clip() : clips_.back()};
}

void Draw::push_clip(double x, double y, double width, double height) {
  const Corner from = to_target(x, y), to = to_target(x + std::max(0.0, width), y + std::max(0.0, height));
  double left = std::round(from.x), top = std::round(from.y), right = std::round(to.x), bottom = std::round(to.y);
  left = std::clamp(left, 0.0, static_cast<double>(gpu_.width()));
  right = std::clamp(right, left, static_cast<double>(gpu_.width()));
  top = std::clamp(top, 0.0, static_cast<double>(gpu_.height()));
  bottom = std::clamp(bottom, top, static_cast<double>(gpu_.height()));
  if (!clips_.empty()) {
    const gpu::Clip& outer = clips_.back();
    left = std::max<double>(left, outer.x);
    top = std::max<double>(top, outer.y);
    right = std::max(left, std::min<double>(right, outer.x + outer.width));
    bottom = std::max(top, std::min<double>(bottom, outer.y + outer.height));
  }
  clips_.push_back({saturate_int32(left), saturate_int32(top), saturate_int32(right - left), saturate_int32(bottom - top)});
}

void Draw::pop_clip() {
  if (!clips_.empty()) clips_.pop_back();
}

void Draw::sprite(std::int32_t index, double frame, const Placement& at) {
  if (!is_seen()) return;
  const Picture* picture = find_picture(index, frame);
  const SpriteInfo* info = find_sprite(index);
  if (picture == nullptr || info == nullptr) return;
  const double left = (picture->left - info->origin_x) * at.xscale, top = (picture->top - info->origin_y) * at.yscale;
  const double right = left + picture->width * at.xscale, bottom = top + picture->height * at.yscale;
  const double angle = at.angle * kDegree, c = at.angle == 0 ? 1 : elementary::cos(angle), s = at.angle == 0 ? 0 : elementary::sin(angle);
  // Sprites wholly outside the view cost nothing.
  const double reach = std::max({std::fabs(left), std::fabs(right), std::fabs(top), std::fabs(bottom)}) * 1.5;
  if (at.x + reach < view_left_ || at.x - reach > view_right_ || at.y + reach < view_top_ || at.y - reach > view_bottom_) return;
  const auto corner = [&](double dx, double dy) { return to_target(at.x + dx * c + dy * s, at.y - dx * s + dy * c); };
  quad(*picture, {corner(left, top), corner(right, top), corner(right, bottom), corner(left, bottom)}, at.color, at.alpha);
}

void Draw::sprite_part(std::int32_t index, double frame, double left, double top, double width, double height, const Placement& at) {
  if (!is_seen()) return;
  const Picture* picture = find_picture(index, frame);
  if (picture == nullptr || picture->width <= 0 || picture->height <= 0) return;
  // The trimmed piece has nothing outside itself: the part is cut down to it.
  const double x1 = std::max(left, picture->left), y1 = std::max(top, picture->top);
  const double x2 = std::min(left + width, picture->left + picture->width), y2 = std::min(top + height, picture->top + picture->height);
  if (x1 >= x2 || y1 >= y2) return;
  Picture part = *picture;
  const double per_x = (picture->u2 - picture->u1) / picture->width, per_y = (picture->v2 - picture->v1) / picture->height;
  part.u1 = picture->u1 + (x1 - picture->left) * per_x;
  part.u2 = picture->u1 + (x2 - picture->left) * per_x;
  part.v1 = picture->v1 + (y1 - picture->top) * per_y;
  part.v2 = picture->v1 + (y2 - picture->top) * per_y;
  const double from_x = at.x + (x1 - left) * at.xscale, from_y = at.y + (y1 - top) * at.yscale;
  const double to_x = at.x + (x2 - left) * at.xscale, to_y = at.y + (y2 - top) * at.yscale;
  quad(part, {to_target(from_x, from_y), to_target(to_x, from_y), to_target(to_x, to_y), to_target(from_x, to_y)}, at.color, at.alpha);
}

void Draw::sprite_stretched(std::int32_t index, double frame, double x, double y, double width, double height, std::uint32_t color,
                            double alpha) {
  const SpriteInfo* info = find_sprite(index);
  if (info == nullptr || info->width <= 0 || info->height <= 0) return;
  sprite_part(index, frame, 0, 0, info->width, info->height, {x, y, width / info->width, height / info->height, 0, color, alpha});
}

void Draw::background(const Layer& layer) {
  if (!is_seen()) return;
  const SpriteInfo* info = find_sprite(layer.background_sprite);
  if (info == nullptr) return;
  Layer::Area area = layer.background_area;
  if (area.width <= 0) area = {0, 0, world().room_width, world().room_height};
  if (layer.background_fill == BackgroundFill::kStretched) {
    sprite_stretched(layer.background_sprite, 0, area.x, area.y, area.width, area.height, layer.background_color, 1);
    return;
  }
  const auto first = [](double view, double from, double step) { return from + std::max(0.0, std::floor((view - from) / step) * step); };
  const double right = area.x + area.width, bottom = area.y + area.height;
  for (double y = first(view_top_, area.y, info->height); y < std::min(view_bottom_, bottom); y += info->height) {
    const bool edge_row = y == area.y || y + info->height >= bottom;
    for (double x = first(view_left_, area.x, info->width); x < std::min(view_right_, right); x += info->width) {
      const bool edge = edge_row || x == area.x || x + info->width >= right;
      if (layer.background_fill == BackgroundFill::kEdges && !edge) continue;
      sprite_part(layer.background_sprite, 0, 0, 0, info->width, info->height, {x, y, 1, 1, 0, layer.background_color, 1});
    }
  }
}

}  // namespace arena::draw
