#include "engine/audio/openal/openal.h"

#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>

#include <algorithm>
#include <cmath>

namespace arena::audio {
namespace {

constexpr std::size_t kSources = 32;    // voices that sound at once; the rest play on silently
constexpr double kDriftAllowed = 0.25;  // seconds that a source may be away from its voice before it is put right

ALenum distance_model(Falloff falloff) {
  switch (falloff) {
    case Falloff::kNone: return AL_NONE;
    case Falloff::kInverse: return AL_INVERSE_DISTANCE;
    case Falloff::kInverseClamped: return AL_INVERSE_DISTANCE_CLAMPED;
    case Falloff::kLinear: return AL_LINEAR_DISTANCE;
    case Falloff::kLinearClamped: return AL_LINEAR_DISTANCE_CLAMPED;
    case Falloff::kExponent: return AL_EXPONENT_DISTANCE;
    case Falloff::kExponentClamped: return AL_EXPONENT_DISTANCE_CLAMPED;
  }
  return AL_NONE;
}

class OpenAl final : public LoopbackDevice {
 public:
  OpenAl(ALCdevice* device, ALCcontext* context, LPALCRENDERSAMPLESSOFT render) : device_(device), context_(context), render_(render) {
    alcMakeContextCurrent(context_);
    for (Source& source : sources_) alGenSources(1, &source.name);
  }
  ~OpenAl() override {
    for (Source& source : sources_) alDeleteSources(1, &source.name);
    for (const ALuint buffer : buffers_) alDeleteBuffers(1, &buffer);
    alcMakeContextCurrent(nullptr);
    alcDestroyContext(context_);
    alcCloseDevice(device_);
  }

  void load(const std::vector<Clip>& clips) override {
    buffers_.resize(clips.size());
    alGenBuffers(static_cast<ALsizei>(clips.size()), buffers_.data());
    for (std::size_t i = 0; i < clips.size(); ++i) {
      if (clips[i].samples.empty()) continue;
      alBufferData(buffers_[i], AL_FORMAT_MONO16, clips[i].samples.data(), static_cast<ALsizei>(clips[i].samples.size() * 2),
                   clips[i].rate);
    }
  }

  void follow(const std::vector<Voice>& voices, const Listener& listener, Falloff falloff, double master_gain) override {
    alDistanceModel(distance_model(falloff));
    alListener3f(AL_POSITION, static_cast<float>(listener.x), static_cast<float>(listener.y), static_cast<float>(listener.z));
    const float orientation[6] = {static_cast<float>(listener.at[0]), static_cast<float>(listener.at[1]),
                                  static_cast<float>(listener.at[2]), static_cast<float>(listener.up[0]),
                                  static_cast<float>(listener.up[1]), static_cast<float>(listener.up[2])};
    alListenerfv(AL_ORIENTATION, orientation);
    alListenerf(AL_GAIN, static_cast<float>(master_gain));
    const std::size_t count = std::min(voices.size(), kSources);
    for (Source& source : sources_) {
      const bool wanted = std::any_of(voices.begin(), voices.begin() + static_cast<std::ptrdiff_t>(count),
                                      [&](const Voice& voice) { return voice.handle == source.handle; });
      if (source.handle != 0 && !wanted) silence(source);
    }
    for (std::size_t i = 0; i < count; ++i) follow_one(voices[i]);
  }

  void forget() override {
    for (Source& source : sources_) {
      if (source.handle != 0) silence(source);
    }
  }

  void pull(std::int16_t* frames, int count) override { render_(device_, frames, count); }

 private:
  struct Source {
    ALuint name = 0;
    std::int32_t handle = 0;
  };

  void silence(Source& source) {
    alSourceStop(source.name);
    alSourcei(source.name, AL_BUFFER, 0);
    source.handle = 0;
  }

  void follow_one(const Voice& voice) {
    Source* source = nullptr;
    for (Source& each : sources_) {
      if (each.handle == voice.handle) source = &each;
    }
    const bool is_new = source == nullptr;
    for (Source& each : sources_) {
      if (source == nullptr && each.handle == 0) source = &each;
    }
    if (source == nullptr) return;
    if (voice.is_positional)
      alSource3f(source->name, AL_POSITION, static_cast<float>(voice.x), static_cast<float>(voice.y), static_cast<float>(voice.z));
    alSourcef(source->name, AL_GAIN, static_cast<float>(voice.gain));
    alSourcef(source->name, AL_PITCH, static_cast<float>(voice.pitch));
    if (is_new) start(*source, voice);  // it begins where it is meant to be, and as loud
    ALint state = 0;
    alGetSourcei(source->name, AL_SOURCE_STATE, &state);
    if (voice.is_paused && state == AL_PLAYING) alSourcePause(source->name);
    if (!voice.is_paused && state == AL_PAUSED) alSourcePlay(source->name);
    float offset = 0;
    alGetSourcef(source->name, AL_SEC_OFFSET, &offset);
    if (!is_new && state == AL_PLAYING && std::fabs(static_cast<double>(offset) - voice.offset) > kDriftAllowed) {
      alSourcef(source->name, AL_SEC_OFFSET, static_cast<float>(voice.offset));
    }
  }

  void start(Source& source, const Voice& voice) {
    source.handle = voice.handle;
    alSourcei(source.name, AL_BUFFER, static_cast<ALint>(buffers_[static_cast<std::size_t>(voice.sound)]));
    alSourcei(source.name, AL_LOOPING, voice.loop ? AL_TRUE : AL_FALSE);
    alSourcei(source.name, AL_SOURCE_RELATIVE, voice.is_positional ? AL_FALSE : AL_TRUE);
    alSourcef(source.name, AL_REFERENCE_DISTANCE, static_cast<float>(voice.reference));
    alSourcef(source.name, AL_MAX_DISTANCE, static_cast<float>(voice.maximum));
    alSourcef(source.name, AL_ROLLOFF_FACTOR, voice.is_positional ? static_cast<float>(voice.factor) : 0);
    if (!voice.is_positional) alSource3f(source.name, AL_POSITION, 0, 0, 0);
    alSourcef(source.name, AL_SEC_OFFSET, static_cast<float>(voice.offset));
    if (!voice.is_paused) alSourcePlay(source.name);
  }

  ALCdevice* device_;
  ALCcontext* context_;
  LPALCRENDERSAMPLESSOFT render_;
  Source sources_[kSources];
  std::vector<ALuint> buffers_;
};

std::unique_ptr<OpenAl> make(ALCdevice* device, const ALCint* attributes, LPALCRENDERSAMPLESSOFT render, std::string& problem) {
  ALCcontext* context = device != nullptr ? alcCreateContext(device, attributes) : nullptr;
  if (context != nullptr) return std::make_unique<OpenAl>(device, context, render);
  if (device != nullptr) alcCloseDevice(device);
  problem = "no sound device could be opened; the game plays without sound";
  return nullptr;
}

}  // namespace

std::unique_ptr<Device> open_openal(std::string& problem) { return make(alcOpenDevice(nullptr), nullptr, nullptr, problem); }

std::unique_ptr<LoopbackDevice> open_openal_loopback(std::string& problem) {
  const auto open = reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
  const auto render = reinterpret_cast<LPALCRENDERSAMPLESSOFT>(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
  if (open == nullptr || render == nullptr) {
    problem = "this OpenAL cannot render into memory";
    return nullptr;
  }
  const ALCint attributes[] = {ALC_FORMAT_CHANNELS_SOFT, ALC_STEREO_SOFT, ALC_FORMAT_TYPE_SOFT, ALC_SHORT_SOFT, ALC_FREQUENCY, 44100, 0};
  return make(open(nullptr), attributes, render, problem);
}

}  // namespace arena::audio
