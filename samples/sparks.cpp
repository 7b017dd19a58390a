// Particles: a fountain that follows the pointer, with what makes it up in sliders.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"
#include "toolkit/support/particles.h"

namespace game {
namespace {

const Sample sample{rSparks, "Particles", "A fountain at the pointer. Click for a burst", sprFountain};

const Variable system{"system"}, spark{"spark"}, owed{"owed"}, per_second{"per_second"}, weight{"weight"}, burst{"burst"},
    drawSparks{"draw"}, set{"set"}, count{"count"}, sparks_shown{"sparks_shown"};
const Variable sprite_field{"sprite"}, life{"life"}, size{"size"}, size_end{"size_end"}, speed_field{"speed"}, direction_field{"direction"},
    gravity_field{"gravity"}, additive{"additive"}, column_gap{"column_gap"}, align_items{"align_items"}, flex_grow{"flex_grow"},
    inset_left{"inset_left"}, inset_top{"inset_top"}, prefix{"prefix"};

constexpr int kLeftButton = 1;
constexpr Real kBurst = 150;  // particles

// A name, and a slider bound to a variable of the room's object.
Value slider_row(Self self, const char* name, const char* variable, Real lowest, Real highest) {
  const Value row = TuiRow.make(struct_of({{column_gap, 12}, {align_items, tui::kCenter}}));
  const Value slider = TuiSlider.make(struct_of({{minimum, lowest}, {maximum, highest}, {flex_grow, 1}}));
  slider[bindVariable](self[id], variable);
  row[addContent](array_of(TuiText.make(struct_of({{value, name}, {width, 90}})), slider));
  return row;
}

}  // namespace
}  // namespace game

EVENT(oSparks, Create_0) {
  event_inherited();
  self[owed] = 0;
  self[per_second] = 240;
  self[weight] = 420;
  self[sparks_shown] = 0;
  self[system] = advanced_part_system.make();
  self[spark] = advanced_part_type.make(struct_of({{sprite_field, sprGlow},
                                                   {life, array_of(0.6, 1.6)},
                                                   {size, array_of(0.2, 0.8)},
                                                   {size_end, 0},
                                                   {speed_field, array_of(120, 420)},
                                                   {direction_field, array_of(55, 125)},
                                                   {gravity_field, 420},
                                                   {additive, true},
                                                   {color, array_of(0xA8E2FF, 0x3C9DFF, 0x7A52C4)}}));
  const Value window = TuiWindow.make(struct_of({{value, "Fountain"}, {width, 340}, {inset_left, 40}, {inset_top, 40}}));
  const Value shown = TuiText.make(struct_of({{prefix, "Alive: "}}));
  shown[bindVariable](self[id], "sparks_shown");
  window[addContent](slider_row(self, "A second", "per_second", 0, 1500));
  window[addContent](slider_row(self, "Weight", "weight", -600, 900));
  window[addContent](shown);
  self[interface][addContent](window);
}

EVENT(oSparks, Step_0) {
  event_inherited();
  const Value across = device_mouse_x_to_gui(0), down = device_mouse_y_to_gui(0);
  self[spark][set](struct_of({{gravity_field, Value(self[weight])}}));
  self[owed] += Real(Value(self[per_second])) * Real(Value(global[dt_steady]));
  const Real whole = floor(Real(Value(self[owed])));
  self[owed] -= whole;
  self[system][burst](self[spark], whole, across, down);
  if (mouse_check_button_pressed(kLeftButton)) self[system][burst](self[spark], kBurst, across, down);
  self[system][update]();
  self[sparks_shown] = self[system][count]();
}

EVENT(oSparks, Draw_64) {
  self[system][drawSparks]();
  event_inherited();
}
