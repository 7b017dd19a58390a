#pragma once
// Direct3D 11, from feature level 10.0 on; shaders are compiled at start by the system's own compiler.
#include <memory>
#include <string>

#include "engine/gpu/backend.h"

namespace arena::gpu {

// `window` is the HWND that shows the frames. Null and a sentence in `problem` on failure.
std::unique_ptr<Backend> create_d3d11(void* window, bool vsync, std::string& problem);

}  // namespace arena::gpu
