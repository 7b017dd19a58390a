#define ARENA_DEFINES_BUILTINS

#include "engine/draw/stickers.h"

#include <algorithm>
#include <cmath>

#include "engine/draw/draw_service.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/stickers.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/memory/held_bytes.h"
#include "runtime/program/names.h"
#include "runtime/session/state.h"
#include "runtime/values/number_text.h"
#include "runtime/values/refs.h"

namespace arena::draw {
namespace {

constexpr double kRegionSize = 1024;       // pixels: a full-screen view sees 6 to 9 of them
constexpr std::size_t kLongestTail = 384;  // stickers drawn one by one before a region is baked anew
constexpr std::size_t kDroppedAtOnce = 8;  // the share of the capacity whose age the dropped ones of a region lie within

struct StickerLayers {
  std::map<std::int32_t, StickerLayer> layers;
  std::int32_t next_handle = 1;
  static constexpr auto fields() {
    return std::tuple(field("layers", &StickerLayers::layers), field("next_handle", &StickerLayers::next_handle));
  }

  struct State {
    std::map<std::int32_t, StickerLayer::Saved> layers;
    std::int32_t next_handle = 1;
    void count_held(HeldBytes& into) const { arena::detail::count_behind(layers, into); }
  };
  static const StickerLayer::Saved* find_saved(const State* in, std::int32_t handle) {
    if (in == nullptr) return nullptr;
    const auto found = in->layers.find(handle);
    return found != in->layers.end() ? &found->second : nullptr;
  }
  void save(State& into, const State* earlier) const {
    into.next_handle = next_handle;
    std::erase_if(into.layers, [&](const auto& each) { return !layers.contains(each.first); });
    for (const auto& [handle, layer] : layers) {
      layer.save(into.layers[handle], find_saved(earlier, handle));
    }
  }
  void load(const State& from) {
    next_handle = from.next_handle;
    layers.clear();
    for (const auto& [handle, saved] : from.layers) layers[handle].load(saved);
  }
};
const StatePart<StickerLayers> part{PartLevel::kServices, "stickers"};
const RefKind stickers_refs{ref_type::kStickers, "stickers"};

}  // namespace

void StickerLayer::add(const Draw::Sticker& sticker) {
  if (!std::isfinite(sticker.at.x) || !std::isfinite(sticker.at.y) || capacity_ == 0) return;
  if (count_ >= capacity_) make_room();
  const auto cell = [](double at) { return std::clamp(saturate_int32(std::floor(at / kRegionSize)), -1000000, 1000000); };
  Region& region = regions_[{cell(sticker.at.x), cell(sticker.at.y)}];
  const SpriteInfo* info = find_sprite(sticker.sprite);
  const double reach =
      info == nullptr ? 0 : (info->width + info->height) * std::max(std::fabs(sticker.at.xscale), std::fabs(sticker.at.yscale));
  const bool is_first = region.entries.empty();
  Reach& all = region.reach;
  all.left = is_first ? sticker.at.x - reach : std::min(all.left, sticker.at.x - reach);
  all.right = is_first ? sticker.at.x + reach : std::max(all.right, sticker.at.x + reach);
  all.top = is_first ? sticker.at.y - reach : std::min(all.top, sticker.at.y - reach);
  all.bottom = is_first ? sticker.at.y + reach : std::max(all.bottom, sticker.at.y + reach);
  region.entries.push_back({next_serial_++, sticker});
  region.changed_lately = true;
  ++count_;
  ordered_.clear();
  ARENA_ASSERT(count_ <= capacity_);
}

// The region with the oldest sticker gives up those of about the same age.
void StickerLayer::make_room() {
  const auto oldest = std::min_element(regions_.begin(), regions_.end(), [](const auto& a, const auto& b) {
    const std::uint64_t left = a.second.entries.empty() ? UINT64_MAX : a.second.entries.front().serial;
    const std::uint64_t right = b.second.entries.empty() ? UINT64_MAX : b.second.entries.front().serial;
    return left < right;
  });
  ARENA_ASSERT(oldest != regions_.end() && !oldest->second.entries.empty());
  Region& region = oldest->second;
  const std::uint64_t until = region.entries.front().serial + std::max<std::size_t>(1, capacity_ / kDroppedAtOnce);
  while (!region.entries.empty() && region.entries.front().serial < until) {
    region.entries.pop_front();
    --count_;
  }
  region.baked = {};
  ordered_.clear();
}

void StickerLayer::clear() {
  regions_.clear();
  ordered_.clear();
  count_ = 0;
}

const Draw::Sticker& StickerLayer::at(std::size_t index) {
  if (ordered_.empty()) {
    for (const auto& [cell, region] : regions_) {
      for (const Entry& entry : region.entries) ordered_.push_back(&entry);
    }
    std::sort(ordered_.begin(), ordered_.end(), [](const Entry* a, const Entry* b) { return a->serial < b->serial; });
  }
  ARENA_ASSERT(ordered_.size() == count_ && index < count_);
  return ordered_[index]->sticker;
}

void StickerLayer::bake(Draw& on, Region& region) {
  scratch_.clear();
  for (const Entry& entry : region.entries) scratch_.push_back(entry.sticker);
  region.baked.mesh = on.make_batch(scratch_);
  region.baked.count = region.entries.size();
}

void StickerLayer::draw(Draw& on) {
  if (!on.is_seen()) return;
  const auto in_view = [&](const Region& region) {
    return on.shows(region.reach.left, region.reach.top, region.reach.right, region.reach.bottom);
  };
  for (auto& [cell, region] : regions_) {
    if (region.entries.empty() || !in_view(region)) continue;
    ARENA_ASSERT(region.baked.count <= region.entries.size());
    const std::size_t tail = region.entries.size() - region.baked.count;
    // A region that nothing was added to since the last frame has no reason to keep a tail.
    if (tail > kLongestTail || (tail > 0 && !region.changed_lately)) bake(on, region);
    region.changed_lately = false;
    if (region.baked.mesh != nullptr) on.draw_batch(*region.baked.mesh);
  }
  for (const auto& [cell, region] : regions_) {
    if (!in_view(region)) continue;
    for (std::size_t i = region.baked.count; i < region.entries.size(); ++i) {
      const Draw::Sticker& sticker = region.entries[i].sticker;
      on.sprite(sticker.sprite, sticker.frame, sticker.at);
    }
  }
}

void StickerLayer::drop_meshes() {
  for (auto& [cell, region] : regions_) region.baked = {};
}

void StickerLayer::Saved::count_held(HeldBytes& into) const {
  for (const auto& [cell, region] : regions) {
    into.add(sizeof(*regions.begin()));
    region.entries.count_held(into);
  }
}

void StickerLayer::save(Saved& into, const Saved* earlier) const {
  into.capacity = capacity_;
  into.count = count_;
  into.next_serial = next_serial_;
  std::erase_if(into.regions, [&](const auto& each) { return !regions_.contains(each.first); });
  for (const auto& [cell, region] : regions_) {
    Saved::Region& saved = into.regions[cell];
    saved.count = region.entries.size();
    saved.reach = region.reach;
    saved.changed_lately = region.changed_lately;
    const SharedPages* there = nullptr;
    if (earlier != nullptr) {
      if (const auto found = earlier->regions.find(cell); found != earlier->regions.end()) there = &found->second.entries;
    }
    std::size_t place = 0;
    for (std::size_t i = 0; i < saved.count;) {
      Entry page[kEntriesPerPage];
      std::size_t filled = 0;
      while (filled < kEntriesPerPage && i < saved.count) page[filled++] = region.entries[i++];
      place = saved.entries.put(place, page, filled * sizeof(Entry), there, place);
    }
    saved.entries.cut(place);
  }
}

void StickerLayer::load(const Saved& from) {
  *this = StickerLayer(from.capacity);
  count_ = from.count;
  next_serial_ = from.next_serial;
  for (const auto& [cell, saved] : from.regions) {
    Region& region = regions_[cell];
    region.reach = saved.reach;
    region.changed_lately = saved.changed_lately;
    std::size_t place = 0;
    while (region.entries.size() < saved.count) {
      Entry page[kEntriesPerPage];
      const std::size_t filled = std::min(kEntriesPerPage, saved.count - region.entries.size());
      place = saved.entries.get(place, page, filled * sizeof(Entry));
      region.entries.insert(region.entries.end(), page, page + filled);
    }
  }
}

StickerLayer* find_sticker_layer(std::int32_t handle) {
  const auto found = part().layers.find(handle);
  return found != part().layers.end() ? &found->second : nullptr;
}

namespace {

StickerLayer* require_layer(std::int32_t handle) {
  StickerLayer* layer = find_sticker_layer(handle);
  if (layer == nullptr) report_error(messages::kArgumentHandle, current_builtin_name(), 1, "stickers", handle);
  return layer;
}

std::int32_t stickers_create(std::int32_t capacity) {
  part().layers.emplace(part().next_handle, static_cast<std::size_t>(std::clamp(capacity, 0, 10000000)));
  return part().next_handle++;
}
void stickers_destroy(std::int32_t handle) { part().layers.erase(handle); }
void stickers_add(std::int32_t handle, std::int32_t sprite, double frame, double x, double y, double xscale, double yscale, double angle,
                  double colour, double alpha) {
  StickerLayer* layer = require_layer(handle);
  if (layer == nullptr) return;
  if (find_sprite(sprite) == nullptr) {
    report_invalid_resource(2, "sprite", sprite, static_cast<std::int32_t>(sprite_infos().size()));
    return;
  }
  layer->add({sprite, frame, {x, y, xscale, yscale, angle, static_cast<std::uint32_t>(saturate_int64(colour)) & 0xFFFFFF, alpha}});
}
void stickers_clear(std::int32_t handle) {
  if (StickerLayer* layer = require_layer(handle)) layer->clear();
}
std::int32_t stickers_count(std::int32_t handle) {
  const StickerLayer* layer = require_layer(handle);
  return layer != nullptr ? static_cast<std::int32_t>(layer->count()) : 0;
}
RValue stickers_get(std::int32_t handle, std::int32_t index) {
  StickerLayer* layer = require_layer(handle);
  if (layer == nullptr) return {};
  if (index < 0 || static_cast<std::size_t>(index) >= layer->count()) {
    report_error(messages::kIndexOutOfBounds, index, static_cast<std::int32_t>(layer->count()));
    return {};
  }
  const Draw::Sticker sticker = layer->at(static_cast<std::size_t>(index));
  RValue made = make_struct();
  const auto field = [&](const char* name, double number) { store_variable(property_object(made), variable_id(name), RValue(number)); };
  field("sprite", sticker.sprite);
  field("image", sticker.frame);
  field("x", sticker.at.x);
  field("y", sticker.at.y);
  field("xscale", sticker.at.xscale);
  field("yscale", sticker.at.yscale);
  field("angle", sticker.at.angle);
  field("color", sticker.at.color);
  field("alpha", sticker.at.alpha);
  return made;
}
void stickers_draw(std::int32_t handle) {
  StickerLayer* layer = require_layer(handle);
  if (layer != nullptr && draw_service() != nullptr) layer->draw(*draw_service());
}

constexpr Implementation kRows[] = {
    implement<script::stickers_create, stickers_create>, implement<script::stickers_destroy, stickers_destroy>,
    implement<script::stickers_add, stickers_add>,       implement<script::stickers_clear, stickers_clear>,
    implement<script::stickers_count, stickers_count>,   implement<script::stickers_get, stickers_get>,
    implement<script::stickers_draw, stickers_draw>,
};
const BuiltinTable table("Stickers",
                         "Very many small pictures that stay where they were put. Past its capacity a layer lets the oldest go.", kRows);

}  // namespace
}  // namespace arena::draw
