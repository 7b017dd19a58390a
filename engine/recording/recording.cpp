#include "engine/recording/recording.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "engine/files/paths.h"
#include "engine/files/zipped.h"
#include "engine/recording/bytes.h"
#include "engine/recording/recording_text.h"
#include "runtime/values/bit_cast.h"

namespace arena::recording {
namespace {

constexpr std::string_view kMagic = "RECORD\x1A\x02";  // the last byte is the version of the format
constexpr char kFirstVersion = 1;

// The lowest two bits of an entry's first number.
enum Tag : std::uint64_t { kQuietFrame = 0, kFrame = 1, kEntry = 2 };
// What an entry that is no frame holds.
enum Entry : std::uint64_t { kStart = 0, kAnswer = 1, kCheckpoint = 2, kRequest = 3 };
// Of the beginning.
enum Trait : std::uint8_t { kHasSeed = 1, kHasConsole = 2 };

constexpr std::uint8_t kTypeBits = 7, kIsDown = 16, kIsExact = 64;
constexpr int kSpaceShift = 4;
// Types from 8 on are all written alike: 8 in the head's low bits, the type's lowest three bits below it and the rest above it, then which
// fields are not 0, and these.
constexpr std::uint8_t kIsNewer = 8;
constexpr int kFirstNewer = 8, kLastType = static_cast<int>(kLastInputType);
enum Present : std::uint8_t { kHasCode = 1, kHasValue = 2, kHasX = 4, kHasY = 8, kHasText = 16, kHasSpace = 32 };
constexpr double kFineness = 32768;  // coordinates that are so fine are written as whole numbers

std::uint32_t crc(std::uint32_t before, std::string_view bytes) { return files::crc32_of(before, bytes.data(), bytes.size()); }

// One coordinate: 0 and a real, or the whole number of its fineness, folded, plus 1.
void put_coordinate(std::string& out, double value) {
  const double fine = value * kFineness;
  const bool is_whole = std::fabs(fine) < 1e15 && fine == std::floor(fine) && (fine != 0 || !std::signbit(value));
  put_number(out, is_whole ? fold(static_cast<std::int64_t>(fine)) + 1 : 0);
  if (!is_whole) put_fixed(out, bit_cast<std::uint64_t>(value), 8);
}

void put_newer_event(std::string& out, const InputEvent& input) {
  const int type = static_cast<int>(input.type) - kFirstNewer;
  out += static_cast<char>(kIsNewer | (type & kTypeBits) | (type >> 3 << 4));
  const bool has_x = bit_cast<std::uint64_t>(input.x) != 0, has_y = bit_cast<std::uint64_t>(input.y) != 0;
  const bool has_space = input.space != PointerSpace::kWindow;
  out += static_cast<char>((input.code != 0 ? kHasCode : 0) | (input.value != 0 ? kHasValue : 0) | (has_x ? kHasX : 0) |
                           (has_y ? kHasY : 0) | (input.text.empty() ? 0 : kHasText) | (has_space ? kHasSpace : 0));
  if (input.code != 0) put_signed(out, input.code);
  if (input.value != 0) put_signed(out, input.value);
  if (has_x) put_coordinate(out, input.x);
  if (has_y) put_coordinate(out, input.y);
  if (!input.text.empty()) put_text(out, input.text);
  if (has_space) out += static_cast<char>(input.space);
}

class Decoder {
 public:
  Decoder(std::string_view bytes, Recording& into) : bytes_(bytes), in_(bytes), to_(into) {}

  bool beginning(std::string& problem) {
    problem = "the recording is cut off inside its beginning";
    if (bytes_.size() < kMagic.size() && kMagic.starts_with(bytes_) && !bytes_.empty()) return false;
    if (!bytes_.starts_with(kMagic.substr(0, kMagic.size() - 1))) return problem = "this is no recording", false;
    if (const char version = bytes_[kMagic.size() - 1]; version < kFirstVersion || version > kMagic.back())
      return problem = "the recording is of another version of the format", false;
    for (std::size_t i = 0; i < kMagic.size(); ++i) in_.byte();
    Beginning& read = to_.beginning;
    read.game = in_.text();
    read.version = in_.text();
    read.data_hash = static_cast<std::uint32_t>(in_.fixed(4));
    read.room = in_.text();
    const std::uint8_t traits = in_.byte();
    read.has_seed = (traits & kHasSeed) != 0;
    read.has_console = (traits & kHasConsole) != 0;
    read.seed = in_.fixed(8);
    const std::uint32_t expected = crc(0, bytes_.substr(0, in_.position()));
    const std::uint64_t found = in_.fixed(4);
    if (!in_.is_good()) return false;
    problem = found == expected ? "" : "the recording is damaged at its beginning";
    checked_ = in_.position();
    return problem.empty();
  }

  void entries() {
    while (!in_.is_at_end()) {
      if (entry()) continue;
      // What ends early was being written; what is wrong in the middle is damage.
      if (!in_.has_run_out()) note_damage();
      break;
    }
  }

 private:
  // Takes nothing over of an entry that is not whole.
  bool entry() {
    const std::uint64_t head = in_.number();
    switch (head & 3) {
      case kQuietFrame:
      case kFrame: return frame(unfold(head >> 2), (head & 3) == kFrame);
      case kEntry: break;
      default: return false;
    }
    switch (head >> 2) {
      case kStart: return to_.frames.empty() && events(to_.start.input);
      case kAnswer: return answer();
      case kCheckpoint: return checkpoint();
      case kRequest: return request();
      default: return false;
    }
  }

  bool request() {
    std::string line = in_.text();
    if (in_.is_good()) to_.add_request(std::move(line));
    return in_.is_good();
  }

  bool frame(std::int64_t longer, bool has_input) {
    if (longer > kLongestFrame || longer < -kLongestFrame) return false;
    const std::int64_t microseconds = microseconds_ + longer;
    if (microseconds < 0 || microseconds > kLongestFrame) return false;
    std::vector<InputEvent> input;
    if (has_input && !events(input)) return false;
    if (!in_.is_good()) return false;
    microseconds_ = microseconds;
    to_.add_frame(microseconds, std::move(input));
    return true;
  }

  bool events(std::vector<InputEvent>& into) {
    const std::uint64_t count = in_.number();
    std::vector<InputEvent> read;
    for (std::uint64_t i = 0; i < count && in_.is_good(); ++i) {
      read.emplace_back();
      if (!event(read.back())) return false;
    }
    if (!in_.is_good()) return false;
    into = std::move(read);
    return true;
  }

  bool event(InputEvent& read) {
    using Type = InputEvent::Type;
    const std::uint8_t head = in_.byte();
    if ((head & kIsNewer) != 0) return newer_event(head, read);
    read.type = static_cast<Type>(head & kTypeBits);
    switch (read.type) {
      case Type::kKey:
      case Type::kButton:
      case Type::kFocus:
        read.value = (head & kIsDown) != 0 ? 1 : 0;
        if (read.type != Type::kFocus) read.code = in_.whole();
        break;
      case Type::kPointer:
        if ((head >> kSpaceShift & 3) > static_cast<int>(PointerSpace::kGui)) return false;
        read.space = static_cast<PointerSpace>(head >> kSpaceShift & 3);
        if ((head & kIsExact) != 0) {
          read.x = in_.real();
          read.y = in_.real();
        } else {
          read.x = pointer_x_ + in_.whole();
          read.y = pointer_y_ + in_.whole();
        }
        pointer_x_ = read.x;
        pointer_y_ = read.y;
        break;
      case Type::kText: read.text = in_.text(); break;
      case Type::kKeyLabel:
        read.code = in_.whole();
        read.text = in_.text();
        break;
      case Type::kWindowSize:
        read.code = in_.whole();
        read.value = in_.whole();
        break;
      case Type::kWheel: read.code = in_.whole(); break;
      default: return false;
    }
    return in_.is_good();
  }

  bool newer_event(std::uint8_t head, InputEvent& read) {
    const int type = kFirstNewer + (head & kTypeBits) + (head >> 4 << 3);
    if (type > kLastType) return false;
    read.type = static_cast<InputEvent::Type>(type);
    const std::uint8_t present = in_.byte();
    if (present >= kHasSpace << 1) return false;
    if ((present & kHasCode) != 0) read.code = in_.whole();
    if ((present & kHasValue) != 0) read.value = in_.whole();
    if ((present & kHasX) != 0) read.x = coordinate();
    if ((present & kHasY) != 0) read.y = coordinate();
    if ((present & kHasText) != 0) read.text = in_.text();
    if ((present & kHasSpace) != 0) {
      const std::uint8_t space = in_.byte();
      if (space > static_cast<int>(PointerSpace::kGui)) return false;
      read.space = static_cast<PointerSpace>(space);
    }
    return in_.is_good();
  }
  double coordinate() {
    const std::uint64_t whole = in_.number();
    return whole == 0 ? in_.real() : static_cast<double>(unfold(whole - 1)) / kFineness;
  }

  bool answer() {
    std::string text = in_.text();
    if (in_.is_good()) to_.add_answer(std::move(text));
    return in_.is_good();
  }

  bool checkpoint() {
    Checkpoint read;
    read.hash = in_.fixed(8);
    std::vector<Checkpoint::Figure> parts = parts_;
    for (std::uint64_t left = in_.number(); left > 0 && in_.is_good(); --left) {
      const std::uint64_t place = in_.number();
      if (place > parts.size()) return false;
      if (place == parts.size()) parts.push_back({in_.text(), 0});
      parts[static_cast<std::size_t>(place)].hash = static_cast<std::uint16_t>(in_.fixed(2));
    }
    const std::size_t end = in_.position();
    const std::uint64_t found = in_.fixed(4);
    if (!in_.is_good()) return false;
    if (found != crc(0, bytes_.substr(checked_, end - checked_))) return false;
    checked_ = in_.position();
    parts_ = std::move(parts);
    for (const Checkpoint::Figure& part : parts_) {
      if (part.hash != 0) read.figures.push_back(part);
    }
    to_.add_checkpoint(std::move(read));
    return true;
  }

  // Nothing since the last checkpoint can be trusted.
  void note_damage() {
    const std::size_t trusted = to_.checkpoints.empty() ? 0 : to_.checkpoints.back().frames;
    to_.frames.resize(trusted);
    to_.last_requests.clear();
    to_.last_answers.clear();
    to_.damage =
        "the recording is damaged in second " + std::to_string(to_.checkpoints.size() + 1) + ", behind frame " + std::to_string(trusted);
  }

  std::string_view bytes_;
  Reader in_;
  Recording& to_;
  std::int64_t microseconds_ = 0;
  double pointer_x_ = 0, pointer_y_ = 0;
  std::size_t checked_ = 0;  // where the bytes begin that the next checkpoint vouches for
  std::vector<Checkpoint::Figure> parts_;
};

}  // namespace

// 0: the part shows nothing.
std::uint16_t short_figure(std::uint64_t hash, int bits) {
  const std::uint16_t low = static_cast<std::uint16_t>(hash & ((1u << bits) - 1));
  return low == 0 ? std::uint16_t{1} : low;
}

Checkpoint checkpoint_of(std::size_t frames, const std::vector<host::StateFigure>& figures, int bits) {
  Checkpoint made;
  made.frames = frames;
  made.hash = host::hash_of(figures);
  for (const host::StateFigure& figure : figures) {
    made.figures.push_back({figure.name, short_figure(figure.hash, bits)});
  }
  return made;
}

void Recording::add_request(std::string line) { last_requests.push_back(std::move(line)); }

void Recording::add_frame(std::int64_t microseconds, std::vector<InputEvent> input) {
  frames.push_back({microseconds, std::exchange(last_requests, {}), std::move(input), std::exchange(last_answers, {})});
}

void Recording::add_answer(std::string text) {
  if (!last_requests.empty()) {
    last_answers.push_back(std::move(text));
  } else {
    (frames.empty() ? start : frames.back()).answers.push_back(std::move(text));
  }
}

void Recording::add_checkpoint(Checkpoint made) {
  made.frames = frames.size();
  made.requests = last_requests.size();
  checkpoints.push_back(std::move(made));
}

bool Recording::breaks_off() const { return damage.empty() && (checkpoints.empty() || checkpoints.back().frames != frames.size()); }

std::string Writer::passed(std::string piece) {
  checksum_ = crc(checksum_, piece);
  return piece;
}

std::string Writer::beginning(const Beginning& of) {
  std::string out(kMagic);
  put_text(out, of.game);
  put_text(out, of.version);
  put_fixed(out, of.data_hash, 4);
  put_text(out, of.room);
  out += static_cast<char>((of.has_seed ? kHasSeed : 0) | (of.has_console ? kHasConsole : 0));
  put_fixed(out, of.seed, 8);
  put_fixed(out, crc(0, out), 4);
  return out;
}

std::string Writer::start(const std::vector<InputEvent>& input) {
  std::string out;
  put_number(out, kStart << 2 | kEntry);
  put_number(out, input.size());
  for (const InputEvent& each : input) event(out, each);
  return passed(std::move(out));
}

std::string Writer::frame(std::int64_t microseconds, const std::vector<InputEvent>& input) {
  std::string out;
  put_number(out, fold(microseconds - microseconds_) << 2 | (input.empty() ? kQuietFrame : kFrame));
  microseconds_ = microseconds;
  if (!input.empty()) put_number(out, input.size());
  for (const InputEvent& each : input) event(out, each);
  return passed(std::move(out));
}

void Writer::event(std::string& out, const InputEvent& input) {
  using Type = InputEvent::Type;
  std::uint8_t head = static_cast<std::uint8_t>(input.type);
  switch (input.type) {
    case Type::kKey:
    case Type::kButton:
    case Type::kFocus:
      out += static_cast<char>(input.value != 0 ? head | kIsDown : head);
      if (input.type != Type::kFocus) put_signed(out, input.code);
      break;
    case Type::kPointer: {
      std::int64_t right = 0, down = 0;
      const bool is_near = steps_between(pointer_x_, input.x, right) && steps_between(pointer_y_, input.y, down);
      head = static_cast<std::uint8_t>(head | static_cast<int>(input.space) << kSpaceShift | (is_near ? 0 : kIsExact));
      out += static_cast<char>(head);
      if (is_near) {
        put_signed(out, right);
        put_signed(out, down);
      } else {
        put_fixed(out, bit_cast<std::uint64_t>(input.x), 8);
        put_fixed(out, bit_cast<std::uint64_t>(input.y), 8);
      }
      pointer_x_ = input.x;
      pointer_y_ = input.y;
      break;
    }
    case Type::kText:
      out += static_cast<char>(head);
      put_text(out, input.text);
      break;
    case Type::kKeyLabel:
      out += static_cast<char>(head);
      put_signed(out, input.code);
      put_text(out, input.text);
      break;
    case Type::kWindowSize:
      out += static_cast<char>(head);
      put_signed(out, input.code);
      put_signed(out, input.value);
      break;
    case Type::kWheel:
      out += static_cast<char>(head);
      put_signed(out, input.code);
      break;
    default: put_newer_event(out, input); break;
  }
}

std::string Writer::request(const std::string& line) {
  std::string out;
  put_number(out, kRequest << 2 | kEntry);
  put_text(out, line);
  return passed(std::move(out));
}

std::string Writer::answer(const std::string& text) {
  std::string out;
  put_number(out, kAnswer << 2 | kEntry);
  put_text(out, text);
  return passed(std::move(out));
}

std::string Writer::checkpoint(const Checkpoint& of) {
  std::string changes;
  std::uint64_t changed = 0;
  std::vector<bool> is_there(parts_.size(), false);
  const auto write = [&](std::size_t place, std::uint16_t hash) {
    ++changed;
    put_number(changes, place);
    if (place == parts_.size() - 1 && place >= is_there.size()) put_text(changes, parts_[place].part);
    put_fixed(changes, hash, 2);
    parts_[place].hash = hash;
  };
  for (const Checkpoint::Figure& figure : of.figures) {
    const auto found = std::find_if(parts_.begin(), parts_.end(), [&](const Checkpoint::Figure& part) { return part.part == figure.part; });
    const std::size_t place = static_cast<std::size_t>(found - parts_.begin());
    if (found == parts_.end()) {
      parts_.push_back({figure.part, 0});
      write(place, figure.hash);
    } else {
      if (place < is_there.size()) is_there[place] = true;
      if (found->hash != figure.hash) write(place, figure.hash);
    }
  }
  for (std::size_t place = 0; place < is_there.size(); ++place) {
    if (!is_there[place] && parts_[place].hash != 0) write(place, 0);
  }
  std::string out;
  put_number(out, kCheckpoint << 2 | kEntry);
  put_fixed(out, of.hash, 8);
  put_number(out, changed);
  out += changes;
  out = passed(std::move(out));
  put_fixed(out, checksum_, 4);
  checksum_ = 0;
  return out;
}

bool read_recording(std::string_view bytes, Recording& into, std::string& problem) {
  into = {};
  if (is_recording_text(bytes)) return read_recording_text(bytes, into, problem);
  Decoder decoder(bytes, into);
  if (!decoder.beginning(problem)) return false;
  decoder.entries();
  return true;
}

bool open_recording(const std::string& path, Recording& into, std::string& problem) {
  const auto fail = [&](const std::string& what) {
    problem = files::on_one_line(path + ": " + what);
    return false;
  };
  const std::filesystem::path file = files::path_of(path);
  std::error_code failure;
  if (!std::filesystem::is_regular_file(file, failure)) return fail("the recording cannot be read");
  if (std::filesystem::file_size(file, failure) > kLargestFile || failure) return fail("the recording is too large");
  std::ifstream stream(file, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (!stream) return fail("the recording cannot be read");
  return read_recording(bytes, into, problem) || fail(problem);
}

}  // namespace arena::recording
