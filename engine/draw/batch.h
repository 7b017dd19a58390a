#pragma once
// The meshes of pictures that stay where they are.
#include "engine/draw/draw.h"

namespace arena::draw {

class Draw::Batch {
 public:
  explicit Batch(gpu::Gpu& on) : gpu(on) {}
  ~Batch();
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  struct Part {
    gpu::TextureId texture;
    gpu::MeshId mesh;
  };
  gpu::Gpu& gpu;
  std::vector<Part> parts;
};

}  // namespace arena::draw
