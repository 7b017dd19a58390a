#pragma once
// The drawing service's own records of pages, pictures and fonts.
#include <unordered_map>

#include "engine/draw/draw.h"

namespace arena::draw {

struct Draw::Page {
  gpu::TextureId texture;
  double width, height;  // atlas pixels
};

// A piece of a page. Sprite pixels, or ems for glyphs.
struct Draw::Picture {
  gpu::TextureId texture;
  double u1 = 0, v1 = 0, u2 = 0, v2 = 0;
  double left = 0, top = 0, width = 0, height = 0;
  bool is_field = false;
  float field_pixels = 1;
};

struct Draw::Font {
  struct Glyph {
    Picture picture;
    double advance = 0;  // ems
  };
  const Glyph& glyph(std::uint32_t code) const;
  std::string name;
  std::unordered_map<std::uint32_t, Glyph> glyphs;
  double size = 0;         // pixels an em
  double line_height = 0;  // ems
  double field_range = 0;  // ems
};

}  // namespace arena::draw
