#include "engine/files/png.h"

#include <png.h>

namespace arena::files {

std::string png_of(int width, int height, const std::vector<std::uint8_t>& pixels) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PNG_FORMAT_RGBA;
  if (pixels.empty() || pixels.size() != PNG_IMAGE_SIZE(image)) return "";
  std::string encoded(PNG_IMAGE_PNG_SIZE_MAX(image), '\0');
  png_alloc_size_t size = encoded.size();
  if (png_image_write_to_memory(&image, encoded.data(), &size, 0, pixels.data(), 0, nullptr) == 0) return "";
  encoded.resize(size);
  return encoded;
}

}  // namespace arena::files
