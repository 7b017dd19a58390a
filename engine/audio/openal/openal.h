#pragma once
// The model's voices on OpenAL Soft.
#include <memory>
#include <string>

#include "engine/audio/audio.h"

namespace arena::audio {

// Null and a sentence in `problem` when there is no sound device.
std::unique_ptr<Device> open_openal(std::string& problem);
// Renders into memory in place of a device: `pull` fills 16-bit stereo frames at 44,100 a second.
class LoopbackDevice : public Device {
 public:
  virtual void pull(std::int16_t* frames, int count) = 0;
};
std::unique_ptr<LoopbackDevice> open_openal_loopback(std::string& problem);

}  // namespace arena::audio
