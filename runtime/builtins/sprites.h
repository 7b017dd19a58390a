#pragma once
// Sprites as the world knows them: sizes and origins in pixels.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(sprite_exists, Flag(SpriteIndex), "sprite", "Whether there is such a sprite.");
BUILTIN(sprite_get_height, Pixels(SpriteIndex), "sprite", "The height.");
BUILTIN(sprite_get_name, Text(SpriteIndex), "sprite", "The sprite's name.");
BUILTIN(sprite_get_number, Whole(SpriteIndex), "sprite", "How many frames the sprite has.");
BUILTIN(sprite_get_width, Pixels(SpriteIndex), "sprite", "The width.");
BUILTIN(sprite_get_xoffset, Pixels(SpriteIndex), "sprite", "Where the origin lies, from the left.");
BUILTIN(sprite_get_yoffset, Pixels(SpriteIndex), "sprite", "Where the origin lies, from the top.");

}  // namespace arena::script
