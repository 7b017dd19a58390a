#include "toolkit/support/drawing.h"

namespace game {
namespace {
constexpr int kSteps = 64;  // of a whole turn

// Between two rings, from one share of a turn to another.
void draw_arc(Real x, Real y, Real inside, Real outside, Real from, Real to, Real colour) {
  draw_set_colour(colour);
  const int steps = std::clamp(saturate_int32(std::ceil((to - from).number() * kSteps)), 1, kSteps);
  for (int i = 0; i < steps; ++i) {
    const Real one = 90 - (from + (to - from) * i / steps) * 360, two = 90 - (from + (to - from) * (i + 1) / steps) * 360;
    const Real x1 = x + lengthdir_x(outside, one), y1 = y + lengthdir_y(outside, one), x2 = x + lengthdir_x(outside, two),
               y2 = y + lengthdir_y(outside, two);
    const Real x3 = x + lengthdir_x(inside, two), y3 = y + lengthdir_y(inside, two), x4 = x + lengthdir_x(inside, one),
               y4 = y + lengthdir_y(inside, one);
    draw_triangle(x1, y1, x2, y2, x3, y3, false);
    if (inside > 0) draw_triangle(x1, y1, x3, y3, x4, y4, false);
  }
}
}  // namespace

KeptDrawState::KeptDrawState()
    : colour_(draw_get_colour()),
      alpha_(draw_get_alpha()),
      font_(draw_get_font()),
      halign_(draw_get_halign()),
      valign_(draw_get_valign()),
      blend_(gpu_get_blendmode()) {}

KeptDrawState::~KeptDrawState() {
  draw_set_colour(colour_);
  draw_set_alpha(alpha_);
  draw_set_font(font_);
  draw_set_halign(halign_);
  draw_set_valign(valign_);
  gpu_set_blendmode(blend_);
}

}  // namespace game

SCRIPT(draw_text_outlined, Real at_x, Real at_y, Value text, Real inner, Real outer, Real thickness) {
  draw_set_colour(outer);
  for (int i = 0; i < 8; ++i) draw_text(at_x + lengthdir_x(thickness, i * 45), at_y + lengthdir_y(thickness, i * 45), text);
  draw_set_colour(inner);
  draw_text(at_x, at_y, text);
}

SCRIPT(draw_text_shadowed, Real at_x, Real at_y, Value text, Real colour, Real shadow, Real distance) {
  draw_set_colour(shadow);
  draw_text(at_x + distance, at_y + distance, text);
  draw_set_colour(colour);
  draw_text(at_x, at_y, text);
}

SCRIPT(draw_healthbar_circular, Real at_x, Real at_y, Real radius, Real thickness, Real share, Real colour, Real back) {
  draw_arc(at_x, at_y, radius - thickness, radius, 0, 1, back);
  if (share > 0) draw_arc(at_x, at_y, radius - thickness, radius, 0, clamp(share, 0, 1), colour);
}

// In strips of a pixel's height, each as wide as the hand leaves it: exact for every sprite, whatever its form.
SCRIPT(draw_sprite_radial, Real sprite, Real image, Real at_x, Real at_y, Real share, Real colour, Real alpha) {
  const Real across = sprite_get_width(sprite), down = sprite_get_height(sprite);
  const Real shown = clamp(share, 0, 1), hand = shown * 360;  // degrees clockwise from the top
  const auto strip = [&](Real left, Real top, Real wide) {
    if (wide.number() > 0)
      draw_sprite_part_ext(sprite, image, left, top, wide, 1, at_x - across / 2 + left, at_y - down / 2 + top, 1, 1, colour, alpha);
  };
  for (Real top = 0; top < down; top += 1) {
    const Real above = down / 2 - (top + 0.5);  // how far this row lies above the middle
    // The right half is passed first, from above; then the left one, from below.
    const auto reach = [&](Real angle) { return clamp(above.number() > 0 ? above * tan(degtorad(angle)) : across / 2, 0, across / 2); };
    if (hand >= 180) {
      strip(across / 2, top, across / 2);
    } else if (above > 0) {
      strip(across / 2, top, hand >= 90 ? across / 2 : reach(hand));
    } else if (hand > 90) {
      const Real left_out = clamp(-above * tan(degtorad(180 - hand)), 0, across / 2);
      strip(across / 2 + left_out, top, across / 2 - left_out);
    }
    if (hand <= 180) continue;
    if (above < 0) {
      const Real wide = hand >= 270 ? across / 2 : clamp(-above * tan(degtorad(hand - 180)), 0, across / 2);
      strip(across / 2 - wide, top, wide);
    } else if (hand > 270) {
      const Real left_out = clamp(above * tan(degtorad(360 - hand)), 0, across / 2);
      strip(0, top, across / 2 - left_out);
    }
  }
}

SCRIPT(screenshot) { screen_save_numbered(); }
