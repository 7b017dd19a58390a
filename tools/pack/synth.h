#pragma once
// Sounds from recipes: a few voices, each a wave with a gliding pitch and an envelope.
#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

namespace pack {

inline constexpr int kSampleRate = 44100;

// { "voices": [{ "wave": "sine|square|saw|triangle|noise", "from": Hz, "to": Hz, "start": s, "seconds": s, "attack": s,
//   "curve": decay exponent, "lowpass": Hz, "volume": 0..1 }], "peak": 0..1 }. The same recipe gives the same samples everywhere.
std::vector<std::int16_t> synthesize(const nlohmann::ordered_json& recipe);

}  // namespace pack
