#include "tests/engine/scenes.h"

#include <algorithm>
#include <cmath>

namespace arena::test {
namespace {

using gpu::Blend;
using gpu::Paint;
using gpu::Vertex;

constexpr std::uint32_t kWhite = 0xFFFFFFFF;

Vertex vertex(float x, float y, float u, float v, std::uint32_t color, Paint paint) {
  return {x, y, u, v, color, static_cast<float>(paint)};
}

// A parallelogram with the whole texture on it: its first corner and both sides.
void textured(gpu::Gpu& on, gpu::TextureId texture, float x, float y, float ax, float ay, float bx, float by, std::uint32_t color = kWhite,
              Paint paint = Paint::kTexture, gpu::State state = {}) {
  state.texture = texture;
  const Vertex a = vertex(x, y, 0, 0, color, paint), b = vertex(x + ax, y + ay, 1, 0, color, paint),
               c = vertex(x + ax + bx, y + ay + by, 1, 1, color, paint), d = vertex(x + bx, y + by, 0, 1, color, paint);
  const Vertex both[] = {a, b, c, a, c, d};
  on.draw(state, both, 6);
}

// Rings around the middle, half of them see-through, premultiplied.
gpu::TextureId rings(gpu::Gpu& on) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 16; ++x) {
      const int ring = std::max(std::abs(2 * x - 15), std::abs(2 * y - 15)) / 4;
      const int alpha = ring % 2 == 0 ? 255 : 96;
      for (const int channel : {alpha, alpha * x / 15, alpha * y / 15, alpha}) pixels.push_back(static_cast<std::uint8_t>(channel));
    }
  }
  return on.create_texture(16, 16, pixels.data());
}

// The distance to a circle in a texture's alpha, 0.5 on its edge.
gpu::TextureId distance_to_circle(gpu::Gpu& on) {
  std::vector<std::uint8_t> pixels;
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 16; ++x) {
      const double distance = 5 - std::sqrt((x - 7.5) * (x - 7.5) + (y - 7.5) * (y - 7.5));
      const double alpha = std::clamp(0.5 + distance / 8, 0.0, 1.0) * 255;
      for (int channel = 0; channel < 4; ++channel) pixels.push_back(static_cast<std::uint8_t>(std::lround(alpha)));
    }
  }
  return on.create_texture(16, 16, pixels.data());
}

void blends(gpu::Gpu& on) {
  solid(on, 0, 0, 64, 64, 0xFF806040);
  float x = 4;
  for (const Blend mode : {Blend::kNormal, Blend::kAdd, Blend::kSubtract, Blend::kMultiply}) {
    solid(on, x, 4, x + 12, 30, 0xFF2080C0, mode);
    solid(on, x, 34, x + 12, 60, 0x802080C0, mode);
    x += 15;
  }
}

void enlarged(gpu::Gpu& on) { textured(on, rings(on), 4, 4, 56, 0, 0, 56); }
void shrunk_and_turned(gpu::Gpu& on) {
  const gpu::TextureId texture = rings(on);
  for (int i = 0; i < 4; ++i) {
    const float c = 10 * std::cos(static_cast<float>(i) * 0.7F), s = 10 * std::sin(static_cast<float>(i) * 0.7F);
    textured(on, texture, 10 + 14 * static_cast<float>(i), 20, c, s, -s, c, 0xFF80FFFF);
    textured(on, texture, 10 + 14 * static_cast<float>(i), 44, 2 * c, s, -s, c, 0x60FFFFFF);
  }
}
void distance_fields(gpu::Gpu& on) {
  const gpu::TextureId circle = distance_to_circle(on);
  textured(on, circle, 2, 2, 40, 0, 0, 40, 0xFF40C0FF, Paint::kField, {{}, Blend::kNormal, 10, {}});
  textured(on, circle, 44, 44, 16, 0, 0, 16, 0xC0FFFFFF, Paint::kField, {{}, Blend::kNormal, 4, {}});
}
// No edge passes exactly through the middle of a pixel: which side has it is the driver's choice.
void slanted_edges(gpu::Gpu& on) {
  for (int i = 0; i < 8; ++i) {
    const float way = static_cast<float>(i);
    const Vertex triangle[] = {vertex(32.2F, 32.3F, 0, 0, 0xFF0000FF, Paint::kSolid),
                               vertex(3.2F + 8 * way, 2.3F, 0, 0, 0xFF00FF00, Paint::kSolid),
                               vertex(9.2F + 7 * way, 5.3F + way, 0, 0, 0x80FF0000, Paint::kSolid)};
    on.draw({}, triangle, 3);
  }
  solid(on, 0.25F, 40.25F, 20.75F, 60.75F, 0xFFFFFFFF);
  solid(on, 30.75F, 40.25F, 50.25F, 60.75F, 0xFF00FFFF);
}
void clips_and_meshes(gpu::Gpu& on) {
  std::vector<Vertex> strip;
  for (int i = 0; i < 6; ++i) {
    const float left = static_cast<float>(i) * 4, color = static_cast<float>(i);
    const std::uint32_t tint = 0xFF000000u | static_cast<std::uint32_t>(40 * color) << 8 | 0xFF;
    for (const auto& [x, y] : {std::pair{0.F, 0.F}, {4.F, 0.F}, {4.F, 8.F}, {0.F, 0.F}, {4.F, 8.F}, {0.F, 8.F}}) {
      strip.push_back(vertex(left + x, y, x / 4, y / 8, tint, i % 2 == 0 ? Paint::kSolid : Paint::kTexture));
    }
  }
  const gpu::MeshId mesh = on.create_mesh(strip.data(), strip.size());
  const gpu::TextureId texture = rings(on);
  on.draw_mesh({texture, Blend::kNormal, 1, {}}, mesh, {2, 0, 0, 2, 4, 4});
  on.draw_mesh({texture, Blend::kNormal, 1, {0, 30, 30, 20}}, mesh, {0, -2, 2, 0, 30, 26});
  on.draw_mesh({texture, Blend::kAdd, 1, {}}, mesh, {0.5F, 0.5F, -0.5F, 0.5F, 34, 50});
}
// More triangles than one batch takes.
void many(gpu::Gpu& on) {
  const gpu::TextureId texture = rings(on);
  for (int i = 0; i < 12000; ++i) {
    const int row = i / 200;
    const float x = static_cast<float>(i % 60), y = static_cast<float>(row);
    textured(on, texture, x, y, 4, 0, 0, 4, 0xFFFFFFFFu - static_cast<std::uint32_t>(i % 200));
  }
}

}  // namespace

void solid(gpu::Gpu& on, float x1, float y1, float x2, float y2, std::uint32_t color, Blend blend) {
  const auto corner = [&](float x, float y) { return vertex(x, y, 0, 0, color, Paint::kSolid); };
  const Vertex both[] = {corner(x1, y1), corner(x2, y1), corner(x2, y2), corner(x1, y1), corner(x2, y2), corner(x1, y2)};
  on.draw({{}, blend, 1, {}}, both, 6);
}

const std::vector<Scene>& scenes() {
  static const std::vector<Scene> all = {{"blends", blends},
                                         {"enlarged", enlarged},
                                         {"shrunk_and_turned", shrunk_and_turned},
                                         {"distance_fields", distance_fields},
                                         {"slanted_edges", slanted_edges},
                                         {"clips_and_meshes", clips_and_meshes},
                                         {"many", many}};
  return all;
}

}  // namespace arena::test
