#include "engine/gpu/gpu.h"

#include "engine/gpu/backend.h"

namespace arena::gpu {
namespace {

constexpr std::size_t kLargestBatch = 60000;  // vertices

// An id is the slot's place below and the slot's serial number above, so that a stale id is told from its slot's next owner.
constexpr std::uint32_t kPlaceBits = 12;

bool same_state(const State& a, const State& b) {
  return a.texture.value == b.texture.value && a.blend == b.blend && a.field_pixels == b.field_pixels;
}

}  // namespace

Gpu::Gpu(std::unique_ptr<Backend> backend) : backend_(std::move(backend)), textures_(1) { waiting_.reserve(kLargestBatch); }
Gpu::~Gpu() = default;

TextureId Gpu::create_texture(int width, int height, const std::uint8_t* pixels) {
  std::size_t place = 1;
  while (place < textures_.size() && textures_[place].serial % 2 == 1) ++place;
  if (place >> kPlaceBits != 0) return {};
  if (place == textures_.size()) textures_.emplace_back();
  Slot& slot = textures_[place];
  slot.backend_texture = backend_->create_texture(width, height, pixels);
  if (slot.backend_texture == 0) return {};
  ++slot.serial;
  return {slot.serial << kPlaceBits | static_cast<std::uint32_t>(place)};
}

void Gpu::destroy_texture(TextureId texture) {
  const std::uint32_t named = backend_texture(texture);
  if (named == 0) return;
  flush();
  backend_->destroy_texture(named);
  ++textures_[texture.value & ((1u << kPlaceBits) - 1)].serial;
}

std::uint32_t Gpu::backend_texture(TextureId texture) const {
  const std::size_t place = texture.value & ((1u << kPlaceBits) - 1);
  if (place == 0 || place >= textures_.size() || textures_[place].serial != texture.value >> kPlaceBits) return 0;
  return textures_[place].backend_texture;
}

void Gpu::begin_frame(int width, int height, std::uint32_t clear_color) {
  width_ = width;
  height_ = height;
  now_ = {};
  waiting_.clear();
  backend_->begin_frame(width, height, clear_color);
}

void Gpu::draw(const State& state, const Vertex* vertices, std::size_t count) {
  // Shapes without a picture join whatever batch is open.
  const bool fits_any_texture = state.texture.value == 0;
  State wanted = state;
  if (fits_any_texture) {
    wanted.texture = state_.texture;
    wanted.field_pixels = state_.field_pixels;
  }
  if (!same_state(wanted, state_) || waiting_.size() + count > kLargestBatch) {
    const bool open_batch_takes_texture =
        state_.texture.value == 0 && wanted.blend == state_.blend && waiting_.size() + count <= kLargestBatch;
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
  backend_->end_frame();
  last_ = now_;
  state_ = {};
}

std::vector<std::uint8_t> Gpu::read_pixels() {
  flush();
  return backend_->read_pixels(width_, height_);
}

}  // namespace arena::gpu
