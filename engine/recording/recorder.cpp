#include "engine/recording/recorder.h"

#include <utility>

#include "engine/files/paths.h"
#include "runtime/input/outside.h"
#include "runtime/reports/log.h"

namespace arena::recording {

Recorder::Recorder(const std::filesystem::path& file, Beginning beginning)
    : name_(files::utf8_of(file)), beginning_(std::move(beginning)), stream_(file, std::ios::binary), disk_(file) {}

Recorder::Recorder(const std::filesystem::path& file, const Recording& from, std::size_t frames) : Recorder(file, from.beginning) {
  const auto copy_answers = [&](const Frame& of) {
    for (const std::string& answer : of.answers) write(writer_.answer(answer));
  };
  begin(from.start.input);
  copy_answers(from.start);
  auto checkpoint = from.checkpoints.begin();
  while (frames_ < frames) {
    const Frame& next = from.frames[frames_++];
    since_checkpoint_ += next.microseconds;
    write(writer_.frame(next.microseconds, next.input));
    copy_answers(next);
    if (checkpoint == from.checkpoints.end() || checkpoint->frames != frames_) continue;
    write(writer_.checkpoint(*checkpoint++));
    since_checkpoint_ = 0;
  }
}

void Recorder::before_start() { begin(queued_input()); }

void Recorder::begin(const std::vector<InputEvent>& input) {
  has_begun_ = true;
  hear_answers([this](const std::string& answer) { write(writer_.answer(answer)); });
  write(writer_.beginning(beginning_));
  write(writer_.start(input));
}

void Recorder::before_frame(std::int64_t microseconds) {
  since_checkpoint_ += microseconds;
  if (is_recording_) write(writer_.frame(microseconds, queued_input()));
}

void Recorder::after_frame() {
  ++frames_;
  if (is_recording_ && since_checkpoint_ >= kCheckpointEvery) write_checkpoint();
}

void Recorder::end() {
  if (is_recording_ && has_begun_) {
    replace_queued_input({});  // what came behind the last frame is no part of the run
    write_checkpoint();
  }
  is_recording_ = false;
  stream_.close();
}

void Recorder::write_checkpoint() {
  since_checkpoint_ = 0;
  write(writer_.checkpoint(checkpoint_of(frames_, host::state_figures())));
  disk_.request();
}

// Each piece reaches the system at once: it survives the end of the program, however that comes; and the disk within a second.
void Recorder::write(const std::string& bytes) {
  if (!is_recording_) return;
  stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
  if (stream_) return;
  is_recording_ = false;
  log_warning(files::on_one_line(name_) + ": the recording cannot be written");
}

}  // namespace arena::recording
