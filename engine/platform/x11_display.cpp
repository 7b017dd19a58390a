#include "engine/platform/x11_display.h"

#include <SDL_syswm.h>

namespace arena::platform {

#ifdef SDL_VIDEO_DRIVER_X11
namespace {

// The library is there when SDL uses it; the program itself runs without it.
class X11 {
 public:
  X11() : library_(SDL_LoadObject("libX11.so.6")) {}
  ~X11() {
    if (library_ != nullptr) SDL_UnloadObject(library_);
  }
  X11(const X11&) = delete;
  X11& operator=(const X11&) = delete;
  template <class Function>
  Function* find(const char* name) const {
    return library_ != nullptr ? reinterpret_cast<Function*>(SDL_LoadFunction(library_, name)) : nullptr;
  }

 private:
  void* library_;
};

// Window managers say that they are there in a property of the root window.
bool has_manager(const X11& x11, Display* display) {
  const auto atom_of = x11.find<decltype(XInternAtom)>("XInternAtom");
  const auto root_of = x11.find<decltype(XDefaultRootWindow)>("XDefaultRootWindow");
  const auto property_of = x11.find<decltype(XGetWindowProperty)>("XGetWindowProperty");
  const auto release = x11.find<decltype(XFree)>("XFree");
  if (atom_of == nullptr || root_of == nullptr || property_of == nullptr || release == nullptr) return true;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0, left = 0;
  unsigned char* value = nullptr;
  constexpr Atom kWindowType = 33;  // XA_WINDOW
  property_of(display, root_of(display), atom_of(display, "_NET_SUPPORTING_WM_CHECK", 0), 0, 1, 0, kWindowType, &type, &format, &count,
              &left, &value);
  if (value != nullptr) release(value);
  return count > 0;
}

}  // namespace

void place_without_manager(SDL_Window* window, const SDL_Rect& where) {
  SDL_SysWMinfo info;
  SDL_VERSION(&info.version);
  if (SDL_GetWindowWMInfo(window, &info) != SDL_TRUE || info.subsystem != SDL_SYSWM_X11) return;
  const X11 x11;
  const auto move = x11.find<decltype(XMoveResizeWindow)>("XMoveResizeWindow");
  const auto finish = x11.find<decltype(XSync)>("XSync");
  Display* const display = info.info.x11.display;
  if (move == nullptr || finish == nullptr || has_manager(x11, display)) return;
  move(display, info.info.x11.window, where.x, where.y, static_cast<unsigned>(where.w), static_cast<unsigned>(where.h));
  finish(display, 0);
}
#else
void place_without_manager(SDL_Window*, const SDL_Rect&) {}
#endif

}  // namespace arena::platform
