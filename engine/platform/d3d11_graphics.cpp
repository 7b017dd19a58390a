#include <SDL_syswm.h>

#include "engine/gpu/d3d11/d3d11.h"
#include "engine/platform/window_graphics.h"

namespace arena::platform {
namespace {

class D3d11Graphics final : public WindowGraphics {
 public:
  D3d11Graphics(SDL_Window* window, HWND handle, bool vsync) : window_(window), handle_(handle), vsync_(vsync) {}
  std::unique_ptr<gpu::Backend> create_backend(std::string& problem) override { return gpu::create_d3d11(handle_, vsync_, problem); }
  void drawable_size(int& width, int& height) const override { SDL_GetWindowSizeInPixels(window_, &width, &height); }

 private:
  SDL_Window* window_;
  HWND handle_;
  bool vsync_;
};

}  // namespace

// What is drawn off-screen is drawn for a window that nobody sees.
Uint32 prepare_graphics(bool is_offscreen) { return is_offscreen ? SDL_WINDOW_HIDDEN : 0; }

std::unique_ptr<WindowGraphics> open_graphics(SDL_Window* window, bool vsync, bool, std::string& problem) {
  SDL_SysWMinfo system;
  SDL_VERSION(&system.version);
  if (SDL_GetWindowWMInfo(window, &system) != SDL_TRUE) {
    problem = std::string("the window has no handle: ") + SDL_GetError();
    return nullptr;
  }
  return std::make_unique<D3d11Graphics>(window, system.info.win.window, vsync);
}

}  // namespace arena::platform
