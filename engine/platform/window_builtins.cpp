// The window functions of scripts that act on the real window. Sizes come through the input queue (window_get_width and its like).
#include <tuple>

#include "engine/platform/window.h"
#include "runtime/session/state.h"
#include "runtime/variables_calls/arguments.h"

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

Window* window() { return used(); }
void show_cursor() {
  if (window() != nullptr) window()->show_cursor(part().cursor != -1);
}

// The clipboard is the player's.
void WindowState::restart() {
  cursor = 0;
  show_cursor();
}

void set_cursor(std::optional<std::int32_t> wanted) {
  part().cursor = wanted.value_or(0);
  show_cursor();
}
std::int32_t get_cursor() { return part().cursor; }

void clipboard_set_text(std::string_view text) {
  part().own_clipboard = text;
  if (window() != nullptr) window()->set_clipboard(part().own_clipboard);
}
std::string clipboard_get_text() { return window() != nullptr ? window()->clipboard() : part().own_clipboard; }
bool clipboard_has_text() { return !clipboard_get_text().empty(); }

bool get_fullscreen() { return window() != nullptr && window()->is_fullscreen(); }
void set_fullscreen(bool wanted) {
  if (window() != nullptr && window()->is_fullscreen() != wanted) window()->toggle_fullscreen();
}
void set_size(std::int32_t width, std::int32_t height) {
  if (window() != nullptr && width > 0 && height > 0) window()->resize(width, height);
}

const BuiltinEntry kEntries[] = {
    {"window_set_cursor", builtin<set_cursor>},          {"window_get_cursor", builtin<get_cursor>},
    {"clipboard_set_text", builtin<clipboard_set_text>}, {"clipboard_get_text", builtin<clipboard_get_text>},
    {"clipboard_has_text", builtin<clipboard_has_text>}, {"window_get_fullscreen", builtin<get_fullscreen>},
    {"window_set_fullscreen", builtin<set_fullscreen>},  {"window_set_size", builtin<set_size>},
};
const BuiltinTable table(kEntries);

}  // namespace

void use_window(Window* shown) {
  used() = shown;
  show_cursor();
}

void follow_window_state() { show_cursor(); }

}  // namespace arena::platform
