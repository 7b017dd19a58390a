#pragma once
// What the world needs of sprites: sizes, origins, frame counts and collision masks. Pixels belong to the drawing service.
#include <cstdint>
#include <string>
#include <vector>

namespace arena {

enum class MaskKind : std::uint8_t { kRectangle, kRotatedRectangle, kEllipse, kPrecise };

struct SpriteInfo {
  std::string name;
  double width = 0, height = 0;
  double origin_x = 0, origin_y = 0;
  std::int32_t frames = 1;
  double frames_per_second = 0;  // 0: one frame a game frame times image_speed
  MaskKind mask = MaskKind::kRectangle;
  double left = 0, top = 0, right = 0, bottom = 0;  // mask box inside the sprite; right and bottom exclusive
  std::vector<std::uint8_t> precise;                // kPrecise: one bit a pixel of the box, rows padded to whole bytes
  double radius = 0;                                // farthest corner of the mask box from the origin, pixels
};

// Index is the sprite's number. Indices without a sprite have no frames.
std::vector<SpriteInfo>& sprite_infos();
const SpriteInfo* find_sprite(std::int32_t index);  // null: no such sprite
void finish_sprite_info(SpriteInfo& sprite);        // computes what follows from the rest

}  // namespace arena
