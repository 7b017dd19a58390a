// The window on SDL 2.
#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <cstdlib>
#include <utility>

#include "engine/platform/key_codes.h"
#include "engine/platform/window.h"
#include "engine/platform/window_graphics.h"
#include "engine/platform/x11_display.h"
#include "runtime/input/input_state.h"

namespace arena::platform {
namespace {

int button_number(std::uint8_t button) {
  return button == SDL_BUTTON_LEFT ? 1 : button == SDL_BUTTON_RIGHT ? 2 : button == SDL_BUTTON_MIDDLE ? 3 : 0;
}

void push_size(int width, int height) {
  InputEvent event;
  event.type = InputEvent::Type::kWindowSize;
  event.code = width;
  event.value = height;
  push_input(event);
}

class SdlWindow final : public Window {
 public:
  SdlWindow(SDL_Window* window, std::unique_ptr<WindowGraphics> graphics, const WindowOptions& options)
      : window_(window), graphics_(std::move(graphics)), windowed_{0, 0, options.width, options.height} {
    if (is_fullscreen()) fill_display();
  }
  ~SdlWindow() override {
    graphics_.reset();
    SDL_DestroyWindow(window_);
    SDL_Quit();
  }

  bool poll() override {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) handle(event);
    return !closed_;
  }

  std::unique_ptr<gpu::Backend> create_backend(std::string& problem) override { return graphics_->create_backend(problem); }
  void drawable_size(int& width, int& height) const override { graphics_->drawable_size(width, height); }
  void announce() override {
    report_size();
    report_keys();
  }
  bool takes_screenshot() override { return std::exchange(takes_screenshot_, false); }
  void show_cursor(bool shown) override { SDL_ShowCursor(shown ? SDL_ENABLE : SDL_DISABLE); }
  void toggle_fullscreen() override {
    if (is_fullscreen()) {
      SDL_SetWindowFullscreen(window_, 0);
      place_without_manager(window_, windowed_);
    } else {
      SDL_GetWindowPosition(window_, &windowed_.x, &windowed_.y);
      SDL_GetWindowSize(window_, &windowed_.w, &windowed_.h);
      SDL_SetWindowFullscreen(window_, SDL_WINDOW_FULLSCREEN_DESKTOP);
      fill_display();
    }
  }
  bool is_fullscreen() const override {
    return (SDL_GetWindowFlags(window_) & SDL_WINDOW_FULLSCREEN_DESKTOP) == SDL_WINDOW_FULLSCREEN_DESKTOP;
  }
  void resize(int width, int height) override {
    if (!is_fullscreen()) SDL_SetWindowSize(window_, width, height);
  }
  void set_clipboard(const std::string& text) override { SDL_SetClipboardText(text.c_str()); }
  std::string clipboard() const override {
    char* const text = SDL_GetClipboardText();
    std::string copy = text != nullptr ? text : "";
    SDL_free(text);
    return copy;
  }

 private:
  void fill_display() {
    SDL_Rect display;
    if (SDL_GetDisplayBounds(SDL_GetWindowDisplayIndex(window_), &display) == 0) place_without_manager(window_, display);
  }

  void report_size() {
    int width = 0, height = 0;
    SDL_GetWindowSize(window_, &width, &height);
    push_size(width, height);
  }

  // What stands on the letter and digit keys, where that changed.
  void report_keys() {
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
      InputEvent label;
      label.type = InputEvent::Type::kKeyLabel;
      label.code = kPlaces[i];
      label.text = key_label(SDL_GetKeyFromScancode(static_cast<SDL_Scancode>(scancode_of(kPlaces[i]))));
      if (label.text == std::string(1, kPlaces[i])) label.text.clear();
      if (label.text == labels_[i]) continue;
      labels_[i] = label.text;
      push_input(label);
    }
  }

  void handle(const SDL_Event& event) {
    switch (event.type) {
      case SDL_QUIT: closed_ = true; break;
      case SDL_KEYDOWN:
      case SDL_KEYUP: handle_key(event.key); break;
      case SDL_MOUSEMOTION: push_pointer(PointerSpace::kWindow, event.motion.x, event.motion.y); break;
      case SDL_MOUSEBUTTONDOWN:
      case SDL_MOUSEBUTTONUP:
        push_pointer(PointerSpace::kWindow, event.button.x, event.button.y);
        push_button(button_number(event.button.button), event.type == SDL_MOUSEBUTTONDOWN);
        break;
      case SDL_MOUSEWHEEL: {
        InputEvent wheel;
        wheel.type = InputEvent::Type::kWheel;
        wheel.code = event.wheel.y;
        push_input(wheel);
        break;
      }
      case SDL_TEXTINPUT: {
        InputEvent typed;
        typed.type = InputEvent::Type::kText;
        typed.text = event.text.text;
        push_input(typed);
        break;
      }
      case SDL_KEYMAPCHANGED: report_keys(); break;
      case SDL_WINDOWEVENT: handle_window(event.window); break;
      default: break;
    }
  }

  void handle_key(const SDL_KeyboardEvent& key) {
    const bool down = key.type == SDL_KEYDOWN;
    const int code = key_code(key.keysym.scancode, key.keysym.sym);
    if (key.repeat != 0 && code != kBackspace) return;  // text is taken back again and again, as it is typed
    // The window's own keys never reach the game.
    const bool toggles = key.keysym.sym == SDLK_F11 || (key.keysym.sym == SDLK_RETURN && (key.keysym.mod & KMOD_ALT) != 0);
    if (toggles) {
      if (down) toggle_fullscreen();
      return;
    }
    if (key.keysym.sym == SDLK_F12) {
      takes_screenshot_ = takes_screenshot_ || down;
      return;
    }
    if (code != 0) push_key(code, down);
  }

  void handle_window(const SDL_WindowEvent& event) {
    if (event.event == SDL_WINDOWEVENT_SIZE_CHANGED) report_size();
    if (event.event != SDL_WINDOWEVENT_FOCUS_GAINED && event.event != SDL_WINDOWEVENT_FOCUS_LOST) return;
    InputEvent focus;
    focus.type = InputEvent::Type::kFocus;
    focus.value = event.event == SDL_WINDOWEVENT_FOCUS_GAINED ? 1 : 0;
    push_input(focus);
  }

  SDL_Window* window_;
  std::unique_ptr<WindowGraphics> graphics_;
  SDL_Rect windowed_;                   // where it stands when it does not fill the display
  std::string labels_[kPlaces.size()];  // as reported last; "": that of the US layout
  bool closed_ = false, takes_screenshot_ = false;
};

}  // namespace

bool has_display() {
#ifdef _WIN32
  return true;
#else
  return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
#endif
}

std::unique_ptr<Window> open_window(const WindowOptions& options, std::string& problem) {
  SDL_SetMainReady();
  const Uint32 wanted = prepare_graphics(options.offscreen);
  if (SDL_Init(SDL_INIT_VIDEO) != 0) {
    problem = std::string("no window can be opened: ") + SDL_GetError();
    return nullptr;
  }
  const Uint32 flags = wanted | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI | (options.fullscreen ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
  SDL_Window* window =
      SDL_CreateWindow(options.title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, options.width, options.height, flags);
  if (window == nullptr) problem = std::string("no window can be opened: ") + SDL_GetError();
  std::unique_ptr<WindowGraphics> graphics = window != nullptr ? open_graphics(window, options.vsync, options.offscreen, problem) : nullptr;
  if (graphics == nullptr) {
    if (window != nullptr) SDL_DestroyWindow(window);
    SDL_Quit();
    return nullptr;
  }
  SDL_SetWindowMinimumSize(window, 320, 180);
  return std::make_unique<SdlWindow>(window, std::move(graphics), options);
}

std::int64_t steady_microseconds() {
  const Uint64 frequency = SDL_GetPerformanceFrequency(), now = SDL_GetPerformanceCounter();
  return static_cast<std::int64_t>(now / frequency * 1000000 + now % frequency * 1000000 / frequency);
}

void sleep_microseconds(std::int64_t microseconds) {
  if (microseconds > 0) SDL_Delay(static_cast<Uint32>(microseconds / 1000));
}

}  // namespace arena::platform
