// What scripts want of the mouse in the window. Without a window the wishes are kept, and the pointer goes where it is put.
#define ARENA_DEFINES_BUILTINS

#include <cmath>
#include <tuple>

#include "engine/platform/pointer_state.h"
#include "engine/platform/window.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/pointer.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/session/state.h"
#include "runtime/values/number_text.h"

namespace arena::platform {
namespace {

struct PointerWish {
  bool is_locked = false;
  void restart();
  static constexpr auto fields() { return std::tuple(field("is_locked", &PointerWish::is_locked)); }
};
const StatePart<PointerWish> part{PartLevel::kServices, "pointer"};
const Part<Window*> used{PartLevel::kServices, "pointer's window"};

void lock_as_wished() {
  if (used() != nullptr) used()->lock_mouse(part().is_locked);
}

void PointerWish::restart() {
  is_locked = false;
  lock_as_wished();
}

Point in_window() {
  const InputState& input = input_state();
  const Point pointer{input.pointer_x, input.pointer_y};
  if (input.pointer_space == PointerSpace::kWindow) return pointer;
  return input.pointer_space == PointerSpace::kGui ? gui_to_window(pointer) : room_to_window(pointer);
}

void set_mouse_lock(bool wanted) {
  part().is_locked = wanted;
  lock_as_wished();
}
bool get_mouse_lock() { return part().is_locked; }
double get_x() { return in_window().x; }
double get_y() { return in_window().y; }
bool is_inside() { return input_state().is_pointer_inside; }
void set_mouse(double x, double y) {
  if (!std::isfinite(x) || !std::isfinite(y)) return;
  if (used() != nullptr) {
    used()->move_mouse(saturate_int32(x), saturate_int32(y));
  } else {
    push_pointer(PointerSpace::kWindow, x, y);
  }
}
void set_text_area(double x, double y, double width, double height) {
  if (used() == nullptr) return;
  const Point corner = gui_to_window({x, y}), other = gui_to_window({x + width, y + height});
  used()->set_text_area(saturate_int32(corner.x), saturate_int32(corner.y), saturate_int32(other.x - corner.x),
                        saturate_int32(other.y - corner.y));
}

constexpr Implementation kRows[] = {
    implement<script::keyboard_set_text_area, set_text_area>,
    implement<script::window_get_mouse_lock, get_mouse_lock>,
    implement<script::window_mouse_get_x, get_x>,
    implement<script::window_mouse_get_y, get_y>,
    implement<script::window_mouse_is_inside, is_inside>,
    implement<script::window_mouse_set, set_mouse>,
    implement<script::window_set_mouse_lock, set_mouse_lock>,
};
const BuiltinTable table("The mouse in the window", "", kRows);

}  // namespace

void use_window_for_pointer(Window* window) {
  used() = window;
  lock_as_wished();
}

void follow_pointer_state() { lock_as_wished(); }

}  // namespace arena::platform
