#include "engine/recording/recording_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "engine/formats/utf8.h"
#include "engine/recording/bytes.h"
#include "runtime/values/bit_cast.h"
#include "runtime/values/number_text.h"

namespace arena::recording {
namespace {

using Type = InputEvent::Type;

constexpr std::string_view kMagic = "recording of ";
constexpr std::size_t kMostFrames = 3'000'000;  // half a day of play
constexpr const char* kNothing = "..";          // in place of two digits
constexpr std::pair<PointerSpace, std::string_view> kSpaces[] = {
    {PointerSpace::kWindow, "window"}, {PointerSpace::kRoom, "room"}, {PointerSpace::kGui, "gui"}};

// What stands behind the word of an event. Those that are not here are written with all that they have.
struct EventRow {
  Type type;
  std::string_view word;
  bool has_code, has_value, has_text;
};
constexpr EventRow kEvents[] = {{Type::kKey, "key", true, true, false},         {Type::kButton, "button", true, true, false},
                                {Type::kText, "text", false, false, true},      {Type::kFocus, "focus", false, true, false},
                                {Type::kWindowSize, "size", true, true, false}, {Type::kWheel, "wheel", true, false, false},
                                {Type::kKeyLabel, "letter", true, false, true}};

std::string hexadecimal(std::uint64_t number, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += "0123456789abcdef"[number >> shift & 15];
  return text;
}

// On one line, and readable: what is no text is written as the numbers of its bytes.
std::string escaped(std::string_view text) {
  const bool is_text = formats::is_utf8(text);
  std::string made;
  for (const char each : text) {
    const auto byte = static_cast<unsigned char>(each);
    if (each == '\n') {
      made += "\\n";
    } else if (each == '\r') {
      made += "\\r";
    } else if (each == '\\') {
      made += "\\\\";
    } else if (byte < 0x20 || byte == 0x7F || (byte >= 0x80 && !is_text)) {
      made += "\\x" + hexadecimal(byte, 2);
    } else {
      made += each;
    }
  }
  return made;
}

std::string real(double number) {
  return std::isfinite(number) ? real_to_exact_text(number) : "#" + hexadecimal(bit_cast<std::uint64_t>(number), 16);
}

// The words of a line, one after the other; what is missing or no number spoils them.
class Words {
 public:
  explicit Words(std::string_view line) : line_(line) {}
  bool are_good() const { return is_good_; }
  bool are_read() const { return is_good_ && line_.empty(); }
  std::string_view rest() { return std::exchange(line_, {}); }
  std::string_view word() {
    const std::size_t end = std::min(line_.find(' '), line_.size());
    const std::string_view found = line_.substr(0, end);
    line_.remove_prefix(std::min(end + 1, line_.size()));
    if (found.empty()) is_good_ = false;
    return found;
  }
  template <class Number>
  Number whole(int base = 10) {
    Number number = 0;
    const std::string_view text = word();
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc() || end != text.data() + text.size()) is_good_ = false;
    return is_good_ ? number : 0;
  }
  double real() {
    if (line_.starts_with('#')) {
      line_.remove_prefix(1);
      return bit_cast<double>(whole<std::uint64_t>(16));
    }
    const std::optional<double> number = parse_real(word());
    if (!number.has_value()) is_good_ = false;
    return number.value_or(0);
  }
  PointerSpace space() {
    const std::string_view name = word();
    for (const auto& [space, text] : kSpaces) {
      if (text == name) return space;
    }
    is_good_ = false;
    return {};
  }
  std::string unescaped() {
    std::string made;
    const std::string_view text = rest();
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '\\') {
        made += text[i];
        continue;
      }
      const char next = ++i < text.size() ? text[i] : ' ';
      if (next == 'x') {
        std::uint8_t byte = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (digits.size() != 2 || error != std::errc() || end != digits.data() + 2) is_good_ = false;
        made += static_cast<char>(byte);
        i += 2;
        continue;
      }
      if (next != 'n' && next != 'r' && next != '\\') is_good_ = false;
      made += next == 'n' ? '\n' : next == 'r' ? '\r' : '\\';
    }
    return made;
  }

 private:
  std::string_view line_;
  bool is_good_ = true;
};

class TextReader {
 public:
  explicit TextReader(Recording& into) : to_(into) { to_.figure_bits = kFigureBitsOfText; }

  bool has_begun() const { return has_begun_; }
  bool take(std::string_view line) {
    if (line.empty() || line.starts_with('#')) return true;
    Words words(line);
    const std::string_view word = words.word();
    return (has_begun_ ? run_line(word, words) : beginning_line(word, words)) && words.are_read();
  }

 private:
  bool beginning_line(std::string_view word, Words& words) {
    Beginning& read = to_.beginning;
    if (word == "recording") return words.word() == "of" && !(read.game = words.rest()).empty();
    if (word == "version") return !(read.version = words.rest()).empty();
    if (word == "room") return !(read.room = words.rest()).empty();
    if (word == "data") return read.data_hash = words.whole<std::uint32_t>(16), true;
    if (word == "seed") return read.has_seed = true, read.seed = words.whole<std::uint64_t>(), true;
    if (word == "console") return read.has_console = true;
    if (word == "begin") return to_.start.input.swap(input_), has_begun_ = true;
    return event(word, words);
  }

  bool run_line(std::string_view word, Words& words) {
    if (word == "go") return event("move", words) && words.are_read() && frames(1);
    if (word == "frames") {
      const std::size_t count = words.whole<std::size_t>();
      return words.are_read() && frames(count);
    }
    if (word == "length") {
      microseconds_ = words.whole<std::int64_t>();
      return microseconds_ >= 0 && microseconds_ <= kLongestFrame;
    }
    if (word == "ask") return to_.add_request(std::string(words.rest())), true;
    if (word == "answer") return to_.add_answer(words.unescaped()), true;
    if (word == "part") return parts_.emplace_back(words.rest()), true;
    if (word == "is") return checkpoint(words);
    return event(word, words);
  }

  // What entered belongs to the first of them.
  bool frames(std::size_t count) {
    if (count == 0 || count > kMostFrames || to_.frames.size() + count > kMostFrames) return false;
    for (; count > 0; --count) to_.add_frame(microseconds_, std::exchange(input_, {}));
    return true;
  }

  bool event(std::string_view word, Words& words) {
    InputEvent read;
    const auto row = std::find_if(std::begin(kEvents), std::end(kEvents), [&](const EventRow& each) { return each.word == word; });
    if (row != std::end(kEvents)) {
      read.type = row->type;
      if (row->has_code) read.code = words.whole<std::int32_t>();
      if (row->has_value) read.value = words.whole<std::int32_t>();
      if (row->has_text) read.text = words.unescaped();
    } else if (word == "pointer" || word == "move") {
      read.type = Type::kPointer;
      read.space = word == "pointer" ? words.space() : space_;
      read.x = word == "pointer" ? words.real() : pointer_x_ + words.whole<std::int32_t>();
      read.y = word == "pointer" ? words.real() : pointer_y_ + words.whole<std::int32_t>();
      space_ = read.space;
      pointer_x_ = read.x;
      pointer_y_ = read.y;
    } else if (word == "event") {
      const auto type = words.whole<std::uint8_t>();
      if (type > static_cast<std::uint8_t>(kLastInputType)) return false;
      read.type = static_cast<Type>(type);
      read.code = words.whole<std::int32_t>();
      read.value = words.whole<std::int32_t>();
      read.space = words.space();
      read.x = words.real();
      read.y = words.real();
      read.text = words.unescaped();
    } else {
      return false;
    }
    input_.push_back(std::move(read));
    return words.are_good();
  }

  bool checkpoint(Words& words) {
    Checkpoint read;
    read.hash = words.whole<std::uint64_t>(16);
    Witnessed shown;
    std::size_t known = 0;
    for (std::uint32_t* const each : {&shown.drawing, &shown.sounds, &shown.replies}) {
      const std::string_view digits = words.word();
      const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), *each, 16);
      if (error == std::errc() && end == digits.data() + digits.size())
        ++known;
      else if (digits != "-")
        return false;
    }
    if (known == 3) read.shown = shown;
    const std::string_view digits = words.rest();
    if (digits.size() != 2 * parts_.size()) return false;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      const std::string_view two = digits.substr(2 * i, 2);
      if (two == kNothing) continue;
      std::uint16_t hash = 0;
      if (std::from_chars(two.data(), two.data() + 2, hash, 16).ptr != two.data() + 2) return false;
      read.figures.push_back({parts_[i], hash});
    }
    to_.add_checkpoint(std::move(read));
    return true;
  }

  Recording& to_;
  std::vector<InputEvent> input_;  // of the frame to come
  std::int64_t microseconds_ = 0;
  double pointer_x_ = 0, pointer_y_ = 0;
  PointerSpace space_ = PointerSpace::kWindow;
  std::vector<std::string> parts_;
  bool has_begun_ = false;
};

}  // namespace

std::string TextWriter::line(const std::string& text) {
  std::string made;
  if (quiet_frames_ > 0) made = "frames " + std::to_string(std::exchange(quiet_frames_, 0)) + "\n";
  return made + text + "\n";
}

std::string TextWriter::beginning(const Beginning& of) {
  std::string made = std::string(kMagic) + of.game + "\n";
  if (!of.version.empty()) made += "version " + of.version + "\n";
  if (of.data_hash != 0) made += "data " + hexadecimal(of.data_hash, 8) + "\n";
  if (!of.room.empty()) made += "room " + of.room + "\n";
  if (of.has_seed) made += "seed " + std::to_string(of.seed) + "\n";
  if (of.has_console) made += "console\n";
  return made;
}

std::string TextWriter::start(const std::vector<InputEvent>& input) {
  std::string made;
  for (const InputEvent& each : input) made += event(each);
  return made + line("begin");
}

std::string TextWriter::request(const std::string& request) { return line("ask " + request); }
std::string TextWriter::answer(const std::string& text) { return line("answer " + escaped(text)); }

std::string TextWriter::frame(std::int64_t microseconds, const std::vector<InputEvent>& input) {
  std::string made;
  if (std::exchange(microseconds_, microseconds) != microseconds) made += line("length " + std::to_string(microseconds));
  if (input.size() == 1 && input.front().type == Type::kPointer) {
    if (const std::string by = steps(input.front()); !by.empty()) return note_pointer(input.front()), made + line("go " + by);
  }
  for (const InputEvent& each : input) made += event(each);
  ++quiet_frames_;
  return made;
}

std::string TextWriter::steps(const InputEvent& to) const {
  std::int64_t right = 0, down = 0;
  if (to.space != space_ || !steps_between(pointer_x_, to.x, right) || !steps_between(pointer_y_, to.y, down)) return "";
  return std::to_string(right) + " " + std::to_string(down);
}

void TextWriter::note_pointer(const InputEvent& input) {
  space_ = input.space;
  pointer_x_ = input.x;
  pointer_y_ = input.y;
}

std::string TextWriter::pointer(const InputEvent& input) {
  const std::string by = steps(input);
  note_pointer(input);
  if (!by.empty()) return line("move " + by);
  return line("pointer " + std::string(kSpaces[static_cast<int>(input.space)].second) + " " + real(input.x) + " " + real(input.y));
}

std::string TextWriter::event(const InputEvent& input) {
  if (input.type == Type::kPointer) return pointer(input);
  const auto row = std::find_if(std::begin(kEvents), std::end(kEvents), [&](const EventRow& each) { return each.type == input.type; });
  const std::string code = " " + std::to_string(input.code), value = " " + std::to_string(input.value), text = " " + escaped(input.text);
  if (row == std::end(kEvents)) {
    return line("event " + std::to_string(static_cast<int>(input.type)) + code + value + " " +
                std::string(kSpaces[static_cast<int>(input.space)].second) + " " + real(input.x) + " " + real(input.y) + text);
  }
  return line(std::string(row->word) + (row->has_code ? code : "") + (row->has_value ? value : "") + (row->has_text ? text : ""));
}

std::string TextWriter::checkpoint(const Checkpoint& of) {
  std::string made;
  for (const Checkpoint::Figure& figure : of.figures) {
    if (std::find(parts_.begin(), parts_.end(), figure.part) != parts_.end()) continue;
    parts_.push_back(figure.part);
    made += line("part " + figure.part);
  }
  std::string text = "is " + hexadecimal(of.hash, 16);
  const Witnessed shown = of.shown.value_or(Witnessed());
  for (const std::uint32_t each : {shown.drawing, shown.sounds, shown.replies})
    text += of.shown.has_value() ? " " + hexadecimal(each, 8) : " -";
  text += " ";
  for (const std::string& part : parts_) {
    const auto found =
        std::find_if(of.figures.begin(), of.figures.end(), [&](const Checkpoint::Figure& figure) { return figure.part == part; });
    text += found != of.figures.end() ? hexadecimal(found->hash, 2) : kNothing;
  }
  return made + line(text);
}

bool is_recording_text(std::string_view bytes) { return bytes.starts_with(kMagic); }

bool read_recording_text(std::string_view text, Recording& into, std::string& problem) {
  TextReader reader(into);
  std::size_t number = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) break;
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    text.remove_prefix(end + 1);
    ++number;
    if (reader.take(line)) continue;
    problem = "line " + std::to_string(number) + " of the recording cannot be read";
    if (!reader.has_begun()) return false;
    into.damage = problem;
    break;
  }
  if (!reader.has_begun()) problem = "the recording is cut off inside its beginning";
  return reader.has_begun();
}

}  // namespace arena::recording
