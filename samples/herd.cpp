// Instances that sleep and wake, copies, and the events of pointer, wheel and leaving: gems drift, those far from the pointer sleep.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"

namespace game {
namespace {

const Sample sample{rHerd, "Sleep and wake", "Who is far from the pointer sleeps. Click a gem, turn the wheel", sprGem};

const Variable reach{"reach"}, across{"across"}, down{"down"}, clones{"clones"};

constexpr Real kDrift = 60;      // pixels a second
constexpr Real kReachStep = 40;  // pixels a notch of the wheel
constexpr int kGems = 60, kMostGems = 200;

}  // namespace
}  // namespace game

EVENT(oHerd, Create_0) {
  event_inherited();
  self[reach] = 260;
  for (int i = 0; i < kGems; ++i) {
    const Real across_room = random(room_width), down_room = random(room_height);
    instance_create_layer(across_room, down_room, "layHerd", oGrazer);
  }
}

EVENT(oHerd, Step_0) {
  event_inherited();
  const Real around = Value(self[reach]);
  instance_sleep(oGrazer);
  instance_wake_region(mouse_x - around, mouse_y - around, mouse_x + around, mouse_y + around);
}

EVENT(oHerd, Wheel_0) { self[reach] = min(Real(Value(self[reach])) + kReachStep, 800); }
EVENT(oHerd, Wheel_1) { self[reach] = max(Real(Value(self[reach])) - kReachStep, 60); }

EVENT(oHerd, Draw_64) {
  const KeptDrawState kept;
  draw_set_font(fntUi);
  draw_set_halign(fa_left);
  draw_set_valign(fa_top);
  draw_text_shadowed(20, 20, Value("Awake: ") + string(instance_number(oGrazer)), kPale, 0x2A1C10, 1);
  event_inherited();
}

EVENT(oGrazer, Create_0) {
  self[across] = random_range(-kDrift, kDrift);
  self[down] = random_range(-kDrift, kDrift);
}

EVENT(oGrazer, Step_0) {
  self[x] += Real(Value(self[across])) * Real(Value(global[dt_steady]));
  self[y] += Real(Value(self[down])) * Real(Value(global[dt_steady]));
}

EVENT(oGrazer, Pointer_0) { self[image_blend] = kAmber; }
EVENT(oGrazer, Pointer_1) { self[image_blend] = 0xFFFFFF; }

EVENT(oGrazer, Mouse_4) {
  if (instance_number(oGrazer) >= kMostGems) return;
  const Instance copy = instance_copy();
  copy[across] = -Real(Value(self[across]));
  copy[image_angle] = 45;
}

EVENT(oGrazer, Outside_0) {
  self[x] = self[x] < 0 ? room_width : self[x] > room_width ? Real(0) : Real(self[x]);
  self[y] = self[y] < 0 ? room_height : self[y] > room_height ? Real(0) : Real(self[y]);
}
