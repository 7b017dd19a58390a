#pragma once
// Layers of stamps: very many small pictures that stay where they were put, baked into static meshes region by region. Drawing costs by
// the regions in view, adding by the stamps added.
//
// Always true: a layer never holds more than its capacity. Past it the oldest stamps go, some at a time, from one region at a time.
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <vector>

#include "engine/draw/batch.h"

namespace arena::draw {

class StampLayer {
 public:
  explicit StampLayer(std::size_t capacity) : capacity_(capacity) {}
  void add(const Draw::Stamp& stamp);
  void clear();
  std::size_t count() const { return count_; }
  // In the order in which they were added, the newest last.
  const Draw::Stamp& at(std::size_t index);
  // Draws what the view of the room shows.
  void draw(Draw& on);
  // Forgets everything that lives in the GPU; it is baked again when it is drawn.
  void drop_meshes();

 private:
  struct Entry {
    std::uint64_t serial;
    Draw::Stamp stamp;
  };
  // The first `baked` stamps are in the mesh; the rest are drawn one by one until they are worth a new mesh.
  struct Region {
    std::deque<Entry> entries;
    std::size_t baked = 0;
    std::unique_ptr<Draw::Batch> mesh;
    double left = 0, top = 0, right = 0, bottom = 0;  // of all its stamps
    bool changed_lately = false;
  };
  void make_room();
  void bake(Draw& on, Region& region);

  std::map<std::pair<std::int32_t, std::int32_t>, Region> regions_;
  std::vector<const Entry*> ordered_;  // by serial; empty when not known
  std::vector<Draw::Stamp> scratch_;
  std::size_t capacity_, count_ = 0;
  std::uint64_t next_serial_ = 0;
};

// By handle; null: none.
StampLayer* find_stamp_layer(std::int32_t handle);
// Frees all layers, as a restart does.
void reset_stamp_layers();

}  // namespace arena::draw
