#pragma once
// The picture on the screen and the graphics device behind it.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(gpu_debug_lose_device, void(), "", "For tests: what was uploaded is lost, as if the graphics card had gone away.");
BUILTIN(screen_save_numbered, void(), "", "Saves the next picture under the next free number.");

BUILTIN(window_set_icon, void(SpriteIndex, Or<Whole, 0>), "sprite, frame", "Shows a picture of a sprite as the window's icon.");

}  // namespace arena::script
