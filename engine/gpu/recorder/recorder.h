#pragma once
// The headless backend: draws nothing, remembers the calls of the last frame.
#include <map>
#include <memory>
#include <vector>

#include "engine/gpu/backend.h"

namespace arena::gpu {

struct RecordedDraw {
  std::uint32_t texture;
  State state;
  std::vector<Vertex> vertices;  // only while `keeps_vertices`
  std::size_t vertex_count;
  Transform transform;  // of a mesh
};

class Recorder final : public Backend {
 public:
  std::uint32_t create_texture(int width, int height, const std::uint8_t* pixels) override;
  void destroy_texture(std::uint32_t texture) override;
  std::uint32_t create_mesh(const Vertex* vertices, std::size_t count) override;
  void destroy_mesh(std::uint32_t mesh) override;
  void draw_mesh(std::uint32_t texture, const State& state, std::uint32_t mesh, const Transform& transform) override;
  void begin_frame(int width, int height, std::uint32_t clear_color) override;
  void draw(std::uint32_t texture, const State& state, const Vertex* vertices, std::size_t count) override;
  void end_frame() override {}
  std::vector<std::uint8_t> read_pixels(int width, int height) override;

  bool keeps_vertices = false;
  std::vector<RecordedDraw> draws;
  std::uint32_t clear_color = 0;
  int textures_alive = 0;
  std::map<std::uint32_t, std::size_t> meshes;  // vertices of those alive

 private:
  std::uint32_t next_texture_ = 1, next_mesh_ = 1;
};

}  // namespace arena::gpu
