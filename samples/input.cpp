// Input: a ship for each player, steered by actions; what every gamepad does; and "fire" bound anew to whatever is pressed next.
#include "samples/sample.h"
#include "toolkit/support/drawing.h"

namespace game {
extern const Script<void(Value, Value)> input_bind_fire;

namespace {

const Sample sample{rInput, "Input", "A ship for the keyboard, and one for each gamepad", sprShip};

const Variable player{"player"}, listens{"listens"}, hint{"hint"}, inset_left{"inset_left"}, inset_top{"inset_top"}, name_field{"name"};

constexpr int kPlayers = 8, kKeyboardPlayer = 0;
constexpr int kDark = 0x1E140B, kColours[] = {0x61C8FF, 0xE8C757, 0x7AE87A, 0xC47AFF, 0x6F6FFF, 0xFFB0F0, 0xF2EADF, 0x40A0E0};
constexpr Real kShipSpeed = 320, kMargin = 40;                                     // pixels/s; pixels from the room's edge
constexpr Real kPadWidth = 190, kPadHeight = 108, kPadsLeft = 860, kPadsTop = 40;  // GUI pixels
constexpr Real kShake = 0.15;                                                      // seconds that a pad shakes for a shot

// Where the buttons lie on a drawn pad, from its middle.
struct Place {
  int button;
  Real across, down;
};
const Place kButtons[] = {{0, 60, 14},   {1, 74, 0},    {2, 46, 0},     {3, 60, -14},  {4, -14, -14}, {5, 0, -22}, {6, 14, -14},
                          {9, -60, -34}, {10, 60, -34}, {11, -60, -14}, {12, -60, 14}, {13, -74, 0},  {14, -46, 0}};

// A stick from the middle of its well, pressed or not.
void draw_stick(int pad, int stick, Real across, Real down) {
  draw_circle_colour(across, down, 18, kDark, kDark, false);
  const int colour = gamepad_check_button(pad, 7 + stick) ? kAmber : kPale;
  draw_circle_colour(across + gamepad_get_axis(pad, stick * 2) * 12, down + gamepad_get_axis(pad, stick * 2 + 1) * 12, 8, colour, colour,
                     false);
}

void draw_pad(int pad, Real left, Real top) {
  const Real middle = left + kPadWidth / 2, height = top + 54;
  draw_sprite_nineslice(sprPanel, 0, left, top, kPadWidth, kPadHeight + 26, 0.25, c_white, 1);
  for (const Place& each : kButtons) {
    const int colour = gamepad_check_button(pad, each.button) ? kAmber : kDark;
    draw_circle_colour(middle + each.across, height + each.down, 6, colour, colour, false);
  }
  draw_stick(pad, 0, middle - 30, height + 34);
  draw_stick(pad, 1, middle + 30, height + 34);
  for (const int trigger : {0, 1}) {
    const Real from = middle + (trigger == 0 ? -84 : 44), pressed = gamepad_get_axis(pad, 4 + trigger);
    draw_rectangle_colour(from, top + 8, from + 40, top + 12, kDark, kDark, kDark, kDark, false);
    if (pressed > 0) draw_rectangle_colour(from, top + 8, from + 40 * pressed, top + 12, kAmber, kAmber, kAmber, kAmber, false);
  }
  draw_set_colour(kColours[pad]);
  draw_text_ext(left + 10, top + kPadHeight, string_concat(pad + 1, "  ", gamepad_get_name(pad)), -1, kPadWidth - 20);
}

}  // namespace
}  // namespace game

EVENT(oInput, Create_0) {
  event_inherited();
  for (int each = 0; each < kPlayers; ++each) {
    action_bind(each, "move", "pad left stick");
    for (const char* const way : {"left", "right", "up", "down"}) action_bind(each, "move", string_concat("pad ", way), way);
    action_bind(each, "fire", "pad south");
    action_bind(each, "fire", "pad right trigger");
    instance_create_layer(140 + 80 * each, 400, "layUI", oInputShip, struct_of({{player, each}}));
  }
  action_bind(kKeyboardPlayer, "move", "key W", "up");
  action_bind(kKeyboardPlayer, "move", "key A", "left");
  action_bind(kKeyboardPlayer, "move", "key S", "down");
  action_bind(kKeyboardPlayer, "move", "key D", "right");
  action_bind(kKeyboardPlayer, "fire", "key Space");
  self[listens] = false;
  self[hint] = "";
  const Value window = TuiWindow.make(struct_of({{value, "Actions"}, {width, 420}, {inset_left, 40}, {inset_top, 40}}));
  const Value shown = TuiText.make(struct_of({{overflow, tui::kOverflowWrap}}));
  shown[bindVariable](self[id], "hint");
  const Value button = TuiButton.make(struct_of({{value, "Fire with something else"}, {name_field, "bind"}}));
  button[addEvent]("click", input_bind_fire);
  window[addContent](array_of(shown, button));
  self[interface][addContent](window);
}

SCRIPT(input_bind_fire, Value, Value) { oInput[listens] = true; }

EVENT(oInput, Step_0) {
  event_inherited();
  const Value heard = action_listen(kKeyboardPlayer);
  if (self[listens] && heard != "") {
    self[listens] = false;
    if (heard != "key Esc" && heard != "mouse left") {
      action_unbind(kKeyboardPlayer, "fire");
      action_bind(kKeyboardPlayer, "fire", heard);
    }
  }
  if (self[listens]) {
    self[hint] = "Press what is to fire.";
  } else {
    self[hint] = string_concat("Move with ", action_prompt(kKeyboardPlayer, "move"), ", fire with ", action_prompt(kKeyboardPlayer, "fire"),
                               ". ", gamepad_number(), " gamepads are plugged in.");
  }
}

EVENT(oInput, Draw_64) {
  {
    const KeptDrawState kept;
    draw_set_font(fntUi);
    Real top = kPadsTop;
    for (int pad = 0; pad < kPlayers; ++pad) {
      if (!gamepad_is_connected(pad)) continue;
      draw_pad(pad, kPadsLeft + (pad % 2) * (kPadWidth + 16), top + Real(pad / 2) * (kPadHeight + 42));
    }
  }
  event_inherited();
}

EVENT(oInputShip, Create_0) { self[image_blend] = kColours[static_cast<int>(Real(self[player]).number())]; }

EVENT(oInputShip, Step_0) {
  const Value whose = self[player];
  self[visible] = whose == kKeyboardPlayer || gamepad_is_connected(whose);
  const Real dt = global[dt_steady], across = action_get_x(whose, "move"), down = action_get_y(whose, "move");
  self[x] = clamp(self[x] + across * kShipSpeed * dt, kMargin, room_width - kMargin);
  self[y] = clamp(self[y] + down * kShipSpeed * dt, kMargin, room_height - kMargin);
  if (across != 0 || down != 0) self[image_angle] = point_direction(0, 0, across, down) - 90;
  if (action_check_pressed(whose, "fire")) {
    self[image_xscale] = 1.8;
    gamepad_vibrate(action_get_pad(whose), 0.4, 0.8, kShake);
  }
  const Real size = self[image_xscale];
  self[image_xscale] = 1 + (size - 1) * exp(-8 * dt);
  self[image_yscale] = Real(self[image_xscale]);
}
