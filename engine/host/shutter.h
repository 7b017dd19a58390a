#pragma once
// Before a backend: while it is shut no frame goes to the graphics card, only what stays there (textures, meshes). For runs whose frames
// nobody sees, except those of which a picture is taken.
#include <memory>
#include <vector>

#include "engine/gpu/backend.h"

namespace arena::host {

class Shutter final : public gpu::Backend {
 public:
  explicit Shutter(std::unique_ptr<gpu::Backend> behind) : behind_(std::move(behind)) {}
  // From the next frame on.
  bool is_open = false;

  std::uint32_t create_texture(int width, int height, const std::uint8_t* pixels) override;
  void destroy_texture(std::uint32_t texture) override;
  std::uint32_t create_mesh(const gpu::Vertex* vertices, std::size_t count) override;
  void destroy_mesh(std::uint32_t mesh) override;
  void draw_mesh(std::uint32_t texture, const gpu::State& state, std::uint32_t mesh, const gpu::Transform& transform) override;
  void begin_frame(int width, int height, std::uint32_t clear_color) override;
  void draw(std::uint32_t texture, const gpu::State& state, const gpu::Vertex* vertices, std::size_t count) override;
  void end_frame() override;
  std::vector<std::uint8_t> read_pixels(int width, int height) override;
  bool can_be_lost() const override { return behind_->can_be_lost(); }
  bool is_lost() const override { return behind_->is_lost(); }
  bool restore() override { return behind_->restore(); }
  void lose() override { behind_->lose(); }

 private:
  std::unique_ptr<gpu::Backend> behind_;
  bool passes_frame_ = false;
};

}  // namespace arena::host
