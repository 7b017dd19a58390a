// The window functions of scripts that act on the real window. Sizes come through the input queue (window_get_width and its like).
#include "engine/platform/window.h"
#include "runtime/variables_calls/arguments.h"

namespace arena::platform {
namespace {

Window* window = nullptr;
std::int32_t cursor = 0;  // 0 the arrow, -1 none

void set_cursor(std::optional<std::int32_t> wanted) {
  cursor = wanted.value_or(0);
  if (window != nullptr) window->show_cursor(cursor != -1);
}
std::int32_t get_cursor() { return cursor; }

const BuiltinEntry kEntries[] = {{"window_set_cursor", builtin<set_cursor>}, {"window_get_cursor", builtin<get_cursor>}};
const BuiltinTable table(kEntries);

}  // namespace

void use_window(Window* used) {
  window = used;
  if (window != nullptr) window->show_cursor(cursor != -1);
}

void reset_cursor() { set_cursor(0); }

}  // namespace arena::platform
