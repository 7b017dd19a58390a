#include "engine/gpu/gpu.h"

#include "engine/gpu/backend.h"
#include "runtime/checks/assert.h"

namespace arena::gpu {
namespace {

constexpr std::size_t kLargestBatch = 60000;  // vertices

bool same_state(const State& a, const State& b) {
  return a.texture.value == b.texture.value && a.blend == b.blend && a.field_pixels == b.field_pixels && a.clip == b.clip;
}

}  // namespace

Gpu::Gpu(std::unique_ptr<Backend> backend) : backend_(std::move(backend)), textures_(1), meshes_(1) { waiting_.reserve(kLargestBatch); }
Gpu::~Gpu() = default;

// A free place, taken. Good until the next one is taken.
Gpu::Slot& Gpu::take_slot(std::vector<Slot>& slots) {
  std::size_t place = 1;
  while (place < slots.size() && slots[place].serial % 2 == 1) ++place;
  if (place == slots.size()) slots.emplace_back();
  ++slots[place].serial;
  return slots[place];
}

// 0 when the backend could not make what stands there: the place is free again. While the device is lost nothing can be made, yet the id
// is good: restoring makes it.
std::uint64_t Gpu::id_of(std::vector<Slot>& slots, Slot& slot) {
  ARENA_ASSERT(slot.serial % 2 == 1 && &slot >= slots.data() && &slot < slots.data() + slots.size());
  if (slot.backend_id == 0 && !backend_->is_lost()) {
    ++slot.serial;
    return 0;
  }
  return static_cast<std::uint64_t>(slot.serial) << 32 | static_cast<std::uint32_t>(&slot - slots.data());
}

Gpu::Slot* Gpu::find_slot(std::vector<Slot>& slots, std::uint64_t id) {
  const std::size_t place = id & 0xFFFFFFFFu;
  if (place == 0 || place >= slots.size() || slots[place].serial != id >> 32) return nullptr;
  return &slots[place];
}

TextureId Gpu::create_texture(int width, int height, const std::uint8_t* pixels) {
  ARENA_ASSERT(width >= 0 && height >= 0);
  Slot& slot = take_slot(textures_);
  slot.backend_id = backend_->create_texture(width, height, pixels);
  if (backend_->can_be_lost()) {
    slot.width = width;
    slot.height = height;
    slot.pixels.assign(pixels, pixels + static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  }
  return {id_of(textures_, slot)};
}

void Gpu::destroy_texture(TextureId texture) {
  Slot* slot = find_slot(textures_, texture.value);
  if (slot == nullptr) return;
  flush();
  backend_->destroy_texture(slot->backend_id);
  *slot = {0, slot->serial + 1, 0, 0, {}, {}};
}

std::uint32_t Gpu::backend_texture(TextureId texture) {
  const Slot* slot = find_slot(textures_, texture.value);
  return slot != nullptr ? slot->backend_id : 0;
}

MeshId Gpu::create_mesh(const Vertex* vertices, std::size_t count) {
  ARENA_ASSERT(count % 3 == 0);
  Slot& slot = take_slot(meshes_);
  slot.backend_id = backend_->create_mesh(vertices, count);
  if (backend_->can_be_lost()) slot.vertices.assign(vertices, vertices + count);
  return {id_of(meshes_, slot)};
}

void Gpu::destroy_mesh(MeshId mesh) {
  Slot* slot = find_slot(meshes_, mesh.value);
  if (slot == nullptr) return;
  backend_->destroy_mesh(slot->backend_id);
  *slot = {0, slot->serial + 1, 0, 0, {}, {}};
}

void Gpu::draw_mesh(const State& state, MeshId mesh, const Transform& transform) {
  const Slot* slot = find_slot(meshes_, mesh.value);
  if (slot == nullptr || !passes_) return;
  flush();
  backend_->draw_mesh(backend_texture(state.texture), state, slot->backend_id, transform);
  ++now_.draw_calls;
}

void Gpu::begin_frame(int width, int height, std::uint32_t clear_color) {
  width_ = width;
  height_ = height;
  now_ = {};
  waiting_.clear();
  if (backend_->is_lost()) restore_device();
  passes_ = next_passes_;
  if (passes_) backend_->begin_frame(width, height, clear_color);
}

void Gpu::draw(const State& state, const Vertex* vertices, std::size_t count) {
  ARENA_ASSERT(count % 3 == 0);
  if (!passes_) return;
  // Shapes without a picture join whatever batch is open.
  const bool fits_any_texture = state.texture.value == 0;
  State wanted = state;
  if (fits_any_texture) {
    wanted.texture = state_.texture;
    wanted.field_pixels = state_.field_pixels;
  }
  if (!same_state(wanted, state_) || waiting_.size() + count > kLargestBatch) {
    const bool open_batch_takes_texture =
        state_.texture.value == 0 && wanted.blend == state_.blend && wanted.clip == state_.clip && waiting_.size() + count <= kLargestBatch;
    if (!open_batch_takes_texture) flush();
    state_ = wanted;
  }
  waiting_.insert(waiting_.end(), vertices, vertices + count);
}

void Gpu::flush() {
  if (waiting_.empty()) return;
  backend_->draw(backend_texture(state_.texture), state_, waiting_.data(), waiting_.size());
  ++now_.draw_calls;
  now_.triangles += static_cast<int>(waiting_.size() / 3);
  waiting_.clear();
}

void Gpu::end_frame() {
  flush();
  if (passes_) backend_->end_frame();
  last_ = now_;
  state_ = {};
}

void Gpu::lose_device() {
  flush();
  backend_->lose();
}

void Gpu::restore_device() {
  if (!backend_->restore()) return;
  for (Slot& slot : textures_) {
    if (slot.serial % 2 == 1) slot.backend_id = backend_->create_texture(slot.width, slot.height, slot.pixels.data());
  }
  for (Slot& slot : meshes_) {
    if (slot.serial % 2 == 1) slot.backend_id = backend_->create_mesh(slot.vertices.data(), slot.vertices.size());
  }
}

std::vector<std::uint8_t> Gpu::read_pixels() {
  flush();
  return passes_ ? backend_->read_pixels(width_, height_) : std::vector<std::uint8_t>();
}

}  // namespace arena::gpu
