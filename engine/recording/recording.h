#pragma once
// A run as a file: how it began, and frame by frame how long it took and all that entered. Played again it is the same run to the last
// bit; hashes of the state, one a second, prove it. docs/recording.md describes the bytes, and the form that people can read
// (recording_text.h).
//
// Always true: a file that ends anywhere is a recording of the run up to there, and one whose bytes were changed says so.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/host/state_hash.h"
#include "engine/recording/witness.h"
#include "runtime/input/input_state.h"

namespace arena::recording {

inline constexpr std::int64_t kCheckpointEvery = 1'000'000;   // microseconds of the run from one hash to the next
inline constexpr std::int64_t kLongestFrame = 3'600'000'000;  // microseconds
inline constexpr std::size_t kLargestFile = 64u << 20;        // bytes that a reader takes; 1 MB are half an hour

// What a replay starts from, and what must be the same for it to make sense.
struct Beginning {
  std::string game, version;    // the program's name and version: "arena", "1.0.0"; no version: any
  std::uint32_t data_hash = 0;  // of the data file; 0: any
  std::string room;             // "": the first one
  bool has_seed = false;
  std::uint64_t seed = 0;
  bool has_console = false;  // a console drove the run: script errors end their handlers only
};

// The state after a frame. Figures of parts are cut to so many bits: they say where two runs differ, the whole hash says whether.
inline constexpr int kFigureBits = 16, kFigureBitsOfText = 8;
struct Checkpoint {
  struct Figure {
    std::string part;
    std::uint16_t hash;
    friend bool operator==(const Figure&, const Figure&) = default;
  };
  std::size_t frames = 0;  // that had run
  std::uint64_t hash = 0;
  std::vector<Figure> figures;
  std::size_t requests = 0;             // of the console that had been performed since then
  std::optional<Witnessed> shown = {};  // what was drawn, heard and replied since the checkpoint before, where somebody looked
};
std::uint16_t short_figure(std::uint64_t hash, int bits);  // never 0
Checkpoint checkpoint_of(std::size_t frames, const std::vector<host::StateFigure>& figures, int bits = kFigureBits);

struct Frame {
  std::int64_t microseconds = 0;
  std::vector<std::string> requests;  // of the console, which evaluate; performed before the frame
  std::vector<InputEvent> input;
  std::vector<std::string> answers;  // from outside, in the order in which requests and scripts asked
};

struct Recording {
  Beginning beginning;
  Frame start;  // what entered before the first frame
  std::vector<Frame> frames;
  std::vector<std::string> last_requests, last_answers;  // behind the last frame
  std::vector<Checkpoint> checkpoints;
  int figure_bits = kFigureBits;
  std::string damage;  // a sentence about what could not be read behind the last frame; "": nothing, or a file that just ends

  // Whether the run broke off in its last frame, or in its start when there is none: no checkpoint stands behind it. A run that ended in
  // order has one there.
  bool breaks_off() const;

  // For readers: the next piece of the run.
  void add_request(std::string line);
  void add_frame(std::int64_t microseconds, std::vector<InputEvent> input);
  void add_answer(std::string text);
  void add_checkpoint(Checkpoint made);
};

// Makes a recording, piece by piece: the beginning, the start, then frame after frame, each with the answers given in it.
class Form {
 public:
  virtual ~Form() = default;
  virtual std::string beginning(const Beginning& of) = 0;
  virtual std::string start(const std::vector<InputEvent>& input) = 0;
  // Of the console, before the next frame.
  virtual std::string request(const std::string& line) = 0;
  virtual std::string frame(std::int64_t microseconds, const std::vector<InputEvent>& input) = 0;
  virtual std::string answer(const std::string& text) = 0;
  virtual std::string checkpoint(const Checkpoint& of) = 0;
  virtual int figure_bits() const = 0;
};

// The form of bytes.
class Writer final : public Form {
 public:
  std::string beginning(const Beginning& of) override;
  std::string start(const std::vector<InputEvent>& input) override;
  std::string request(const std::string& line) override;
  std::string frame(std::int64_t microseconds, const std::vector<InputEvent>& input) override;
  std::string answer(const std::string& text) override;
  std::string checkpoint(const Checkpoint& of) override;  // without what was shown
  int figure_bits() const override { return kFigureBits; }

 private:
  void event(std::string& out, const InputEvent& input);
  std::string passed(std::string piece);
  std::int64_t microseconds_ = 0;  // of the last frame
  double pointer_x_ = 0, pointer_y_ = 0;
  std::uint32_t checksum_ = 0;             // of the bytes since the last checkpoint
  std::vector<Checkpoint::Figure> parts_;  // as last written
};

// Either form. False with one sentence in `problem` for what is no recording or whose beginning is damaged or incomplete. Damage further
// on cuts the recording there.
bool read_recording(std::string_view bytes, Recording& into, std::string& problem);
// The same from a file.
bool open_recording(const std::string& path, Recording& into, std::string& problem);

}  // namespace arena::recording
