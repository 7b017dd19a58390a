#include "engine/recording/recorder.h"

#include <utility>

#include "engine/files/paths.h"
#include "engine/recording/recording_text.h"
#include "runtime/input/outside.h"
#include "runtime/reports/log.h"

namespace arena::recording {

namespace {

std::unique_ptr<Form> form_for(const std::filesystem::path& file) {
  if (is_text_file(file)) return std::make_unique<TextWriter>();
  return std::make_unique<Writer>();
}

}  // namespace

bool is_text_file(const std::filesystem::path& file) { return file.extension() == ".txt"; }

Recorder::Recorder(const std::filesystem::path& file, Beginning beginning, Witness* witness)
    : name_(files::utf8_of(file)),
      beginning_(std::move(beginning)),
      stream_(file, std::ios::binary),
      disk_(file),
      form_(form_for(file)),
      witness_(witness) {}

Recorder::Recorder(const std::filesystem::path& file, const Recording& from, std::size_t frames) : Recorder(file, from.beginning) {
  const auto copy_answers = [&](const Frame& of) {
    for (const std::string& answer : of.answers) write(form_->answer(answer));
  };
  begin(from.start.input);
  copy_answers(from.start);
  auto checkpoint = from.checkpoints.begin();
  while (frames_ < frames) {
    const Frame& next = from.frames[frames_++];
    for (const std::string& request : next.requests) write(form_->request(request));
    since_checkpoint_ += next.microseconds;
    write(form_->frame(next.microseconds, next.input));
    copy_answers(next);
    if (checkpoint == from.checkpoints.end() || checkpoint->frames != frames_) continue;
    Checkpoint copied = *checkpoint++;
    for (Checkpoint::Figure& figure : copied.figures) figure.hash = short_figure(figure.hash, form_->figure_bits());
    write(form_->checkpoint(copied));
    since_checkpoint_ = 0;
  }
}

void Recorder::before_start() { begin(queued_input()); }

void Recorder::begin(const std::vector<InputEvent>& input) {
  has_begun_ = true;
  hear_answers([this](const std::string& answer) { write(form_->answer(answer)); });
  write(form_->beginning(beginning_));
  write(form_->start(input));
}

void Recorder::before_frame(std::int64_t microseconds) {
  is_up_to_date_ = false;
  since_checkpoint_ += microseconds;
  if (is_recording_) write(form_->frame(microseconds, queued_input()));
}

void Recorder::before_request(const std::string& request) {
  is_up_to_date_ = false;
  if (is_recording_) write(form_->request(request));
}

void Recorder::console_says(const std::string& text) {
  if (witness_ != nullptr) witness_->hear(text);
}

void Recorder::after_frame() {
  ++frames_;
  if (witness_ != nullptr) witness_->after_frame();
  if (is_recording_ && since_checkpoint_ >= kCheckpointEvery) write_checkpoint();
}

void Recorder::end() {
  if (is_recording_ && has_begun_) {
    replace_queued_input({});  // what came behind the last frame is no part of the run
    if (!is_up_to_date_) write_checkpoint();
  }
  is_recording_ = false;
  stream_.close();
}

void Recorder::write_checkpoint() {
  since_checkpoint_ = 0;
  is_up_to_date_ = true;
  Checkpoint made = checkpoint_of(frames_, host::state_figures(), form_->figure_bits());
  if (witness_ != nullptr) made.shown = witness_->take();
  write(form_->checkpoint(made));
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
