#include "tools/pack/synth.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "runtime/values/elementary.h"

namespace pack {
namespace {

namespace maths = arena::elementary;

struct Voice {
  std::string wave;
  double from, to, start, seconds, attack, curve, lowpass, volume;
};

Voice read_voice(const nlohmann::ordered_json& json) {
  Voice voice{json.value("wave", std::string("sine")),
              json.value("from", 440.0),
              0,
              json.value("start", 0.0),
              json.value("seconds", 0.2),
              json.value("attack", 0.002),
              json.value("curve", 3.0),
              json.value("lowpass", 20000.0),
              json.value("volume", 1.0)};
  voice.to = json.value("to", voice.from);
  return voice;
}

// A wave's value at a phase counted in turns.
double shape(const std::string& wave, double phase, std::uint32_t& noise) {
  const double turn = phase - std::floor(phase);
  if (wave == "sine") return maths::sin(turn * 2 * maths::kPi);
  if (wave == "square") return turn < 0.5 ? 1 : -1;
  if (wave == "saw") return 2 * turn - 1;
  if (wave == "triangle") return 1 - 4 * std::fabs(turn - 0.5);
  if (wave != "noise") throw std::runtime_error("unknown wave '" + wave + "'");
  noise = noise * 1664525u + 1013904223u;
  return static_cast<double>(noise >> 8) / 8388608.0 - 1;
}

void add_voice(const Voice& voice, std::vector<double>& mix) {
  const std::size_t first = static_cast<std::size_t>(voice.start * kSampleRate),
                    count = static_cast<std::size_t>(voice.seconds * kSampleRate);
  if (mix.size() < first + count) mix.resize(first + count);
  const double smoothing = 1 - maths::exp(-2 * maths::kPi * voice.lowpass / kSampleRate);
  std::uint32_t noise = 12345;
  double phase = 0, filtered = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double seconds = static_cast<double>(i) / kSampleRate, progress = seconds / voice.seconds;
    phase += voice.from * maths::pow(voice.to / voice.from, progress) / kSampleRate;
    const double rise = voice.attack > 0 ? std::min(1.0, seconds / voice.attack) : 1;
    const double envelope = rise * maths::exp(-voice.curve * progress) * std::min(1.0, (1 - progress) * 20);
    filtered += smoothing * (shape(voice.wave, phase, noise) - filtered);
    mix[first + i] += filtered * envelope * voice.volume;
  }
}

}  // namespace

std::vector<std::int16_t> synthesize(const nlohmann::ordered_json& recipe) {
  std::vector<double> mix;
  for (const auto& voice : recipe.at("voices")) add_voice(read_voice(voice), mix);
  double loudest = 1e-9;
  for (const double sample : mix) loudest = std::max(loudest, std::fabs(sample));
  const double scale = recipe.value("peak", 0.8) * 32767 / loudest;
  std::vector<std::int16_t> samples;
  for (const double sample : mix) samples.push_back(static_cast<std::int16_t>(std::lround(sample * scale)));
  return samples;
}

}  // namespace pack
