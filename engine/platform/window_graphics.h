#pragma once
// What a window needs so that a graphics backend can draw into it: one file for each backend, of which the build takes one.
#include <SDL.h>

#include <memory>
#include <string>

#include "engine/gpu/backend.h"

namespace arena::platform {

class WindowGraphics {
 public:
  virtual ~WindowGraphics() = default;
  // Null and a sentence in `problem` on failure.
  virtual std::unique_ptr<gpu::Backend> create_backend(std::string& problem) = 0;
  virtual void drawable_size(int& width, int& height) const = 0;
};

// Says what the window must be like, before it is made; returns flags for it.
Uint32 prepare_graphics(bool is_offscreen);
// Null and a sentence in `problem` on failure. The window outlives it.
std::unique_ptr<WindowGraphics> open_graphics(SDL_Window* window, bool vsync, bool is_offscreen, std::string& problem);

}  // namespace arena::platform
