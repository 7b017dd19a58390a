#include "runtime/instances_loop/sprites.h"

#include <algorithm>

#include "runtime/session/session.h"
#include "runtime/values/elementary.h"
#include "runtime/values/refs.h"

namespace arena {
namespace {

const RefKind sprite_refs{ref_type::kSprite, "sprite", [](std::int32_t index) {
                            const SpriteInfo* const sprite = find_sprite(index);
                            return sprite != nullptr ? sprite->name : std::string();
                          }};

}  // namespace

namespace {
const Part<std::vector<SpriteInfo>> part{PartLevel::kWorld, "sprites"};
}

std::vector<SpriteInfo>& sprite_infos() { return part(); }

const SpriteInfo* find_sprite(std::int32_t index) {
  const std::vector<SpriteInfo>& infos = sprite_infos();
  if (index < 0 || static_cast<std::size_t>(index) >= infos.size()) return nullptr;
  const SpriteInfo& info = infos[static_cast<std::size_t>(index)];
  return info.name.empty() ? nullptr : &info;
}

void finish_sprite_info(SpriteInfo& sprite) {
  const double across = std::max(sprite.origin_x - sprite.left, sprite.right - sprite.origin_x);
  const double down = std::max(sprite.origin_y - sprite.top, sprite.bottom - sprite.origin_y);
  sprite.radius = elementary::sqrt(across * across + down * down);
}

}  // namespace arena
