// Displays, the window's place and looks, and the speed of frames, as scripts see them. Without a window there is one display of 1920 x
// 1080 pixels, whose upper left corner is the window's place, and nothing else happens.
#define ARENA_DEFINES_BUILTINS

#include <algorithm>
#include <cmath>
#include <sstream>
#include <tuple>

#include "engine/platform/window.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/builtins/displays.h"
#include "runtime/builtins/implement.h"
#include "runtime/input/outside.h"
#include "runtime/program/names.h"
#include "runtime/session/state.h"
#include "runtime/variables_calls/access.h"

namespace arena::platform {
namespace {

struct WindowSettings {
  std::string caption;  // "": the game's title
  bool is_borderless = false, is_awake = true;
  std::int32_t frames_per_second = FramePace().frames_per_second;
  double margin = FramePace().margin_milliseconds;

  // A game that sets none of it is as if there were no such part.
  void visit_content(StateVisitor& visitor) {
    const bool is_set = !caption.empty() || is_borderless || !is_awake || frames_per_second != FramePace().frames_per_second ||
                        margin != FramePace().margin_milliseconds;
    if (!is_set) return;
    const auto show = [&](const char* name, auto& value) {
      visitor.name(name);
      visit_state(visitor, value);
    };
    show("caption", caption);
    show("is_borderless", is_borderless);
    show("is_awake", is_awake);
    show("frames_per_second", frames_per_second);
    show("margin", margin);
  }
  void restart() {
    *this = WindowSettings();
    follow_window_settings();
  }
  static constexpr auto fields() {
    return std::tuple(derived("caption", &WindowSettings::caption), derived("is_borderless", &WindowSettings::is_borderless),
                      derived("is_awake", &WindowSettings::is_awake), derived("frames_per_second", &WindowSettings::frames_per_second),
                      derived("margin", &WindowSettings::margin));
  }
};
const StatePart<WindowSettings> settings{PartLevel::kServices, "window settings"};

constexpr std::int32_t kFastest = 1000;  // frames a second
constexpr double kLongestMargin = 20;    // milliseconds
constexpr const char* kNumbers[] = {"x", "y", "width", "height", "frequency", "dpi", "work_x", "work_y", "work_width", "work_height"};
constexpr std::size_t kNumberCount = std::size(kNumbers);

// All displays in one answer: their numbers, in the order of kNumbers.
std::string ask_displays() {
  return answer_from_outside([] {
    std::string text;
    const Window* const window = window_in_use();
    for (const Display& each : window != nullptr ? window->displays() : std::vector<Display>(1)) {
      for (const int number : {each.x, each.y, each.width, each.height, each.frequency, each.dpi, each.work_x, each.work_y, each.work_width,
                               each.work_height}) {
        text += std::to_string(number) + " ";
      }
    }
    return text;
  });
}
std::vector<double> displays() {
  std::istringstream stream(ask_displays());
  std::vector<double> numbers;
  for (double number = 0; stream >> number;) numbers.push_back(number);
  return numbers;
}

std::int32_t get_count() { return static_cast<std::int32_t>(displays().size() / kNumberCount); }
RValue get(std::int32_t display) {
  const std::vector<double> numbers = displays();
  const std::int32_t count = static_cast<std::int32_t>(numbers.size() / kNumberCount);
  if (display < 0 || display >= count) {
    report_invalid_resource(1, "display", display, count);
    return {};
  }
  RValue made = make_struct();
  for (std::size_t i = 0; i < kNumberCount; ++i) {
    const double number = numbers[static_cast<std::size_t>(display) * kNumberCount + i];
    store_variable(property_object(made), variable_id(kNumbers[i]), RValue(number));
  }
  return made;
}

// A number that the window tells; without a window 0.
template <class Ask>
double ask_window(Ask ask) {
  const std::string answer = answer_from_outside([&] { return std::to_string(window_in_use() != nullptr ? ask(*window_in_use()) : 0); });
  return static_cast<double>(std::strtol(answer.c_str(), nullptr, 10));
}
double get_of_window() {
  return ask_window([](const Window& window) { return window.display(); });
}
double get_x() {
  return ask_window([](const Window& window) {
    int x = 0, y = 0;
    window.position(x, y);
    return x;
  });
}
double get_y() {
  return ask_window([](const Window& window) {
    int x = 0, y = 0;
    window.position(x, y);
    return y;
  });
}
bool is_minimised() {
  return ask_window([](const Window& window) { return window.is_minimised() ? 1 : 0; }) == 1;
}

constexpr std::int32_t kFarthest = 1 << 20;  // pixels: a window that is further away is lost
void set_position(std::int32_t x, std::int32_t y) {
  if (window_in_use() != nullptr) window_in_use()->move(std::clamp(x, -kFarthest, kFarthest), std::clamp(y, -kFarthest, kFarthest));
}
void minimise() {
  if (window_in_use() != nullptr) window_in_use()->minimise();
}
void restore() {
  if (window_in_use() != nullptr) window_in_use()->restore();
}

void set_caption(std::string_view caption) {
  constexpr std::size_t kLongest = 1024;  // bytes
  settings().caption = caption.substr(0, kLongest);
  if (window_in_use() != nullptr) window_in_use()->set_title(settings().caption);
}
std::string get_caption() { return settings().caption; }
void set_borderless(bool wanted) {
  settings().is_borderless = wanted;
  if (window_in_use() != nullptr) window_in_use()->set_border(!wanted);
}
bool get_borderless() { return settings().is_borderless; }
void set_awake(bool wanted) {
  settings().is_awake = wanted;
  if (window_in_use() != nullptr) window_in_use()->keep_display_awake(wanted);
}
void set_speed(std::int32_t frames_per_second) { settings().frames_per_second = std::clamp(frames_per_second, 0, kFastest); }
std::int32_t get_speed() { return settings().frames_per_second; }
void set_margin(double milliseconds) { settings().margin = milliseconds > 0 ? std::min(milliseconds, kLongestMargin) : 0; }
double get_margin() { return settings().margin; }

constexpr Implementation kRows[] = {
    implement<script::display_get, get>,
    implement<script::display_get_count, get_count>,
    implement<script::display_get_of_window, get_of_window>,
    implement<script::display_set_awake, set_awake>,
    implement<script::game_get_sleep_margin, get_margin>,
    implement<script::game_get_speed, get_speed>,
    implement<script::game_set_sleep_margin, set_margin>,
    implement<script::game_set_speed, set_speed>,
    implement<script::window_get_borderless, get_borderless>,
    implement<script::window_get_caption, get_caption>,
    implement<script::window_get_x, get_x>,
    implement<script::window_get_y, get_y>,
    implement<script::window_is_minimised, is_minimised>,
    implement<script::window_minimise, minimise>,
    implement<script::window_restore, restore>,
    implement<script::window_set_borderless, set_borderless>,
    implement<script::window_set_caption, set_caption>,
    implement<script::window_set_position, set_position>,
};
const BuiltinTable table(
    "Displays and frames",
    "Places are in the units in which the system places windows. Without a window, as in a headless run, there is one display of 1920 x "
    "1080 pixels, and functions that change the window do nothing.",
    kRows);

}  // namespace

void follow_window_settings() {
  Window* const window = window_in_use();
  if (window == nullptr) return;
  const WindowSettings& wanted = settings();
  window->set_title(wanted.caption);
  window->set_border(!wanted.is_borderless);
  window->keep_display_awake(wanted.is_awake);
}

FramePace frame_pace() { return {settings().frames_per_second, settings().margin}; }

}  // namespace arena::platform
