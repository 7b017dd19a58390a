#pragma once
// Pictures while packing: rendering of SVG sources through rsvg-convert, trimming, and placing on atlas pages.
#include <cstdint>
#include <string>
#include <vector>

namespace pack {

// RGBA, 8 bits each, not premultiplied.
struct Image {
  int width = 0, height = 0;
  std::vector<std::uint8_t> pixels;
  std::uint8_t* at(int x, int y) {
    return &pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 4];
  }
  const std::uint8_t* at(int x, int y) const { return const_cast<Image*>(this)->at(x, y); }
};

Image new_image(int width, int height);
Image crop(const Image& image, int x, int y, int width, int height);
// Renders at exactly this size. The result is kept in `cache` by the content of the source, so that nothing is rendered twice.
Image render_svg(const std::string& path, int width, int height, const std::string& cache);

struct Box {
  int x = 0, y = 0, width = 0, height = 0;
};
// The smallest box with all pixels that are not wholly transparent; empty when there are none.
Box visible_box(const Image& image);

// Fills pages shelf by shelf, the tallest pictures first. Each picture gets a border of its own edge pixels against bleeding.
struct Placed {
  int page = 0, x = 0, y = 0;
};
class Atlas {
 public:
  explicit Atlas(int side) : side_(side) {}
  // Gives the place of each picture, in the order given.
  std::vector<Placed> place(const std::vector<Image>& images);
  const std::vector<Image>& pages() const { return pages_; }

 private:
  int side_;
  std::vector<Image> pages_;
};

std::string read_text(const std::string& path);
// A name for content: the same bytes give the same text on every machine.
std::string content_hash(const std::string& content);

}  // namespace pack
