#pragma once
// The window and its input.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/gpu/gpu.h"

namespace arena::platform {

struct WindowOptions {
  std::string title;
  int width = 1280, height = 720;
  bool fullscreen = false, vsync = true;
  bool offscreen = false;  // nobody sees it
};

// In the units in which windows are placed.
struct Display {
  int x = 0, y = 0, width = 1920, height = 1080;
  int frequency = 60, dpi = 96;                                       // pictures a second; 0: not known
  int work_x = 0, work_y = 0, work_width = 1920, work_height = 1080;  // without bars of the desktop
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

  // Where it stands and how it looks. At least one display.
  virtual std::vector<Display> displays() const = 0;
  virtual int display() const = 0;  // its place among them
  virtual void position(int& x, int& y) const = 0;
  virtual void move(int x, int y) = 0;
  virtual void set_title(const std::string& title) = 0;                                     // "": that of its options
  virtual void set_icon(const std::vector<std::uint8_t>& rgba, int width, int height) = 0;  // straight alpha, row by row
  virtual void set_border(bool has_border) = 0;
  virtual void minimise() = 0;
  virtual void restore() = 0;
  virtual bool is_minimised() const = 0;
  virtual void keep_display_awake(bool wanted) = 0;
  // From here on the wish to close it enters the game as an input, and poll() goes on; or no longer.
  virtual void leave_closing_to_game(bool wanted) = 0;
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
Window* window_in_use();
// The real window looks as the game's state says: after a restore.
void follow_window_state();
void follow_window_settings();  // its part: caption, border, wakefulness

// How often scripts want a frame to run.
struct FramePace {
  std::int32_t frames_per_second = 0;  // 0: with the screen
  double margin_milliseconds = 1;      // waited awake before each
};
FramePace frame_pace();

}  // namespace arena::platform
