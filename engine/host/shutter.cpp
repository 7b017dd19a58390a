#include "engine/host/shutter.h"

namespace arena::host {

std::uint32_t Shutter::create_texture(int width, int height, const std::uint8_t* pixels) {
  return behind_->create_texture(width, height, pixels);
}

void Shutter::destroy_texture(std::uint32_t texture) { behind_->destroy_texture(texture); }

std::uint32_t Shutter::create_mesh(const gpu::Vertex* vertices, std::size_t count) { return behind_->create_mesh(vertices, count); }

void Shutter::destroy_mesh(std::uint32_t mesh) { behind_->destroy_mesh(mesh); }

void Shutter::draw_mesh(std::uint32_t texture, const gpu::State& state, std::uint32_t mesh, const gpu::Transform& transform) {
  if (passes_frame_) behind_->draw_mesh(texture, state, mesh, transform);
}

void Shutter::begin_frame(int width, int height, std::uint32_t clear_color) {
  passes_frame_ = is_open;
  if (passes_frame_) behind_->begin_frame(width, height, clear_color);
}

void Shutter::draw(std::uint32_t texture, const gpu::State& state, const gpu::Vertex* vertices, std::size_t count) {
  if (passes_frame_) behind_->draw(texture, state, vertices, count);
}

void Shutter::end_frame() {
  if (passes_frame_) behind_->end_frame();
}

std::vector<std::uint8_t> Shutter::read_pixels(int width, int height) {
  return passes_frame_ ? behind_->read_pixels(width, height) : std::vector<std::uint8_t>();
}

}  // namespace arena::host
