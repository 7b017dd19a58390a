// The window on SDL 2.
#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>
#include <vector>

#include "engine/platform/key_codes.h"
#include "engine/platform/sdl_gamepads.h"
#include "engine/platform/window.h"
#include "engine/platform/window_graphics.h"
#include "engine/platform/x11_display.h"
#include "runtime/input/input_state.h"

namespace arena::platform {
namespace {

int button_number(std::uint8_t button) {
  switch (button) {
    case SDL_BUTTON_LEFT: return 1;
    case SDL_BUTTON_RIGHT: return 2;
    case SDL_BUTTON_MIDDLE: return 3;
    case SDL_BUTTON_X1: return 4;
    case SDL_BUTTON_X2: return 5;
    default: return 0;
  }
}

void push_of_type(InputEvent::Type type, std::int32_t code, std::int32_t value = 0, double x = 0, double y = 0) {
  InputEvent event;
  event.type = type;
  event.code = code;
  event.value = value;
  event.x = x;
  event.y = y;
  push_input(event);
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
      : window_(window), graphics_(std::move(graphics)), windowed_{0, 0, options.width, options.height}, title_(options.title) {
    if (is_fullscreen()) fill_display();
  }
  ~SdlWindow() override {
    graphics_.reset();
    gamepads_.reset();
    SDL_DestroyWindow(window_);
    SDL_Quit();
  }

  bool poll() override {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
      gamepads_->handle(event);
      handle(event);
    }
    gamepads_->end_poll();
    return !closed_;
  }

  std::unique_ptr<gpu::Backend> create_backend(std::string& problem) override { return graphics_->create_backend(problem); }
  void drawable_size(int& width, int& height) const override { graphics_->drawable_size(width, height); }
  void announce() override {
    report_size();
    report_keys();
    gamepads_->announce();
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
  void lock_mouse(bool wanted) override { SDL_SetRelativeMouseMode(wanted ? SDL_TRUE : SDL_FALSE); }
  bool is_mouse_locked() const { return SDL_GetRelativeMouseMode() == SDL_TRUE; }
  void move_mouse(int x, int y) override { SDL_WarpMouseInWindow(window_, x, y); }
  void set_text_area(int x, int y, int width, int height) override {
    const SDL_Rect area{x, y, width, height};
    SDL_SetTextInputRect(&area);
  }

  std::vector<Display> displays() const override {
    std::vector<Display> all;
    const int count = std::max(SDL_GetNumVideoDisplays(), 0);
    all.reserve(static_cast<std::size_t>(count) + 1);
    for (int i = 0; i < count; ++i) all.push_back(display_at(i));
    if (all.empty()) all.emplace_back();
    return all;
  }
  int display() const override { return std::max(SDL_GetWindowDisplayIndex(window_), 0); }
  void position(int& x, int& y) const override { SDL_GetWindowPosition(window_, &x, &y); }
  void move(int x, int y) override {
    if (!is_fullscreen()) SDL_SetWindowPosition(window_, x, y);
  }
  void set_title(const std::string& title) override { SDL_SetWindowTitle(window_, title.empty() ? title_.c_str() : title.c_str()); }
  void set_icon(const std::vector<std::uint8_t>& rgba, int width, int height) override {
    std::vector<std::uint8_t> pixels = rgba;
    SDL_Surface* const icon = SDL_CreateRGBSurfaceWithFormatFrom(pixels.data(), width, height, 32, width * 4, SDL_PIXELFORMAT_RGBA32);
    if (icon != nullptr) SDL_SetWindowIcon(window_, icon);
    SDL_FreeSurface(icon);
  }
  void set_border(bool has_border) override { SDL_SetWindowBordered(window_, has_border ? SDL_TRUE : SDL_FALSE); }
  void minimise() override { SDL_MinimizeWindow(window_); }
  void restore() override { SDL_RestoreWindow(window_); }
  bool is_minimised() const override { return (SDL_GetWindowFlags(window_) & SDL_WINDOW_MINIMIZED) != 0; }
  void keep_display_awake(bool wanted) override { wanted ? SDL_DisableScreenSaver() : SDL_EnableScreenSaver(); }
  void leave_closing_to_game(bool wanted) override { game_closes_ = wanted; }

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

  static Display display_at(int index) {
    Display found;
    SDL_Rect bounds{0, 0, found.width, found.height};
    if (SDL_GetDisplayBounds(index, &bounds) == 0) {
      found.x = bounds.x;
      found.y = bounds.y;
      found.width = bounds.w;
      found.height = bounds.h;
    }
    SDL_Rect work = bounds;
    if (SDL_GetDisplayUsableBounds(index, &work) != 0) work = bounds;
    found.work_x = work.x;
    found.work_y = work.y;
    found.work_width = work.w;
    found.work_height = work.h;
    SDL_DisplayMode mode;
    found.frequency = SDL_GetCurrentDisplayMode(index, &mode) == 0 ? mode.refresh_rate : 0;
    float dots = 0;
    if (SDL_GetDisplayDPI(index, &dots, nullptr, nullptr) == 0 && dots > 0) found.dpi = static_cast<int>(dots + 0.5f);
    return found;
  }

  void ask_to_close() {
    closed_ = !game_closes_;
    if (closed_) return;
    InputEvent close;
    close.type = InputEvent::Type::kClose;
    push_input(close);
  }

  void report_size() {
    int width = 0, height = 0;
    SDL_GetWindowSize(window_, &width, &height);
    push_size(width, height);
  }

  // What stands on the keys that are places, where that changed.
  void report_keys() {
    for (std::size_t i = 0; i < kPlaces; ++i) {
      InputEvent label;
      label.type = InputEvent::Type::kKeyLabel;
      label.code = place_code(i);
      label.text = key_label(SDL_GetKeyFromScancode(static_cast<SDL_Scancode>(scancode_of(label.code))));
      if (label.text == us_key_name(label.code)) label.text.clear();
      if (label.text == labels_[i]) continue;
      labels_[i] = label.text;
      push_input(label);
    }
  }

  void handle(const SDL_Event& event) {
    switch (event.type) {
      case SDL_QUIT: ask_to_close(); break;
      case SDL_KEYDOWN:
      case SDL_KEYUP: handle_key(event.key); break;
      case SDL_MOUSEMOTION: handle_motion(event.motion); break;
      case SDL_MOUSEBUTTONDOWN:
      case SDL_MOUSEBUTTONUP:
        if (!is_mouse_locked()) push_pointer(PointerSpace::kWindow, event.button.x, event.button.y);
        push_button(button_number(event.button.button), event.type == SDL_MOUSEBUTTONDOWN);
        break;
      case SDL_MOUSEWHEEL:
        if (event.wheel.y != 0) push_of_type(InputEvent::Type::kWheel, event.wheel.y);
        if (event.wheel.x != 0) push_of_type(InputEvent::Type::kMotion, kMotionWheelAcross, 0, event.wheel.x);
        break;
      case SDL_FINGERDOWN:
      case SDL_FINGERMOTION:
      case SDL_FINGERUP: handle_finger(event.tfinger); break;
      case SDL_TEXTEDITING: handle_composition(event.edit.text, event.edit.start); break;
      case SDL_TEXTEDITING_EXT:
        handle_composition(event.editExt.text, event.editExt.start);
        SDL_free(event.editExt.text);
        break;
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

  // A locked pointer stays where it is.
  void handle_motion(const SDL_MouseMotionEvent& motion) {
    if (is_mouse_locked()) {
      push_of_type(InputEvent::Type::kMotion, kMotionPointer, 0, motion.xrel, motion.yrel);
    } else {
      push_pointer(PointerSpace::kWindow, motion.x, motion.y);
    }
  }

  // A finger has the lowest number that is free, for as long as it stays.
  void handle_finger(const SDL_TouchFingerEvent& finger) {
    auto place = std::find(fingers_.begin(), fingers_.end(), finger.fingerId);
    if (place == fingers_.end() && finger.type == SDL_FINGERDOWN) place = std::find(fingers_.begin(), fingers_.end(), kNoFinger);
    if (place == fingers_.end()) return;
    *place = finger.type == SDL_FINGERUP ? kNoFinger : finger.fingerId;
    int width = 0, height = 0;
    SDL_GetWindowSize(window_, &width, &height);
    push_of_type(InputEvent::Type::kTouch, static_cast<std::int32_t>(place - fingers_.begin()), finger.type == SDL_FINGERUP ? 0 : 1,
                 static_cast<double>(finger.x) * width, static_cast<double>(finger.y) * height);
  }

  static void handle_composition(const char* text, std::int32_t cursor) {
    InputEvent composition;
    composition.type = InputEvent::Type::kComposition;
    composition.text = text;
    composition.code = cursor;
    push_input(composition);
  }

  void handle_window(const SDL_WindowEvent& event) {
    if (event.event == SDL_WINDOWEVENT_ENTER) push_of_type(InputEvent::Type::kPointerInside, 0, 1);
    if (event.event == SDL_WINDOWEVENT_LEAVE) push_of_type(InputEvent::Type::kPointerInside, 0, 0);
    if (event.event == SDL_WINDOWEVENT_SIZE_CHANGED) report_size();
    if (event.event != SDL_WINDOWEVENT_FOCUS_GAINED && event.event != SDL_WINDOWEVENT_FOCUS_LOST) return;
    InputEvent focus;
    focus.type = InputEvent::Type::kFocus;
    focus.value = event.event == SDL_WINDOWEVENT_FOCUS_GAINED ? 1 : 0;
    push_input(focus);
  }

  static constexpr SDL_FingerID kNoFinger = -1;
  static constexpr std::array<SDL_FingerID, kFingers> no_fingers() {
    std::array<SDL_FingerID, kFingers> none = {};
    for (SDL_FingerID& each : none) each = kNoFinger;
    return none;
  }

  SDL_Window* window_;
  std::unique_ptr<WindowGraphics> graphics_;
  SDL_Rect windowed_;            // where it stands when it does not fill the display
  std::string labels_[kPlaces];  // as reported last; "": that of the US layout
  std::unique_ptr<SdlGamepads> gamepads_ = std::make_unique<SdlGamepads>();
  std::array<SDL_FingerID, kFingers> fingers_ = no_fingers();
  const std::string title_;
  bool closed_ = false, takes_screenshot_ = false, game_closes_ = false;
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
  SDL_SetHint(SDL_HINT_IME_SUPPORT_EXTENDED_TEXT, "1");
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
