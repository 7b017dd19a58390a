#include "toolkit/support/resolution.h"

namespace game {
extern const Constructor TarnResolutionManager;
namespace {

const Variable instance{"instance"}, window_width{"window_width"}, window_height{"window_height"}, gui_width{"gui_width"},
    gui_height{"gui_height"};
const Variable scale{"scale"}, wanted_scale{"wanted_scale"}, x_field{"x"}, y_field{"y"}, width{"width"}, height{"height"};
const Variable update{"update"}, setScale{"setScale"}, setFullscreen{"setFullscreen"}, toggleFullscreen{"toggleFullscreen"},
    isFullscreen{"isFullscreen"};
const Variable setWindowSize{"setWindowSize"}, guiRectangle{"guiRectangle"};

constexpr Real kDesignWidth = 1280, kDesignHeight = 720;     // GUI pixels: what the interface is made for
constexpr Real kSmallestWidth = 704, kSmallestHeight = 396;  // GUI pixels: below them the interface would not fit
constexpr Real kSteps = 2;                                   // of the scale, to a whole one

// The largest step at which the design fits; windows smaller than it get a scale of 1 as long as they can.
Real automatic_scale(Real across, Real down) { return max(1, floor(min(across / kDesignWidth, down / kDesignHeight) * kSteps) / kSteps); }

void apply(const ObjectSelf& manager) {
  const Real across = max(1, manager[window_width]), down = max(1, manager[window_height]);
  const Real own = manager[wanted_scale];
  const Real most = min(across / kSmallestWidth, down / kSmallestHeight);
  const Real used = min(own > 0 ? own : automatic_scale(across, down), most);
  manager[scale] = used;
  manager[gui_width] = floor(across / used + 0.5);
  manager[gui_height] = floor(down / used + 0.5);
  display_set_gui_size(manager[gui_width], manager[gui_height]);
}

}  // namespace
}  // namespace game

CONSTRUCTOR(TarnResolutionManager) {
  self[window_width] = window_get_width();
  self[window_height] = window_get_height();
  self[wanted_scale] = 0;
  apply(self);
}

STATIC_METHOD(Value, TarnResolutionManager, update) {
  const Value across = window_get_width(), down = window_get_height();
  if (self[window_width] == across && self[window_height] == down) return self;
  self[window_width] = across;
  self[window_height] = down;
  apply(self);
  return self;
}
STATIC_METHOD(Value, TarnResolutionManager, fitRoom) {
  const Real across = max(1, self[window_width]), down = max(1, self[window_height]);
  const Real smaller = min(across / room_width, down / room_height), view_width = across / smaller, view_height = down / smaller;
  const Value camera = view_get_camera(0);
  camera_set_view_size(camera, view_width, view_height);
  camera_set_view_pos(camera, (room_width - view_width) / 2, (room_height - view_height) / 2);
  return self;
}
STATIC_METHOD(Value, TarnResolutionManager, setScale, Value to) {
  self[wanted_scale] = checked::clamp(to, 0, 8);
  apply(self);
  return self;
}
STATIC_METHOD(Value, TarnResolutionManager, isFullscreen) { return window_get_fullscreen(); }
STATIC_METHOD(Value, TarnResolutionManager, setFullscreen, Value on) {
  window_set_fullscreen(on);
  return self;
}
STATIC_METHOD(Value, TarnResolutionManager, toggleFullscreen) {
  window_set_fullscreen(!window_get_fullscreen());
  return self;
}
STATIC_METHOD(Value, TarnResolutionManager, setWindowSize, Value across, Value down) {
  window_set_size(across, down);
  return self;
}
STATIC_METHOD(Value, TarnResolutionManager, guiRectangle) {
  return struct_of({{x_field, 0}, {y_field, 0}, {width, self[gui_width] * self[scale]}, {height, self[gui_height] * self[scale]}});
}

SCRIPT(getTarnResolutionManager) {
  const ObjectSelf kept = statics(getTarnResolutionManager);
  if (kept.object()->find_variable(instance.slot) == nullptr) kept[instance] = TarnResolutionManager.make();
  return kept[instance];
}
