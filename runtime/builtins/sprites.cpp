// Sprites as the world knows them.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/sprites.h"

#include "runtime/builtins/implement.h"
#include "runtime/instances_loop/sprites.h"

namespace arena {
namespace {

const SpriteInfo* require_sprite(std::int32_t sprite) {
  const SpriteInfo* info = find_sprite(sprite);
  if (info == nullptr) report_invalid_resource(1, "sprite", sprite, static_cast<std::int32_t>(sprite_infos().size()));
  return info;
}
template <double SpriteInfo::*measure>
double sprite_measure(std::int32_t sprite) {
  const SpriteInfo* info = require_sprite(sprite);
  return info != nullptr ? info->*measure : 0;
}
std::int32_t sprite_get_number(std::int32_t sprite) {
  const SpriteInfo* info = require_sprite(sprite);
  return info != nullptr ? info->frames : 0;
}
std::string sprite_get_name(std::int32_t sprite) {
  const SpriteInfo* info = require_sprite(sprite);
  return info != nullptr ? info->name : std::string();
}
bool sprite_exists(std::int32_t sprite) { return find_sprite(sprite) != nullptr; }

constexpr Implementation kRows[] = {
    implement<script::sprite_get_width, sprite_measure<&SpriteInfo::width>>,
    implement<script::sprite_get_height, sprite_measure<&SpriteInfo::height>>,
    implement<script::sprite_get_xoffset, sprite_measure<&SpriteInfo::origin_x>>,
    implement<script::sprite_get_yoffset, sprite_measure<&SpriteInfo::origin_y>>,
    implement<script::sprite_get_number, sprite_get_number>,
    implement<script::sprite_get_name, sprite_get_name>,
    implement<script::sprite_exists, sprite_exists>,
};
const BuiltinTable table("Sprites", "", kRows);

}  // namespace
}  // namespace arena
