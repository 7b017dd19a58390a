#include "engine/gpu/gl33/gl33.h"
#include "engine/platform/window_graphics.h"

namespace arena::platform {
namespace {

class Gl33Graphics final : public WindowGraphics {
 public:
  Gl33Graphics(SDL_Window* window, SDL_GLContext context, bool is_offscreen)
      : window_(window), context_(context), is_offscreen_(is_offscreen) {}
  ~Gl33Graphics() override { SDL_GL_DeleteContext(context_); }

  std::unique_ptr<gpu::Backend> create_backend(std::string& problem) override {
    return gpu::create_gl33(&SDL_GL_GetProcAddress, is_offscreen_ ? &finish : &swap, window_, problem);
  }
  void drawable_size(int& width, int& height) const override { SDL_GL_GetDrawableSize(window_, &width, &height); }

 private:
  static void swap(void* window) { SDL_GL_SwapWindow(static_cast<SDL_Window*>(window)); }
  // Nobody waits for a picture that is not shown: without this the driver piles up the frames.
  static void finish(void*) {
    static const auto finish_all = reinterpret_cast<void (*)()>(SDL_GL_GetProcAddress("glFinish"));
    if (finish_all != nullptr) finish_all();
  }

  SDL_Window* window_;
  SDL_GLContext context_;
  bool is_offscreen_;
};

}  // namespace

Uint32 prepare_graphics(bool is_offscreen) {
  if (is_offscreen) SDL_setenv("SDL_VIDEODRIVER", "offscreen", 1);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
  SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
  SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
  return SDL_WINDOW_OPENGL;
}

std::unique_ptr<WindowGraphics> open_graphics(SDL_Window* window, bool vsync, bool is_offscreen, std::string& problem) {
  const SDL_GLContext context = SDL_GL_CreateContext(window);
  if (context == nullptr) {
    problem = std::string("no window with OpenGL 3.3 can be opened: ") + SDL_GetError();
    return nullptr;
  }
  SDL_GL_SetSwapInterval(vsync ? 1 : 0);
  return std::make_unique<Gl33Graphics>(window, context, is_offscreen);
}

}  // namespace arena::platform
