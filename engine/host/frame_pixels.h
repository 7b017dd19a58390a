#pragma once
// One picture of a sprite as plain pixels, out of the data file: for what is shown outside of the game's own window area.
#include <cstdint>
#include <vector>

#include "engine/data/data_file.h"

namespace arena::host {

struct FramePixels {
  int width = 0, height = 0;       // of the piece that is not empty, in pixels of the atlas
  std::vector<std::uint8_t> rgba;  // straight alpha, row by row; empty: there is no such picture
};
FramePixels pixels_of_frame(const data::DataFile& file, std::int32_t sprite, std::int32_t frame);

}  // namespace arena::host
