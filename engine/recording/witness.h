#pragma once
// What a run shows: its drawing calls, the sounds that it starts and what it replies to a console, each as one hash of everything since
// last asked. The same on every machine and in every build.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/gpu/recorder/recorder.h"

namespace arena::recording {

struct Witnessed {
  std::uint32_t drawing = 0, sounds = 0, replies = 0;
};

// Of the current session. The backend is the game's and outlives the witness; it keeps its vertices from here on.
class Witness {
 public:
  explicit Witness(gpu::Recorder& backend);
  void after_frame();
  void hear(std::string_view reply);
  Witnessed take();

 private:
  void hear_sounds();
  gpu::Recorder& backend_;
  std::uint64_t drawing_ = 0, sounds_ = 0, replies_ = 0;
  std::int32_t next_handle_;  // of the sounds that are still to start
};

}  // namespace arena::recording
