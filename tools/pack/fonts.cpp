#include "tools/pack/fonts.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_MODULE_H

#include <stdexcept>

namespace pack {
namespace {

constexpr int kSpread = 6;  // atlas pixels that the field reaches to each side of the edge

void require(FT_Error error, const std::string& what) {
  if (error != 0) throw std::runtime_error(what + " failed with FreeType error " + std::to_string(error));
}

Image image_of(const FT_Bitmap& bitmap) {
  Image image = new_image(static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows));
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      std::uint8_t* pixel = image.at(x, y);
      pixel[0] = pixel[1] = pixel[2] = 255;
      pixel[3] = bitmap.buffer[y * bitmap.pitch + x];
    }
  }
  return image;
}

}  // namespace

PackedFont pack_font(const std::string& path, int em_pixels, const std::vector<std::pair<int, int>>& ranges) {
  FT_Library library = nullptr;
  require(FT_Init_FreeType(&library), "starting FreeType");
  FT_Int spread = kSpread;
  require(FT_Property_Set(library, "sdf", "spread", &spread), "setting the reach of the distance field");
  FT_Face face = nullptr;
  require(FT_New_Face(library, path.c_str(), 0, &face), path + ": opening");
  require(FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(em_pixels)), "setting the size");
  const double em = em_pixels, ascender = static_cast<double>(face->size->metrics.ascender) / 64.0;
  PackedFont font;
  font.line_height = static_cast<double>(face->size->metrics.height) / 64.0 / em;
  font.field_range = kSpread / em;
  for (const auto& [first, last] : ranges) {
    for (int code = first; code <= last; ++code) {
      const FT_UInt index = FT_Get_Char_Index(face, static_cast<FT_ULong>(code));
      if (index == 0) continue;
      require(FT_Load_Glyph(face, index, FT_LOAD_NO_HINTING), "loading a glyph");
      PackedGlyph glyph;
      glyph.code = static_cast<std::uint32_t>(code);
      glyph.advance = static_cast<double>(face->glyph->linearHoriAdvance) / 65536.0 / em;
      if (face->glyph->outline.n_points > 0) {
        require(FT_Render_Glyph(face->glyph, FT_RENDER_MODE_SDF), "rendering a glyph");
        glyph.field = image_of(face->glyph->bitmap);
        glyph.left = face->glyph->bitmap_left / em;
        glyph.top = (ascender - face->glyph->bitmap_top) / em;
      }
      font.glyphs.push_back(std::move(glyph));
    }
  }
  FT_Done_Face(face);
  FT_Done_FreeType(library);
  return font;
}

}  // namespace pack
