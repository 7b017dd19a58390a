#pragma once
// Colours are numbers: blue, green and red from the high byte down.
#include "runtime/builtins/builtin.h"

namespace arena::script {

using Byte = In<Number, 0, 255>;
BUILTIN(colour_get_blue, Number(Colour), "colour", "The blue part, from 0 to 255.");
BUILTIN(colour_get_green, Number(Colour), "colour", "The green part, from 0 to 255.");
BUILTIN(colour_get_red, Number(Colour), "colour", "The red part, from 0 to 255.");
BUILTIN(make_color_hsv, Colour(Byte, Byte, Byte), "hue, saturation, value", "As make_colour_hsv.");
BUILTIN(make_color_rgb, Colour(Byte, Byte, Byte), "red, green, blue", "As make_colour_rgb.");
BUILTIN(make_colour_hsv, Colour(Byte, Byte, Byte), "hue, saturation, value", "The colour of a hue, a saturation and a brightness.");
BUILTIN(make_colour_rgb, Colour(Byte, Byte, Byte), "red, green, blue", "The colour made of three parts.");
BUILTIN(merge_color, Colour(Colour, Colour, In<Number, 0, 1>), "from, to, amount", "As merge_colour.");
BUILTIN(merge_colour, Colour(Colour, Colour, In<Number, 0, 1>), "from, to, amount",
        "The colour between two: the first at amount 0, the second at 1.");

}  // namespace arena::script
