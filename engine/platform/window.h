#pragma once
// The window and its input.
#include <cstdint>
#include <memory>
#include <string>

#include "engine/gpu/gpu.h"

namespace arena::platform {

struct WindowOptions {
  std::string title;
  int width = 1280, height = 720;
  bool fullscreen = false, vsync = true;
  bool offscreen = false;  // nobody sees it
};

class Window {
 public:
  virtual ~Window() = default;
  // Turns what happened into input events; false once the window was closed.
  virtual bool poll() = 0;
  virtual std::unique_ptr<gpu::Backend> create_backend(std::string& problem) = 0;
  // Pixels of the drawing area.
  virtual void drawable_size(int& width, int& height) const = 0;
  // Puts its size and what stands on its keys into the input queue, as each change of them does.
  virtual void announce() = 0;
  // Whether F12 was pressed since last asked.
  virtual bool takes_screenshot() = 0;
  virtual void show_cursor(bool shown) = 0;
  virtual void toggle_fullscreen() = 0;
  virtual bool is_fullscreen() const = 0;
  virtual void resize(int width, int height) = 0;  // of the window, in its own units; does nothing in fullscreen
  virtual void set_clipboard(const std::string& text) = 0;
  virtual std::string clipboard() const = 0;
  // The pointer is hidden and stays where it is; only its motion is told.
  virtual void lock_mouse(bool /*wanted*/) {}
  virtual void move_mouse(int /*x*/, int /*y*/) {}  // to a place in the window, in its own units
  // Where text is being typed, in the window's own units: an input method shows its choices beside it.
  virtual void set_text_area(int /*x*/, int /*y*/, int /*width*/, int /*height*/) {}
};

// Null and a sentence in `problem` when there is no display or no suitable graphics driver.
std::unique_ptr<Window> open_window(const WindowOptions& options, std::string& problem);
bool has_display();
// Returns when it was closed. Its text can be copied with Ctrl+C on Windows.
void show_error_dialog(const std::string& title, const std::string& text);
// Microseconds of a steady clock.
std::int64_t steady_microseconds();
void sleep_microseconds(std::int64_t microseconds);

// Which window the built-in functions of scripts reach; null: none.
void use_window(Window* window);
// The real window looks as the game's state says: after a restore.
void follow_window_state();

}  // namespace arena::platform
