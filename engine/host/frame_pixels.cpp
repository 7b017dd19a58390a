#include "engine/host/frame_pixels.h"

#include <algorithm>

#include "arena_generated.h"
#include "engine/files/zipped.h"

namespace arena::host {

FramePixels pixels_of_frame(const data::DataFile& file, std::int32_t sprite, std::int32_t frame) {
  const auto& sprites = *file.content->sprites();
  const auto found = std::find_if(sprites.begin(), sprites.end(), [&](const data::Sprite* each) { return each->index() == sprite; });
  if (found == sprites.end() || frame < 0 || static_cast<std::uint32_t>(frame) >= found->frames()->size()) return {};
  const data::Frame* const piece = found->frames()->Get(static_cast<std::uint32_t>(frame));
  const data::Page* const page = file.content->pages()->Get(static_cast<std::uint32_t>(piece->page()));
  const std::size_t across = static_cast<std::size_t>(page->width()), down = static_cast<std::size_t>(page->height());
  std::vector<std::uint8_t> whole(across * down * 4);
  files::unpack(whole.data(), whole.size(), page->pixels()->data(), page->pixels()->size());
  FramePixels pixels;
  pixels.width = piece->width();
  pixels.height = piece->height();
  for (int row = 0; row < pixels.height; ++row) {
    for (int column = 0; column < pixels.width; ++column) {
      const std::uint8_t* const at =
          &whole[(static_cast<std::size_t>(piece->y() + row) * across + static_cast<std::size_t>(piece->x() + column)) * 4];
      // The atlas holds colours multiplied with alpha.
      const unsigned alpha = at[3];
      for (int part = 0; part < 3; ++part) {
        pixels.rgba.push_back(static_cast<std::uint8_t>(alpha == 0 ? 0u : std::min(255u, (at[part] * 255u + alpha / 2) / alpha)));
      }
      pixels.rgba.push_back(static_cast<std::uint8_t>(alpha));
    }
  }
  return pixels;
}

}  // namespace arena::host
