// The mix of a fight, rendered into memory and measured. MIX_FILE=out.raw keeps it: 16-bit stereo at 44,100 a second.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>

#include "engine/audio/openal/openal.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Mix : public ArenaGame {
 protected:
  // Decibels below full scale of what sounds in so many frames, and how many samples hit the ceiling.
  struct Measure {
    double loudness = 0, peak = 0;
    int clipped = 0;
  };
  Measure listen(audio::LoopbackDevice& device, int frames) {
    constexpr int kPerFrame = 735;
    Measure found;
    double sum = 0;
    for (int i = 0; i < frames; ++i) {
      if (i % 30 == 0) eval("with (oEnemy) { takeDamage(8, x - 9, y, 100) } 1");
      step();
      audio::audio().feed(device);
      std::int16_t samples[kPerFrame * 2];
      device.pull(samples, kPerFrame);
      kept_.insert(kept_.end(), samples, samples + kPerFrame * 2);
      for (const std::int16_t sample : samples) {
        sum += static_cast<double>(sample) * sample;
        found.peak = std::max(found.peak, std::fabs(static_cast<double>(sample)));
        found.clipped += sample == 32767 || sample == -32768;
      }
    }
    found.loudness = 20 * std::log10(std::sqrt(sum / (frames * kPerFrame * 2)) / 32768 + 1e-9);
    found.peak = 20 * std::log10(found.peak / 32768 + 1e-9);
    return found;
  }
  void TearDown() override {
    ArenaGame::TearDown();
    if (const char* path = std::getenv("MIX_FILE")) {
      std::ofstream(path, std::ios::binary)
          .write(reinterpret_cast<const char*>(kept_.data()), static_cast<std::streamsize>(kept_.size() * sizeof(std::int16_t)));
    }
  }
  std::vector<std::int16_t> kept_;
};

TEST_F(Mix, AFightIsLouderThanTheMusicAndDoesNotClip) {
  std::string problem;
  const auto device = audio::open_openal_loopback(problem);
  ASSERT_NE(device, nullptr) << problem;
  device->load(audio::audio().clips);
  step(2);
  const Measure quiet = listen(*device, 120);  // music alone

  eval("oLevel1.wave_count = 8; oLevel1.wave_timer = 0; oPlayer.invulnerable = true; oPlayer.invulnerable_timer = 1000");
  step(2);
  eval("with (oEnemy) { x = oPlayer.x + random_range(-600, 600); y = oPlayer.y + random_range(-400, 400); hp = 1000 } 1");
  eval("oPlayer.takeGun(createGunPickup(oPlayer.x, oPlayer.y, global.weapons.smg)); 1");
  ask({{"mouse", {number("oPlayer.x") + 300, number("oPlayer.y")}}});
  ask({{"button", 1}, {"down", true}});
  const Measure loud = listen(*device, 300);
  eval("for_grenades = createGunPickup(oPlayer.x, oPlayer.y, global.weapons.omega_cannon); oPlayer.takeGun(for_grenades); 1");
  const Measure blasts = listen(*device, 300);
  RecordProperty("music_db", std::to_string(quiet.loudness));
  std::printf("music %.1f dB (peak %.1f), shots and hits %.1f dB (peak %.1f), explosions %.1f dB (peak %.1f)\n", quiet.loudness, quiet.peak,
              loud.loudness, loud.peak, blasts.loudness, blasts.peak);
  EXPECT_EQ(quiet.clipped + loud.clipped + blasts.clipped, 0);
  EXPECT_LT(quiet.loudness, -24) << "the music stays behind";
  EXPECT_GT(quiet.loudness, -45) << "and is heard";
  EXPECT_GT(loud.loudness, quiet.loudness + 6);
  EXPECT_LT(loud.loudness, -8);
  EXPECT_LT(blasts.loudness, -8);
}

}  // namespace
}  // namespace arena::test
