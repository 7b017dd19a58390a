#pragma once
// Writes the run that goes on into a file, as it happens.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "engine/files/disk_sync.h"
#include "engine/host/game.h"
#include "engine/recording/recording.h"

namespace arena::recording {

// Whether it gets the form that people can read: its name ends in ".txt".
bool is_text_file(const std::filesystem::path& file);

// Of the current session, from before its start (FrameListener::before_start) on; it must outlive the game. What cannot be written ends the
// recording with one line in the log, and the game goes on.
class Recorder final : public host::FrameListener {
 public:
  // A witness, not owned, looks on for it; null: nobody does.
  Recorder(const std::filesystem::path& file, Beginning beginning, Witness* witness = nullptr);
  // Goes on behind so many frames of a recording, of which a copy comes first: the current session has played it up to there.
  Recorder(const std::filesystem::path& file, const Recording& from, std::size_t frames);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void before_start() override;
  // What is written before a frame that never ends is there.
  void before_frame(std::int64_t microseconds) override;
  void after_frame() override;
  void before_request(const std::string& request) override;
  void console_says(const std::string& text) override;
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
  std::unique_ptr<Form> form_;
  Witness* witness_ = nullptr;
  std::size_t frames_ = 0;
  std::int64_t since_checkpoint_ = 0;  // microseconds
  bool is_recording_ = true, has_begun_ = false;
  bool is_up_to_date_ = false;  // the last checkpoint is of the state as it is
};

}  // namespace arena::recording
