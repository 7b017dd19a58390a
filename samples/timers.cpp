// Alarms, timers and dates: a clock, a bell each second that Space pauses, and a light that an alarm by name turns on and off.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"

namespace game {
namespace {

const Sample sample{rTimers, "Time", "A clock, a timer, an alarm. Space pauses the timer", sprPlanet};

const Variable bell{"bell"}, rings{"rings"}, is_lit{"is_lit"}, week{"week"};

constexpr int kNight = 0x2A1C10;
constexpr Real kBlink = 20;  // frames

void line(Real down, const Value& text, int colour) { draw_text_shadowed(display_get_gui_width() / 2, down, text, colour, kNight, 1); }

}  // namespace
}  // namespace game

METHOD(void, oTimers, ring, Value) { self[rings] += 1; }

EVENT(oTimers, Create_0) {
  event_inherited();
  self[rings] = 0;
  self[is_lit] = true;
  self[bell] = timer_create_seconds(1, bind(self, oTimers_ring), 0);
  alarm_set("blink", kBlink);
}

EVENT(oTimers, Alarm_blink) {
  self[is_lit] = !bool(Value(self[is_lit]));
  alarm_set("blink", kBlink);
}

EVENT(oTimers, Step_0) { event_inherited(); }

EVENT(oTimers, KeyPress_32) {
  const Value timer = self[bell];
  if (timer_is_paused(timer)) {
    timer_resume(timer);
  } else {
    timer_pause(timer);
  }
}

EVENT(oTimers, Draw_64) {
  event_inherited();
  const KeptDrawState kept;
  draw_set_halign(fa_center);
  draw_set_valign(fa_middle);
  draw_set_font(fntTitle);
  const Real now = date_now(), zone = date_zone_offset(now) / 3600;
  line(180, date_format(now, "hh:mm:ss"), kAmber);
  draw_set_font(fntUi);
  line(220, date_format(now, "WWW, D MMM YYYY") + ", week " + string(Value(date_get(now)[week])), kPale);
  line(250, Value("UTC ") + (zone < 0 ? "" : "+") + string(zone), kQuiet);
  line(340,
       Value("The timer has rung ") + string(Value(self[rings])) + " times; " +
           (timer_is_paused(Value(self[bell])) ? Value("it is paused")
                                               : "again in " + span_format(timer_get_left(Value(self[bell])), "s.fff") + " s"),
       kPale);
  if (bool(Value(self[is_lit]))) draw_sprite_ext(sprGlow, 0, display_get_gui_width() / 2, 430, 2, 2, 0, kAmber, 1);
  line(500, Value("The light's alarm comes in ") + string(alarm_get("blink")) + " frames", kQuiet);
}
