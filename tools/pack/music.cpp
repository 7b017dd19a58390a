#include "tools/pack/music.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tools/pack/images.h"

namespace pack {
namespace {

constexpr const char* kSounds = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr int kSilence = 24;  // of 32768: quieter samples at the end are left out

void run(const std::string& command, const std::string& what) {
  if (std::system(command.c_str()) != 0) throw std::runtime_error(what + " failed: " + command);
}

// The samples of a 16-bit stereo WAV file, both sides together.
std::vector<double> read_wave(const std::string& path) {
  const std::string bytes = read_text(path);
  const std::size_t data = bytes.find("data");
  if (bytes.compare(0, 4, "RIFF") != 0 || data == std::string::npos) throw std::runtime_error(path + " is no WAV file");
  std::vector<double> samples;
  for (std::size_t at = data + 8; at + 4 <= bytes.size(); at += 4) {
    std::int16_t sides[2];
    std::memcpy(sides, bytes.data() + at, 4);
    samples.push_back((sides[0] + sides[1]) / 2.0);
  }
  return samples;
}

}  // namespace

std::vector<std::int16_t> render_music(const std::string& path, double peak, const std::string& cache) {
  const std::string kept = cache + "/" + content_hash(read_text(path) + std::to_string(kMusicRate)) + ".wav";
  if (!std::filesystem::exists(kept)) {
    const std::string midi = kept + ".mid", fresh = kept + ".new";
    run("abc2midi '" + path + "' -o '" + midi + "' >/dev/null 2>&1", "abc2midi");
    run("fluidsynth -ni -q -g 0.6 -R 0 -C 0 -r " + std::to_string(kMusicRate) + " -T wav -F '" + fresh + "' '" + kSounds + "' '" + midi +
            "' >/dev/null 2>&1",
        "fluidsynth");
    std::filesystem::remove(midi);
    std::filesystem::rename(fresh, kept);
  }
  std::vector<double> samples = read_wave(kept);
  while (!samples.empty() && samples.back() < kSilence && samples.back() > -kSilence) samples.pop_back();
  double loudest = 1;
  for (const double sample : samples) loudest = std::max(loudest, std::max(sample, -sample));
  std::vector<std::int16_t> made;
  made.reserve(samples.size());
  for (const double sample : samples) made.push_back(static_cast<std::int16_t>(sample / loudest * peak * 32767));
  return made;
}

}  // namespace pack
