#pragma once
// Small pictures that every backend must draw alike.
#include <vector>

#include "engine/gpu/gpu.h"

namespace arena::test {

inline constexpr int kSceneSize = 64;  // pixels each way

struct Scene {
  const char* name;
  void (*draw)(gpu::Gpu& on);  // between begin_frame and end_frame, onto black
};
const std::vector<Scene>& scenes();

// Two triangles of one colour.
void solid(gpu::Gpu& on, float x1, float y1, float x2, float y2, std::uint32_t color, gpu::Blend blend = gpu::Blend::kNormal);

}  // namespace arena::test
