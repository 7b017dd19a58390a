// The window functions of scripts that act on the real window. Sizes come through the input queue (window_get_width and its like).
#define ARENA_DEFINES_BUILTINS

#include <tuple>

#include "engine/platform/pointer_state.h"
#include "engine/platform/window.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/window.h"
#include "runtime/input/outside.h"
#include "runtime/session/state.h"

namespace arena::platform {
namespace {

struct WindowState {
  std::int32_t cursor = 0;    // 0 the arrow, -1 none
  std::string own_clipboard;  // without a window the clipboard is the game's own

  void restart();
  static constexpr auto fields() {
    return std::tuple(field("cursor", &WindowState::cursor), field("own_clipboard", &WindowState::own_clipboard));
  }
};
const StatePart<WindowState> part{PartLevel::kServices, "window state"};
const Part<Window*> used{PartLevel::kServices, "window"};

Window* window() { return window_in_use(); }
void show_cursor() {
  if (window() != nullptr) window()->show_cursor(part().cursor != -1);
}

// The clipboard is the player's.
void WindowState::restart() {
  cursor = 0;
  show_cursor();
}

void set_cursor(std::int32_t wanted) {
  part().cursor = wanted;
  show_cursor();
}
std::int32_t get_cursor() { return part().cursor; }

void clipboard_set_text(std::string_view text) {
  part().own_clipboard = text;
  if (window() != nullptr) window()->set_clipboard(part().own_clipboard);
}
std::string clipboard_get_text() {
  return answer_from_outside([] { return window() != nullptr ? window()->clipboard() : part().own_clipboard; });
}
bool clipboard_has_text() { return !clipboard_get_text().empty(); }

bool get_fullscreen() {
  return answer_from_outside([] { return window() != nullptr && window()->is_fullscreen() ? "1" : ""; }) == "1";
}
void set_fullscreen(bool wanted) {
  if (window() != nullptr && window()->is_fullscreen() != wanted) window()->toggle_fullscreen();
}
void set_size(std::int32_t width, std::int32_t height) {
  if (window() != nullptr && width > 0 && height > 0) window()->resize(width, height);
}

constexpr Implementation kRows[] = {
    implement<script::window_set_cursor, set_cursor>,          implement<script::window_get_cursor, get_cursor>,
    implement<script::clipboard_set_text, clipboard_set_text>, implement<script::clipboard_get_text, clipboard_get_text>,
    implement<script::clipboard_has_text, clipboard_has_text>, implement<script::window_get_fullscreen, get_fullscreen>,
    implement<script::window_set_fullscreen, set_fullscreen>,  implement<script::window_set_size, set_size>,
};
const BuiltinTable table("Window", "", kRows);

}  // namespace

Window* window_in_use() { return used(); }

void use_window(Window* window) {
  used() = window;
  use_window_for_pointer(window);
  follow_window_state();
}

void follow_window_state() {
  show_cursor();
  follow_pointer_state();
  follow_window_settings();
}

}  // namespace arena::platform
