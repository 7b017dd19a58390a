// The arena's director: it runs the wave clock, brings the enemies in, and offers a reward when a wave was cleared early.
#include "game/combat/names.h"
#include "game/flow/reward.h"
#include "game/loot/pickups.h"
#include "game/support/camera.h"
#include "game/support/warnings.h"

namespace game {
extern const Script<void(Value at_x, Value at_y, Value object)> spawnMob;
namespace {

const Variable wave_timer{"wave_timer"}, wave_time{"wave_time"}, wave_count{"wave_count"}, omega_cannon{"omega_cannon"};
const Variable warned_of_mobs{"warned_of_mobs"};

constexpr Real kBreath = 5;          // seconds: the first wave comes so late, and each one whose predecessor was cleared early
constexpr Real kFirstWave = 60;      // seconds that a wave is given
constexpr Real kLongerBy = 10;       // and how many more the next one gets
constexpr Real kMobsPerWave = 4;     // times the number of the wave
constexpr Real kMostMobs = 20000;    // in one wave: a tenth of what the world holds
constexpr int kBossEvery = 10;       // waves
constexpr Real kWavesPerRarity = 2;  // the rarity of rewards rises by one in so many waves
constexpr Real kGreatestRarity = 5;
constexpr Real kSpawnOffset = 500;  // pixels
constexpr Real kGiftAbove = 100;    // pixels

// Both coordinates are drawn from the width, and nothing keeps them inside the room.
Real somewhere() { return irandom(room_width) + kSpawnOffset; }
void spawn(const ObjectName& object) {
  const Real at_x = somewhere(), at_y = somewhere();
  spawnMob(at_x, at_y, object);
}

}  // namespace
}  // namespace game

SCRIPT(spawnMob, Value at_x, Value at_y, Value object) { instance_create_layer(at_x, at_y, "layMobs", object); }

EVENT(oLevel1, Create_0) {
  instance_create_layer(room_width / 2, room_height / 2, "layPlayer", oPlayer);
  getTarnCamera()[setPosition](oPlayer[x], oPlayer[y]);
  self[wave_timer] = kBreath;
  self[wave_time] = kFirstWave;
  self[wave_count] = 0;
  self[wave_pause] = false;
  // The strongest weapon lies there as a gift.
  createGunPickup(room_width / 2, room_height / 2 - kGiftAbove, global[weapons][omega_cannon]);
  self[reward_screen] = -1;
  self[closeRewardScreen] = bind(self, oLevel1_closeRewardScreen);
  self[createReward] = bind(self, oLevel1_createReward);
}

EVENT(oLevel1, Step_0) {
  if (!self[wave_pause]) self[wave_timer] -= global[dt_steady];
  if (instance_number(oParentEnemy) <= 0 && self[wave_timer] > kBreath) {
    self[wave_timer] = kBreath;
    self[createReward](min(ceil(self[wave_count] / kWavesPerRarity), kGreatestRarity));
  }
  if (self[wave_timer] > 0) return;
  self[wave_count] += 1;
  if (self[wave_count] % kBossEvery == 0) {
    moment_mark(string_of("boss wave {0}", self[wave_count]));
    spawn(oEnemyBoss);
  } else {
    moment_mark(string_of("wave {0}", self[wave_count]));
    const Real mobs = self[wave_count] * kMobsPerWave;
    if (mobs > kMostMobs) warn_once(warned_of_mobs, "a wave brings at most 20000 enemies: the rest stay away");
    for (Real i = 0; i < min(mobs, kMostMobs); i += 1) spawn(oEnemy);
  }
  self[wave_timer] = self[wave_time];
  self[wave_time] += kLongerBy;
}
