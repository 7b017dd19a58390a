#pragma once
// What a backend translates. Each lies in a folder of its own beside this file, with the same file names, and shares nothing with the
// others but this contract:
//
//   - (0, 0) is the top left corner of the target, y points down; u and v run from the first row of the pixels given
//   - textures are premultiplied; what the shader gives is too: kNormal is one * source + (1 - source alpha) * target
//   - kAdd adds, kSubtract takes the source's colour away, kMultiply multiplies the target by it; alpha is kept by all three
//   - a clip cuts whole pixels of the target
//   - pixels read back are those of the target, rows from the top
#include <cstdint>
#include <string>
#include <vector>

#include "engine/gpu/gpu.h"

namespace arena::gpu {

class Backend {
 public:
  virtual ~Backend() = default;
  // Ids are the backend's own; 0 is a failure.
  virtual std::uint32_t create_texture(int width, int height, const std::uint8_t* pixels) = 0;
  virtual void destroy_texture(std::uint32_t texture) = 0;
  virtual std::uint32_t create_mesh(const Vertex* vertices, std::size_t count) = 0;
  virtual void destroy_mesh(std::uint32_t mesh) = 0;
  virtual void draw_mesh(std::uint32_t texture, const State& state, std::uint32_t mesh, const Transform& transform) = 0;
  virtual void begin_frame(int width, int height, std::uint32_t clear_color) = 0;
  virtual void draw(std::uint32_t texture, const State& state, const Vertex* vertices, std::size_t count) = 0;
  virtual void end_frame() = 0;
  virtual std::vector<std::uint8_t> read_pixels(int width, int height) = 0;

  // A device that can go away: a driver is renewed, a graphics card unplugged. From then on calls do nothing and every id is dead, until
  // restore() answers true; gpu.cpp, which keeps copies for such a backend, then makes everything anew.
  virtual bool can_be_lost() const { return false; }
  virtual bool is_lost() const { return false; }
  virtual bool restore() { return true; }
  // As if the device went away now; for tests.
  virtual void lose() {}
};

}  // namespace arena::gpu
