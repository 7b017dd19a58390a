#include "engine/gpu/recorder/recorder.h"

namespace arena::gpu {

std::uint32_t Recorder::create_texture(int, int, const std::uint8_t*) {
  ++textures_alive;
  return next_texture_++;
}

void Recorder::destroy_texture(std::uint32_t) { --textures_alive; }

std::uint32_t Recorder::create_mesh(const Vertex*, std::size_t count) {
  meshes[next_mesh_] = count;
  return next_mesh_++;
}

void Recorder::destroy_mesh(std::uint32_t mesh) { meshes.erase(mesh); }

void Recorder::draw_mesh(std::uint32_t texture, const State& state, std::uint32_t mesh, const Transform& transform) {
  draws.push_back({texture, state, {}, meshes[mesh], transform});
}

void Recorder::begin_frame(int, int, std::uint32_t color) {
  clear_color = color;
  draws.clear();
}

void Recorder::draw(std::uint32_t texture, const State& state, const Vertex* vertices, std::size_t count) {
  draws.push_back({texture, state, {}, count, {}});
  if (keeps_vertices) draws.back().vertices.assign(vertices, vertices + count);
}

std::vector<std::uint8_t> Recorder::read_pixels(int width, int height) {
  return std::vector<std::uint8_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
}

}  // namespace arena::gpu
