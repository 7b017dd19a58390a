#pragma once
// Recordings in a form that people can read and change: a line for each thing that enters, and for each second what came of it.
// docs/recording.md lists the lines.
#include <string>
#include <string_view>
#include <vector>

#include "engine/recording/recording.h"

namespace arena::recording {

// Frames in which nothing enters are written when something else is: a run that breaks off may lack those of its last second.
class TextWriter final : public Form {
 public:
  std::string beginning(const Beginning& of) override;
  std::string start(const std::vector<InputEvent>& input) override;
  std::string request(const std::string& line) override;
  std::string frame(std::int64_t microseconds, const std::vector<InputEvent>& input) override;
  std::string answer(const std::string& text) override;
  std::string checkpoint(const Checkpoint& of) override;
  int figure_bits() const override { return kFigureBitsOfText; }

 private:
  // A line, behind the frames that were held back.
  std::string line(const std::string& text);
  std::string event(const InputEvent& input);
  std::string pointer(const InputEvent& input);
  // Whole pixels right and down from where the pointer was; "" where they do not lead there.
  std::string steps(const InputEvent& to) const;
  void note_pointer(const InputEvent& input);
  std::int64_t microseconds_ = -1;  // of the last frame; -1: there was none
  std::uint64_t quiet_frames_ = 0;  // held back
  double pointer_x_ = 0, pointer_y_ = 0;
  PointerSpace space_ = PointerSpace::kWindow;
  std::vector<std::string> parts_;  // in the order of their digits
};

bool is_recording_text(std::string_view bytes);
// As read_recording. A line that cannot be read is damage; a last one without its end was being written.
bool read_recording_text(std::string_view text, Recording& into, std::string& problem);

}  // namespace arena::recording
