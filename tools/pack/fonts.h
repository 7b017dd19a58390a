#pragma once
// Glyphs of a TrueType font as distance fields.
#include <cstdint>
#include <string>
#include <vector>

#include "tools/pack/images.h"

namespace pack {

struct PackedGlyph {
  std::uint32_t code = 0;
  Image field;                            // the field in alpha; empty for blanks
  double left = 0, top = 0, advance = 0;  // ems; top below the ascender line
};

struct PackedFont {
  std::vector<PackedGlyph> glyphs;
  double line_height = 0;  // ems
  double field_range = 0;  // ems
};

// All characters from `first` to `last`, inclusive, for each pair of `ranges`; those that the font lacks are left out.
PackedFont pack_font(const std::string& path, int em_pixels, const std::vector<std::pair<int, int>>& ranges);

}  // namespace pack
