#include "tools/pack/images.h"

#include <png.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <stdexcept>

namespace pack {
namespace {

constexpr int kBorder = 2;  // pixels around each picture

Image read_png(const std::string& path) {
  png_image header{};
  header.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&header, path.c_str()) == 0) throw std::runtime_error(path + ": " + header.message);
  header.format = PNG_FORMAT_RGBA;
  Image image = new_image(static_cast<int>(header.width), static_cast<int>(header.height));
  if (png_image_finish_read(&header, nullptr, image.pixels.data(), 0, nullptr) == 0) throw std::runtime_error(path + ": " + header.message);
  return image;
}

// Copies with the border repeated outwards.
void blit(Image& page, const Image& image, int x, int y) {
  for (int row = -kBorder; row < image.height + kBorder; ++row) {
    for (int column = -kBorder; column < image.width + kBorder; ++column) {
      const std::uint8_t* from = image.at(std::clamp(column, 0, image.width - 1), std::clamp(row, 0, image.height - 1));
      std::copy(from, from + 4, page.at(x + column, y + row));
    }
  }
}

}  // namespace

Image new_image(int width, int height) {
  Image image{width, height, {}};
  image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  return image;
}

Image crop(const Image& image, int x, int y, int width, int height) {
  Image piece = new_image(width, height);
  const std::ptrdiff_t row_bytes = std::ptrdiff_t{width} * 4;
  for (int row = 0; row < height; ++row) std::copy(image.at(x, y + row), image.at(x, y + row) + row_bytes, piece.at(0, row));
  return piece;
}

std::string read_text(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error(path + ": cannot be read");
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string content_hash(const std::string& content) {
  std::uint64_t a = 0xCBF29CE484222325u, b = 0x84222325CBF29CE4u;
  for (const char c : content) {
    a = (a ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    b = (b ^ static_cast<unsigned char>(c)) * 0x9E3779B97F4A7C15u + 1;
  }
  return std::to_string(a) + "-" + std::to_string(b);
}

Image render_svg(const std::string& path, int width, int height, const std::string& cache) {
  const std::string size = std::to_string(width) + "x" + std::to_string(height);
  const std::string rendered = cache + "/" + content_hash(read_text(path) + size) + ".png";
  if (!std::filesystem::exists(rendered)) {
    const std::string fresh = rendered + ".new";
    const std::string command =
        "rsvg-convert -w " + std::to_string(width) + " -h " + std::to_string(height) + " -o '" + fresh + "' '" + path + "'";
    if (std::system(command.c_str()) != 0) throw std::runtime_error(path + ": rsvg-convert failed");
    std::filesystem::rename(fresh, rendered);
  }
  return read_png(rendered);
}

Box visible_box(const Image& image) {
  int left = image.width, top = image.height, right = 0, bottom = 0;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (image.at(x, y)[3] == 0) continue;
      left = std::min(left, x);
      top = std::min(top, y);
      right = std::max(right, x + 1);
      bottom = std::max(bottom, y + 1);
    }
  }
  return right == 0 ? Box{} : Box{left, top, right - left, bottom - top};
}

std::vector<Placed> Atlas::place(const std::vector<Image>& images) {
  std::vector<std::size_t> order(images.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return images[a].height > images[b].height; });
  std::vector<Placed> places(images.size());
  int x = kBorder, y = kBorder, shelf = 0;
  for (const std::size_t i : order) {
    const Image& image = images[i];
    if (image.width + 2 * kBorder > side_ || image.height + 2 * kBorder > side_)
      throw std::runtime_error("a picture is larger than an atlas page");
    if (x + image.width + kBorder > side_) {
      x = kBorder;
      y += shelf + 2 * kBorder;
      shelf = 0;
    }
    if (pages_.empty() || y + image.height + kBorder > side_) {
      pages_.push_back(new_image(side_, side_));
      x = y = kBorder;
      shelf = 0;
    }
    blit(pages_.back(), image, x, y);
    places[i] = {static_cast<int>(pages_.size()) - 1, x, y};
    x += image.width + 2 * kBorder;
    shelf = std::max(shelf, image.height);
  }
  return places;
}

}  // namespace pack
