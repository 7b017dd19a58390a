#pragma once
// Pictures as PNG files.
#include <cstdint>
#include <string>
#include <vector>

namespace arena::files {

// The file of a picture, red, green, blue and alpha of each pixel from the top left; "" when the pixels are not so many, or there is no
// way to make one.
std::string png_of(int width, int height, const std::vector<std::uint8_t>& pixels);

}  // namespace arena::files
