#pragma once
// Music from ABC notation, rendered while packing: abc2midi and fluidsynth with the small General MIDI set of sounds.
#include <cstdint>
#include <string>
#include <vector>

namespace pack {

inline constexpr int kMusicRate = 22050;

// Mono samples, scaled to `peak` (0 to 1), silence at the end left out. The result is kept in `cache` by the content of the source.
std::vector<std::int16_t> render_music(const std::string& path, double peak, const std::string& cache);

}  // namespace pack
