#pragma once
// Drawing and text beyond the built-in functions, in the current font and alignment.
#include "toolkit/names.h"

namespace game {

// Colour, alpha, font, alignment and blend mode as they are now, put back at the end of the block.
class KeptDrawState {
 public:
  KeptDrawState();
  ~KeptDrawState();
  KeptDrawState(const KeptDrawState&) = delete;
  KeptDrawState& operator=(const KeptDrawState&) = delete;

 private:
  Value colour_, alpha_, font_, halign_, valign_, blend_;
};

// The text in `inner` with an edge of `thickness` pixels in `outer`.
extern const Script<void(Real x, Real y, Value text, Real inner, Real outer, Real thickness)> draw_text_outlined;
// With a shadow `distance` pixels to the lower right.
extern const Script<void(Real x, Real y, Value text, Real colour, Real shadow, Real distance)> draw_text_shadowed;
// A ring that shows `share` (0 to 1) of itself, from the top clockwise.
extern const Script<void(Real x, Real y, Real radius, Real thickness, Real share, Real colour, Real back)> draw_healthbar_circular;
// The part of a sprite that a clock's hand has passed: `share` of a whole turn from the top clockwise. Around the sprite's middle.
extern const Script<void(Real sprite, Real image, Real x, Real y, Real share, Real colour, Real alpha)> draw_sprite_radial;

// Saves the next finished frame as the first free "Screenshots/screenshot-NNN.png". The file appears whole or not at all.
extern const Script<void()> screenshot;

}  // namespace game
