#pragma once
// Drawing, with the settings that carry on from one call to the next: colour, alpha, font, alignment, blend mode. Without a drawing service
// (a world that nobody looks at) the functions check their arguments and do nothing.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(draw_circle, void(Pixels, Pixels, Pixels, Flag), "x, y, radius, outline", "A circle.");
BUILTIN(draw_circle_color, void(Pixels, Pixels, Pixels, Colour, Colour, Flag), "x, y, radius, inner, outer, outline",
        "As draw_circle_colour.");
BUILTIN(draw_circle_colour, void(Pixels, Pixels, Pixels, Colour, Colour, Flag), "x, y, radius, inner, outer, outline",
        "A circle that goes from one colour to another.");
BUILTIN(draw_ellipse, void(Pixels, Pixels, Pixels, Pixels, Flag), "x1, y1, x2, y2, outline", "The ellipse inside a box.");
BUILTIN(draw_get_alpha, Number(), "", "The alpha of what is drawn.");
BUILTIN(draw_get_colour, Colour(), "", "The colour of what is drawn.");
BUILTIN(draw_get_font, FontIndex(), "", "The font of texts; -1 the built-in one.");
BUILTIN(draw_get_halign, Whole(), "", "Where texts stand: 0 right of the place, 1 centred, 2 left of it.");
BUILTIN(draw_get_valign, Whole(), "", "Where texts stand: 0 below the place, 1 centred, 2 above it.");
BUILTIN(draw_line, void(Pixels, Pixels, Pixels, Pixels), "x1, y1, x2, y2", "A line of one pixel.");
BUILTIN(draw_line_width, void(Pixels, Pixels, Pixels, Pixels, Pixels), "x1, y1, x2, y2, width", "A line.");
BUILTIN(draw_line_width_colour, void(Pixels, Pixels, Pixels, Pixels, Pixels, Colour, Colour), "x1, y1, x2, y2, width, from, to",
        "A line that goes from one colour to another.");
BUILTIN(draw_point, void(Pixels, Pixels), "x, y", "A pixel.");
BUILTIN(draw_rectangle, void(Pixels, Pixels, Pixels, Pixels, Flag), "x1, y1, x2, y2, outline", "A rectangle.");
BUILTIN(draw_rectangle_colour, void(Pixels, Pixels, Pixels, Pixels, Colour, Colour, Colour, Colour, Flag),
        "x1, y1, x2, y2, c1, c2, c3, c4, outline", "A rectangle with a colour in each corner, clockwise from the top left.");
BUILTIN(draw_self, void(), "", "The caller's sprite, as its variables say.");
BUILTIN(draw_set_alpha, void(SingleNumber), "alpha", "Sets the alpha of what is drawn.");
BUILTIN(draw_set_circle_precision, void(Whole), "sides", "How many sides circles have, from 4 to 128; 0 chooses by the size.");
BUILTIN(draw_set_color, void(Colour), "colour", "As draw_set_colour.");
BUILTIN(draw_set_colour, void(Colour), "colour", "Sets the colour of what is drawn.");
BUILTIN(draw_set_font, void(FontIndex), "font", "Sets the font of texts; below 0 the built-in one.");
BUILTIN(draw_set_halign, void(In<Whole, 0, 2>), "align", "Sets where texts stand, as draw_get_halign gives it.");
BUILTIN(draw_set_valign, void(In<Whole, 0, 2>), "align", "Sets where texts stand, as draw_get_valign gives it.");
BUILTIN(draw_sprite, void(SpriteIndex, Number, Pixels, Pixels), "sprite, frame, x, y", "A sprite.");
BUILTIN(draw_sprite_ext, void(SpriteIndex, Number, Pixels, Pixels, Number, Number, Degrees, Colour, Number),
        "sprite, frame, x, y, xscale, yscale, angle, colour, alpha", "A sprite, stretched, turned and coloured.");
BUILTIN(draw_sprite_nineslice, void(SpriteIndex, Number, Pixels, Pixels, Pixels, Pixels, Number, Colour, Number),
        "sprite, frame, x, y, width, height, corner, colour, alpha",
        "A sprite in a box, its corners of that share of it (at most 0.5) as large as ever unless the box is smaller than two of them.");
BUILTIN(draw_sprite_part, void(SpriteIndex, Number, Pixels, Pixels, Pixels, Pixels, Pixels, Pixels),
        "sprite, frame, left, top, width, height, x, y", "A rectangle of a sprite.");
BUILTIN(draw_sprite_part_ext, void(SpriteIndex, Number, Pixels, Pixels, Pixels, Pixels, Pixels, Pixels, Number, Number, Colour, Number),
        "sprite, frame, left, top, width, height, x, y, xscale, yscale, colour, alpha", "A rectangle of a sprite, stretched and coloured.");
BUILTIN(draw_sprite_stretched, void(SpriteIndex, Number, Pixels, Pixels, Pixels, Pixels), "sprite, frame, x, y, width, height",
        "A sprite that fills a box.");
BUILTIN(draw_sprite_stretched_ext, void(SpriteIndex, Number, Pixels, Pixels, Pixels, Pixels, Colour, Number),
        "sprite, frame, x, y, width, height, colour, alpha", "A sprite that fills a box, coloured.");
BUILTIN(draw_text, void(Pixels, Pixels, Any), "x, y, value", "The value's text.");
BUILTIN(draw_text_colour, void(Pixels, Pixels, Any, Colour, Colour, Colour, Colour, Number), "x, y, value, c1, c2, c3, c4, alpha",
        "A text with a colour in each corner, clockwise from the top left.");
BUILTIN(draw_text_ext, void(Pixels, Pixels, Any, Pixels, Pixels), "x, y, value, separation, wrap",
        "A text in lines so far apart (-1: as the font has it), broken at a width (0: not).");
BUILTIN(draw_text_ext_transformed, void(Pixels, Pixels, Any, Pixels, Pixels, Number, Number, Degrees),
        "x, y, value, separation, wrap, xscale, yscale, angle", "As draw_text_ext, stretched and turned.");
BUILTIN(draw_text_transformed, void(Pixels, Pixels, Any, Number, Number, Degrees), "x, y, value, xscale, yscale, angle",
        "A text, stretched and turned.");
BUILTIN(draw_triangle, void(Pixels, Pixels, Pixels, Pixels, Pixels, Pixels, Flag), "x1, y1, x2, y2, x3, y3, outline", "A triangle.");
BUILTIN(font_exists, Flag(FontIndex), "font", "Whether there is such a font.");
BUILTIN(gpu_get_blendmode, Whole(), "", "How pixels meet: 0 over, 1 added, 2 subtracted, 3 multiplied.");
BUILTIN(gpu_pop_scissor, void(), "", "Ends the last clipping that is still open.");
BUILTIN(gpu_push_scissor, void(Pixels, Pixels, Pixels, Pixels), "x, y, width, height",
        "Clips what is drawn to a rectangle, inside those that are still open.");
BUILTIN(gpu_set_blendmode, void(In<Whole, 0, 3>), "mode", "Sets how pixels meet, as gpu_get_blendmode gives it.");
BUILTIN(string_height, Pixels(Any), "value", "How high the value's text is in the font.");
BUILTIN(string_height_ext, Pixels(Any, Pixels, Pixels), "value, separation, wrap", "How high the text is when draw_text_ext draws it.");
BUILTIN(string_width, Pixels(Any), "value", "How wide the value's text is in the font.");
BUILTIN(string_width_ext, Pixels(Any, Pixels, Pixels), "value, separation, wrap", "How wide the text is when draw_text_ext draws it.");

}  // namespace arena::script
