#pragma once
// OpenGL 3.3 core. Needs a current context; loads the functions that it uses by itself.
#include <memory>
#include <string>

#include "engine/gpu/backend.h"

namespace arena::gpu {

// `load` finds a function of OpenGL by name; `present` shows the back buffer. Null and a sentence in `problem` on failure.
std::unique_ptr<Backend> create_gl33(void* (*load)(const char* name), void (*present)(void* window), void* window, std::string& problem);

}  // namespace arena::gpu
