#pragma once
// Writes the run that goes on into a file, as it happens.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "engine/files/disk_sync.h"
#include "engine/host/game.h"
#include "engine/recording/recording.h"

namespace arena::recording {

// Of the current session, from before its start (FrameListener::before_start) on; it must outlive the game. What cannot be written ends the
// recording with one line in the log, and the game goes on.
class Recorder final : public host::FrameListener {
 public:
  Recorder(const std::filesystem::path& file, Beginning beginning);
  // Goes on behind so many frames of a recording, of which a copy comes first: the current session has played it up to there.
  Recorder(const std::filesystem::path& file, const Recording& from, std::size_t frames);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void before_start() override;
  // What is written before a frame that never ends is there.
  void before_frame(std::int64_t microseconds) override;
  void after_frame() override;
  // The last checkpoint; nothing follows.
  void end();
  bool is_recording() const { return is_recording_; }

 private:
  void begin(const std::vector<InputEvent>& input);
  void write(const std::string& bytes);
  void write_checkpoint();

  std::string name_;
  Beginning beginning_;
  std::ofstream stream_;
  files::DiskSync disk_;  // once with each checkpoint
  Writer writer_;
  std::size_t frames_ = 0;
  std::int64_t since_checkpoint_ = 0;  // microseconds
  bool is_recording_ = true, has_begun_ = false;
};

}  // namespace arena::recording
