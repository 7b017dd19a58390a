#include "engine/audio/audio.h"

#include <algorithm>
#include <cmath>

#include "runtime/checks/assert.h"
#include "runtime/values/compare.h"
#include "runtime/values/elementary.h"

namespace arena::audio {
namespace {

constexpr std::size_t kMostVoices = 65536;  // handles; beyond, the oldest is forgotten
constexpr double kSharedFor = 0.05;         // seconds
constexpr std::size_t kMostRemembered = 4096;
constexpr double kLowestPitch = 0.01;

bool matches(const Voice& voice, std::int32_t handle_or_sound) {
  return handle_or_sound >= kFirstHandle ? voice.handle == handle_or_sound : voice.sound == handle_or_sound;
}

const StatePart<Audio> part{PartLevel::kServices, "sounds"};

}  // namespace

Audio& audio() { return part(); }

double falloff_gain(Falloff model, double distance, double reference, double maximum, double factor) {
  const bool clamped = model == Falloff::kInverseClamped || model == Falloff::kLinearClamped || model == Falloff::kExponentClamped;
  if (clamped) distance = std::clamp(distance, reference, std::max(reference, maximum));
  switch (model) {
    case Falloff::kNone: return 1;
    case Falloff::kInverse:
    case Falloff::kInverseClamped: {
      const double below = reference + factor * (distance - reference);
      return below > 0 ? std::min(1.0, reference / below) : 1;
    }
    case Falloff::kLinear:
    case Falloff::kLinearClamped:
      if (maximum <= reference) return 1;
      return std::clamp(1 - factor * (distance - reference) / (maximum - reference), 0.0, 1.0);
    case Falloff::kExponent:
    case Falloff::kExponentClamped:
      return reference > 0 && distance > 0 ? std::min(1.0, elementary::pow(distance / reference, -factor)) : 1;
  }
  return 1;
}

bool Audio::has_sound(std::int32_t sound) const {
  return sound >= 0 && static_cast<std::size_t>(sound) < clips.size() && !clips[static_cast<std::size_t>(sound)].name.empty();
}

double Audio::loudness(const Voice& voice) const {
  if (!voice.is_positional) return voice.gain;
  const double dx = voice.x - listener.x, dy = voice.y - listener.y, dz = voice.z - listener.z;
  return voice.gain * falloff_gain(falloff, elementary::sqrt(dx * dx + dy * dy + dz * dz), voice.reference, voice.maximum, voice.factor);
}

std::int32_t Audio::play(const Voice& voice) {
  ARENA_ASSERT(playing.empty() || playing.back().handle < next_handle);  // sorted by handle
  playing.push_back(voice);
  Voice& made = playing.back();
  made.pitch = std::max(made.pitch, kLowestPitch);
  made.offset = std::max(made.offset, 0.0);
  made.handle = made.group = next_handle++;
  if (!made.loop && made.offset == 0) {
    Start& start = starts[{made.sound, made.is_positional}];
    if (start.time >= 0 && clock - start.time <= kSharedFor) {
      made.group = start.group;
    } else {
      start = {made.handle, clock};
    }
  }
  if (started.size() < kMostRemembered) started.push_back(made);
  const std::int32_t handle = made.handle;
  if (playing.size() > kMostVoices) playing.erase(playing.begin());
  return handle;
}

// Handles only grow, so voices are sorted by them.
template <class Voices>
auto Audio::at_handle(Voices& voices, std::int32_t handle) {
  const auto found =
      std::lower_bound(voices.begin(), voices.end(), handle, [](const Voice& voice, std::int32_t of) { return voice.handle < of; });
  return found != voices.end() && found->handle == handle ? &*found : nullptr;
}

template <class Change>
void Audio::for_matching(std::int32_t handle_or_sound, Change change) {
  for (std::vector<Voice>* voices : {&playing, &started}) {  // pitch and gain set in the same frame belong to the start
    if (handle_or_sound >= kFirstHandle) {
      if (Voice* voice = at_handle(*voices, handle_or_sound)) change(*voice);
      continue;
    }
    for (Voice& voice : *voices) {
      if (voice.sound == handle_or_sound) change(voice);
    }
  }
}

void Audio::stop(std::int32_t handle_or_sound) {
  playing.erase(std::remove_if(playing.begin(), playing.end(), [&](const Voice& voice) { return matches(voice, handle_or_sound); }),
                playing.end());
}
void Audio::stop_all() { playing.clear(); }
void Audio::set_paused(std::int32_t handle_or_sound, bool paused) {
  for_matching(handle_or_sound, [&](Voice& voice) { voice.is_paused = paused; });
}
void Audio::set_pitch(std::int32_t handle_or_sound, double pitch) {
  for_matching(handle_or_sound, [&](Voice& voice) { voice.pitch = std::max(pitch, kLowestPitch); });
}

void Audio::set_gain(std::int32_t handle_or_sound, double gain, double seconds) {
  if (seconds <= 0) {
    for_matching(handle_or_sound, [&](Voice& voice) { voice.gain = gain; });
  }
  for (const Voice& voice : playing) {
    if (!matches(voice, handle_or_sound)) continue;
    std::erase_if(fades, [&](const Fade& fade) { return fade.handle == voice.handle; });
    if (seconds > 0) fades.push_back({voice.handle, gain, (gain - voice.gain) / seconds});
  }
}

bool Audio::is_playing(std::int32_t handle_or_sound) const {
  return std::any_of(playing.begin(), playing.end(),
                     [&](const Voice& voice) { return matches(voice, handle_or_sound) && !voice.is_paused; });
}
bool Audio::is_paused(std::int32_t handle_or_sound) const {
  return std::any_of(playing.begin(), playing.end(),
                     [&](const Voice& voice) { return matches(voice, handle_or_sound) && voice.is_paused; });
}
const Voice* Audio::find(std::int32_t handle) const { return at_handle(playing, handle); }
bool Audio::exists(std::int32_t handle_or_sound) const { return has_sound(handle_or_sound) || find(handle_or_sound) != nullptr; }

void Audio::advance(double seconds) {
  clock += seconds;
  std::erase_if(fades, [&](const Fade& fade) {
    Voice* const voice = at_handle(playing, fade.handle);
    if (voice == nullptr) return true;
    const double left = fade.target - voice->gain, step = fade.per_second * seconds;
    const bool arrives = std::fabs(step) >= std::fabs(left);
    voice->gain = arrives ? fade.target : voice->gain + step;
    return arrives;
  });
  for (Voice& voice : playing) {
    if (voice.is_paused) continue;
    ARENA_ASSERT(voice.sound >= 0 && static_cast<std::size_t>(voice.sound) < clips.size());
    voice.offset += seconds * voice.pitch;
    const double length = clips[static_cast<std::size_t>(voice.sound)].seconds();
    if (voice.loop && length > 0) voice.offset = std::fmod(voice.offset, length);
  }
  playing.erase(std::remove_if(playing.begin(), playing.end(),
                               [&](const Voice& voice) {
                                 return !voice.loop && voice.offset >= clips[static_cast<std::size_t>(voice.sound)].seconds();
                               }),
                playing.end());
}

std::vector<Voice> Audio::sounding() const {
  std::vector<Voice> groups;
  std::map<std::int32_t, std::size_t> places;
  std::vector<double> loudest;
  for (const Voice& voice : playing) {
    const auto [place, is_first] = places.try_emplace(voice.group, groups.size());
    const double heard = voice.is_paused ? -1 : loudness(voice);
    if (is_first) {
      groups.push_back(voice);
      groups.back().handle = voice.group;
      loudest.push_back(heard);
      continue;
    }
    Voice& group = groups[place->second];
    group.priority = std::max(group.priority, voice.priority);
    if (heard <= loudest[place->second]) continue;
    loudest[place->second] = heard;
    group.is_paused = false;
    group.gain = voice.gain;
    group.x = voice.x;
    group.y = voice.y;
    group.z = voice.z;
  }
  std::stable_sort(groups.begin(), groups.end(), [&](const Voice& a, const Voice& b) {
    if (sorts_before(b.priority, a.priority)) return true;
    return !sorts_before(a.priority, b.priority) && sorts_before(loudness(b), loudness(a));
  });
  return groups;
}

void Audio::feed(Device& device) const { device.follow(sounding(), listener, falloff, master_gain); }

std::vector<Voice> Audio::take_started() {
  std::vector<Voice> taken;
  taken.swap(started);
  return taken;
}

}  // namespace arena::audio
