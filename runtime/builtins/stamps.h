#pragma once
// Layers of stamps: very many small pictures that stay where they were put. Past its capacity a layer lets the oldest go.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(stamps_add, void(StampsNumber, SpriteIndex, Number, Pixels, Pixels, Number, Number, Degrees, Colour, Number),
        "stamps, sprite, frame, x, y, xscale, yscale, angle, colour, alpha", "Adds a stamp.");
BUILTIN(stamps_clear, void(StampsNumber), "stamps", "Takes all stamps away.");
BUILTIN(stamps_count, Whole(StampsNumber), "stamps", "How many stamps there are.");
BUILTIN(stamps_create, StampsNumber(In<Whole, 0, 10000000>), "capacity", "Makes a layer of stamps.");
BUILTIN(stamps_destroy, void(StampsNumber), "stamps", "Ends a layer of stamps.");
BUILTIN(stamps_draw, void(StampsNumber), "stamps", "Draws the stamps that are in view.");
BUILTIN(stamps_get, Struct(StampsNumber, Whole), "stamps, index", "A struct that describes a stamp, from the oldest (0) on.");

}  // namespace arena::script
