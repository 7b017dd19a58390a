#include "engine/recording/witness.h"

#include <cmath>

#include "engine/audio/audio.h"
#include "runtime/values/bit_cast.h"

namespace arena::recording {
namespace {

constexpr std::size_t kForgotten = 2000;  // sounds that were started, before nobody will ask for them any more

void add(std::uint64_t& hash, std::uint64_t bits) {
  hash = (hash ^ bits) * 0x9E3779B97F4A7C15u;
  hash ^= hash >> 29;
}
// To the last bit; but compilers may differ in the sign of a zero, and processors in the bits of what is no number.
void add(std::uint64_t& hash, float number) {
  add(hash, std::isnan(number) ? ~std::uint64_t{0} : std::uint64_t{bit_cast<std::uint32_t>(number == 0 ? 0.0f : number)});
}
void add(std::uint64_t& hash, double number) {
  add(hash, std::isnan(number) ? ~std::uint64_t{0} : bit_cast<std::uint64_t>(number == 0 ? 0.0 : number));
}
void add(std::uint64_t& hash, int number) { add(hash, static_cast<std::uint64_t>(number)); }

void add(std::uint64_t& hash, const gpu::RecordedDraw& draw) {
  add(hash, std::uint64_t{draw.texture});
  add(hash, static_cast<int>(draw.state.blend));
  add(hash, draw.state.field_pixels);
  for (const int each : {draw.state.clip.x, draw.state.clip.y, draw.state.clip.width, draw.state.clip.height}) add(hash, each);
  const gpu::Transform& transform = draw.transform;
  for (const float each : {transform.a, transform.b, transform.c, transform.d, transform.e, transform.f}) add(hash, each);
  add(hash, std::uint64_t{draw.vertex_count});
  for (const gpu::Vertex& vertex : draw.vertices) {
    for (const float each : {vertex.x, vertex.y, vertex.u, vertex.v, vertex.paint}) add(hash, each);
    add(hash, std::uint64_t{vertex.color});
  }
}

void add(std::uint64_t& hash, const audio::Voice& voice) {
  for (const int each : {voice.handle, voice.sound, voice.group}) add(hash, each);
  for (const bool each : {voice.loop, voice.is_paused, voice.is_positional}) add(hash, int{each});
  for (const double each :
       {voice.gain, voice.pitch, voice.priority, voice.x, voice.y, voice.z, voice.reference, voice.maximum, voice.factor, voice.offset})
    add(hash, each);
}

}  // namespace

Witness::Witness(gpu::Recorder& backend) : backend_(backend), next_handle_(audio::kFirstHandle) { backend.keeps_vertices = true; }

void Witness::after_frame() {
  add(drawing_, std::uint64_t{backend_.clear_color});
  add(drawing_, std::uint64_t{backend_.draws.size()});
  for (const gpu::RecordedDraw& draw : backend_.draws) add(drawing_, draw);
  hear_sounds();
}

// By their handles, so that whoever asks for the sounds that were started gets them, too.
void Witness::hear_sounds() {
  audio::Audio& audio = audio::audio();
  if (audio.next_handle < next_handle_) next_handle_ = audio::kFirstHandle;  // the game began anew
  for (const audio::Voice& voice : audio.started) {
    if (voice.handle >= next_handle_) add(sounds_, voice);
  }
  next_handle_ = audio.next_handle;
  if (audio.started.size() >= kForgotten) audio.started.clear();  // nobody asks
}

void Witness::hear(std::string_view reply) {
  add(replies_, std::uint64_t{reply.size()});
  for (const char each : reply) add(replies_, std::uint64_t{static_cast<unsigned char>(each)});
}

Witnessed Witness::take() {
  for (const audio::Voice& voice : audio::audio().voices()) add(sounds_, voice);
  const Witnessed taken = {static_cast<std::uint32_t>(drawing_), static_cast<std::uint32_t>(sounds_), static_cast<std::uint32_t>(replies_)};
  drawing_ = sounds_ = replies_ = 0;
  return taken;
}

}  // namespace arena::recording
