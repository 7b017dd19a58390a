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
#include <type_traits>
#include <utility>
#include <vector>

#include "engine/draw/batch.h"
#include "runtime/memory/shared_pages.h"

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

  // What a snapshot keeps. Most stickers are where they were at the snapshot before.
  struct Saved;
  void save(Saved& into, const Saved* earlier) const;
  void load(const Saved& from);

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
  static constexpr std::size_t kEntriesPerPage = SharedPages::kPageBytes / sizeof(Entry);  // of a snapshot
  static_assert(std::is_trivially_copyable_v<Entry>);
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
  struct Reach {
    double left = 0, top = 0, right = 0, bottom = 0;
  };
  // The first stickers are in the mesh; the rest are drawn one by one until they are worth a new mesh.
  struct Region {
    std::deque<Entry> entries;
    Baked baked;
    Reach reach;  // of all its stickers
    bool changed_lately = false;
    static constexpr auto fields() {
      return std::tuple(field("entries", &Region::entries), derived("baked", &Region::baked), derived("reach", &Region::reach),
                        derived("changed_lately", &Region::changed_lately));
    }
  };
  void make_room();
  void bake(Draw& on, Region& region);

  std::map<std::pair<std::int32_t, std::int32_t>, Region> regions_;
  // By serial; empty when not known, as in a copy.
  struct Ordered : std::vector<const Entry*> {
    Ordered() = default;
    Ordered(const Ordered&) : Ordered() {}
    Ordered& operator=(const Ordered&) {
      clear();
      return *this;
    }
  } ordered_;
  std::vector<Draw::Sticker> scratch_;
  std::size_t capacity_, count_ = 0;
  std::uint64_t next_serial_ = 0;
};

struct StickerLayer::Saved {
  struct Region {
    SharedPages entries;  // each page begins with a whole one
    std::size_t count = 0;
    Reach reach;
    bool changed_lately = false;
  };
  std::map<std::pair<std::int32_t, std::int32_t>, Region> regions;
  std::size_t capacity = 0, count = 0;
  std::uint64_t next_serial = 0;
  void count_held(HeldBytes& into) const;
};

// By handle; null: none.
StickerLayer* find_sticker_layer(std::int32_t handle);
}  // namespace arena::draw
