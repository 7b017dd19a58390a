#pragma once
// Decals: very many small pictures that stay on the floor. Stickers.make(50000) is a layer of at most so many; past that the oldest go.
// Draw it with DrawCamera() in a Draw event, free it with Destroy() in Clean Up.
#include "game/names.h"

namespace game {

extern const Constructor Stickers;
// (sprite, image, x, y, xscale, yscale, angle, colour, alpha): scales 1, angle 0, white and opaque where left out
inline const Variable Add{"Add"};
inline const Variable DrawCamera{"DrawCamera"};  // what the view shows
inline const Variable Destroy{"Destroy"};        // frees the layer; drawing and adding do nothing afterwards
inline const Variable Clear{"Clear"};
inline const Variable Count{"Count"};
inline const Variable At{"At"};  // (index) a struct {sprite, image, x, y, xscale, yscale, angle, color, alpha}; the newest last

}  // namespace game
