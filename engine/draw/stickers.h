#pragma once
// Layers of stickers: very many small pictures that stay where they were put, baked into static meshes region by region. Drawing costs by
// the regions in view, adding by the stickers added.
//
// Always true: a layer never holds more than its capacity. Past it the oldest stickers go, some at a time, from one region at a time.
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "engine/draw/batch.h"

namespace arena::draw {

class StickerLayer {
 public:
  explicit StickerLayer(std::size_t capacity = 0) : capacity_(capacity) {}
  void add(const Draw::Sticker& sticker);
  void clear();
  std::size_t count() const { return count_; }
  // In the order in which they were added, the newest last.
  const Draw::Sticker& at(std::size_t index);
  // Draws what the view of the room shows.
  void draw(Draw& on);
  // Forgets everything that lives in the GPU; it is baked again when it is drawn.
  void drop_meshes();

  static constexpr auto fields() {
    return std::tuple(field("regions", &StickerLayer::regions_), derived("ordered", &StickerLayer::ordered_),
                      derived("scratch", &StickerLayer::scratch_), field("capacity", &StickerLayer::capacity_),
                      field("count", &StickerLayer::count_), field("next_serial", &StickerLayer::next_serial_));
  }

 private:
  struct Entry {
    std::uint64_t serial;
    Draw::Sticker sticker;
    static constexpr auto fields() { return std::tuple(field("serial", &Entry::serial), field("sticker", &Entry::sticker)); }
  };
  // What of a region lives in the GPU: the mesh of its first stickers. A copy of the region has none.
  struct Baked {
    std::size_t count = 0;
    std::unique_ptr<Draw::Batch> mesh;
    Baked() = default;
    Baked(const Baked&) {}
    Baked& operator=(const Baked&) {
      *this = Baked();
      return *this;
    }
    Baked(Baked&&) = default;
    Baked& operator=(Baked&&) = default;
  };
  // The first stickers are in the mesh; the rest are drawn one by one until they are worth a new mesh.
  struct Region {
    std::deque<Entry> entries;
    Baked baked;
    double left = 0, top = 0, right = 0, bottom = 0;  // of all its stickers
    bool changed_lately = false;
    static constexpr auto fields() {
      return std::tuple(field("entries", &Region::entries), derived("baked", &Region::baked), derived("left", &Region::left),
                        derived("top", &Region::top), derived("right", &Region::right), derived("bottom", &Region::bottom),
                        derived("changed_lately", &Region::changed_lately));
    }
  };
  void make_room();
  void bake(Draw& on, Region& region);

  std::map<std::pair<std::int32_t, std::int32_t>, Region> regions_;
  // By serial; empty when not known, as in a copy.
  struct Ordered : std::vector<const Entry*> {
    Ordered() = default;
    Ordered(const Ordered&) : std::vector<const Entry*>() {}
    Ordered& operator=(const Ordered&) {
      clear();
      return *this;
    }
  } ordered_;
  std::vector<Draw::Sticker> scratch_;
  std::size_t capacity_, count_ = 0;
  std::uint64_t next_serial_ = 0;
};

// By handle; null: none.
StickerLayer* find_sticker_layer(std::int32_t handle);
}  // namespace arena::draw
