#pragma once
// Layers of stickers: very many small pictures that stay where they were put. Past its capacity a layer lets the oldest go.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(stickers_add, void(StickersNumber, SpriteIndex, Number, Pixels, Pixels, Number, Number, Degrees, Colour, Number),
        "stickers, sprite, frame, x, y, xscale, yscale, angle, colour, alpha", "Adds a sticker.");
BUILTIN(stickers_clear, void(StickersNumber), "stickers", "Takes all stickers away.");
BUILTIN(stickers_count, Whole(StickersNumber), "stickers", "How many stickers there are.");
BUILTIN(stickers_create, StickersNumber(In<Whole, 0, 10000000>), "capacity", "Makes a layer of stickers.");
BUILTIN(stickers_destroy, void(StickersNumber), "stickers", "Ends a layer of stickers.");
BUILTIN(stickers_draw, void(StickersNumber), "stickers", "Draws the stickers that are in view.");
BUILTIN(stickers_get, Struct(StickersNumber, Whole), "stickers, index", "A struct that describes a sticker, from the oldest (0) on.");

}  // namespace arena::script
