#include "tests/support/golden.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

#include "engine/audio/audio.h"
#include "engine/host/state_hash.h"

namespace arena::test {
namespace {

constexpr int kEvery = 60;  // frames between two lines
constexpr const char* kNothing = "..";

void add(std::uint64_t& hash, std::uint64_t bits) {
  hash = (hash ^ bits) * 0x9E3779B97F4A7C15u;
  hash ^= hash >> 29;
}
// To the last bit; but compilers may differ in the sign of a zero.
void add(std::uint64_t& hash, float number) { add(hash, std::uint64_t{std::bit_cast<std::uint32_t>(number == 0 ? 0.0f : number)}); }
void add(std::uint64_t& hash, double number) { add(hash, std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number)); }
void add(std::uint64_t& hash, int number) { add(hash, static_cast<std::uint64_t>(number)); }

void add(std::uint64_t& hash, const gpu::RecordedDraw& draw) {
  add(hash, std::uint64_t{draw.texture});
  add(hash, static_cast<int>(draw.state.blend));
  add(hash, draw.state.field_pixels);
  for (const int each : {draw.state.clip.x, draw.state.clip.y, draw.state.clip.width, draw.state.clip.height}) add(hash, each);
  const gpu::Transform& transform = draw.transform;
  for (const float each : {transform.a, transform.b, transform.c, transform.d, transform.e, transform.f}) add(hash, each);
  add(hash, std::uint64_t{draw.vertex_count});
  for (const gpu::Vertex& vertex : draw.vertices) {
    for (const float each : {vertex.x, vertex.y, vertex.u, vertex.v, vertex.paint}) add(hash, each);
    add(hash, std::uint64_t{vertex.color});
  }
}

void add(std::uint64_t& hash, const audio::Voice& voice) {
  for (const int each : {voice.handle, voice.sound, voice.group}) add(hash, each);
  for (const bool each : {voice.loop, voice.is_paused, voice.is_positional}) add(hash, int{each});
  for (const double each :
       {voice.gain, voice.pitch, voice.priority, voice.x, voice.y, voice.z, voice.reference, voice.maximum, voice.factor, voice.offset})
    add(hash, each);
}

std::string hexadecimal(std::uint64_t hash, int digits) {
  std::string text;
  for (int i = 0; i < digits; ++i, hash >>= 4) text += "0123456789abcdef"[hash & 15];
  return text;
}

std::string path_of(const std::string& scenario) { return std::string(ARENA_SOURCE) + "/tests/golden/" + scenario + ".txt"; }

}  // namespace

GoldenRun::GoldenRun(const std::string& scenario, gpu::Recorder& recorder)
    : scenario_(scenario), path_(path_of(scenario)), recorder_(recorder), is_written_anew_(std::getenv("ARENA_WRITE_GOLDEN") != nullptr) {
  recorder_.keeps_vertices = true;
  audio::audio().take_started();
  if (!is_written_anew_) read();
}

// First the names of the parts, one a line, then the frames:  "60 0a1b2c3d 0a1b2c3d 0a1b2c3d 00..1122"
void GoldenRun::read() {
  std::ifstream file(path_);
  std::vector<std::string> names;
  for (std::string text; std::getline(file, text);) {
    if (text.starts_with("part ")) {
      names.push_back(text.substr(5));
      continue;
    }
    std::istringstream words(text);
    Line line;
    std::string digits;
    words >> line.frame >> line.state >> line.drawing >> line.sounds >> digits;
    for (std::size_t i = 0; i < names.size() && 2 * i + 2 <= digits.size(); ++i) {
      if (digits.compare(2 * i, 2, kNothing) != 0) line.parts[names[i]] = digits.substr(2 * i, 2);
    }
    expected_.push_back(std::move(line));
  }
}

void GoldenRun::write() const {
  std::set<std::string> names;
  for (const Line& line : lines_) {
    for (const auto& [name, digits] : line.parts) names.insert(name);
  }
  std::ofstream file(path_);
  for (const std::string& name : names) file << "part " << name << '\n';
  for (const Line& line : lines_) {
    file << line.frame << ' ' << line.state << ' ' << line.drawing << ' ' << line.sounds << ' ';
    for (const std::string& name : names) file << (line.parts.contains(name) ? line.parts.at(name) : kNothing);
    file << '\n';
  }
  file.close();
  EXPECT_TRUE(file) << path_ << " cannot be written";
}

void GoldenRun::frame() {
  add(drawing_, std::uint64_t{recorder_.clear_color});
  add(drawing_, std::uint64_t{recorder_.draws.size()});
  for (const gpu::RecordedDraw& draw : recorder_.draws) add(drawing_, draw);
  for (const audio::Voice& voice : audio::audio().take_started()) add(sounds_, voice);
  if (++frames_ % kEvery == 0) add_line();
}

void GoldenRun::add_line() {
  for (const audio::Voice& voice : audio::audio().voices()) add(sounds_, voice);
  Line line;
  line.frame = frames_;
  for (const host::StateFigure& figure : host::state_figures()) line.parts[figure.name] = hexadecimal(figure.hash, 2);
  line.state = hexadecimal(host::state_hash(), 8);
  line.drawing = hexadecimal(drawing_, 8);
  line.sounds = hexadecimal(sounds_, 8);
  drawing_ = sounds_ = 0;
  if (!is_written_anew_ && !has_failed_) compare(line);
  lines_.push_back(std::move(line));
}

void GoldenRun::compare(const Line& now) {
  const std::size_t place = lines_.size();
  if (place >= expected_.size() || expected_[place].frame != now.frame) {
    has_failed_ = true;
    ADD_FAILURE() << "golden run " << scenario_ << ": " << path_ << " has no line for frame " << now.frame;
    return;
  }
  const Line& then = expected_[place];
  std::string different;
  if (now.state != then.state) {
    std::string parts;
    const auto differ = [](const Line& one, const Line& other, const std::string& name) {
      return !one.parts.contains(name) || !other.parts.contains(name) || one.parts.at(name) != other.parts.at(name);
    };
    for (const auto& [name, digits] : now.parts) {
      if (differ(now, then, name)) parts += (parts.empty() ? "" : ", ") + name;
    }
    for (const auto& [name, digits] : then.parts) {
      if (!now.parts.contains(name)) parts += (parts.empty() ? "" : ", ") + name + " (shows nothing)";
    }
    different += "\n  the state: " + (parts.empty() ? "no part's two digits tell where" : parts);
  }
  if (now.drawing != then.drawing) different += "\n  the drawing calls";
  if (now.sounds != then.sounds) different += "\n  the sounds";
  if (different.empty()) return;
  has_failed_ = true;
  ADD_FAILURE() << "golden run " << scenario_ << ", frame " << now.frame << ", the first that differs; what does:" << different
                << "\nIf that is wanted: tests/golden/write, and a commit of its own with the reason.";
}

void GoldenRun::finish() {
  if (frames_ % kEvery != 0) add_line();
  if (is_written_anew_) {
    write();
  } else if (!has_failed_) {
    EXPECT_EQ(lines_.size(), expected_.size()) << "golden run " << scenario_ << ": so many lines, but " << path_ << " has another number";
  }
}

}  // namespace arena::test
