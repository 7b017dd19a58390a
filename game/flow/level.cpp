// The arena's run: the player in the middle, a gun beside, and enemies streaming in from all sides, faster as time goes by.
#include "game/combat/names.h"
#include "game/enemies/pickups.h"
#include "game/support/camera.h"

namespace arena::game {
extern const Script<void(Real at_x, Real at_y, Value object)> spawnMob;
namespace {
const Variable spawn_timer{"spawn_timer"}, spawn_interval{"spawn_interval"}, pistol{"pistol"};
constexpr Real kFirstSpawn = 2;       // seconds of peace
constexpr Real kSlowest = 1.2;        // seconds between two enemies at first
constexpr Real kFastest = 0.25;       // and in the end
constexpr Real kHastening = 0.985;    // each interval is so much of the one before: the end is reached after some 100 enemies
constexpr Real kSpawnDistance = 900;  // pixels from the player: just outside the view
constexpr Real kMostEnemies = 150;
constexpr Real kEdge = 80;  // pixels from the border that enemies keep when they appear
}  // namespace
}  // namespace arena::game

SCRIPT(spawnMob, Real at_x, Real at_y, Value object) { instance_create_layer(at_x, at_y, "layMobs", object); }

EVENT(oLevel1, Create_0) {
  instance_create_layer(room_width / 2, room_height / 2, "layPlayer", oPlayer);
  getTarnCamera()[setPosition](oPlayer[x], oPlayer[y]);
  createGunPickup(room_width / 2, room_height / 2 - 100, global[weapons][pistol]);
  self[spawn_timer] = kFirstSpawn;
  self[spawn_interval] = kSlowest;
}

EVENT(oLevel1, Step_0) {
  self[spawn_timer] -= global[dt_steady];
  if (self[spawn_timer] > 0) return;
  self[spawn_interval] = max(self[spawn_interval] * kHastening, kFastest);
  self[spawn_timer] = self[spawn_interval];
  if (Real(instance_number(oParentEnemy)) >= kMostEnemies || !instance_exists(oPlayer)) return;
  const Real around = random(360);
  const Real at_x = clamp(oPlayer[x] + lengthdir_x(kSpawnDistance, around), kEdge, room_width - kEdge);
  const Real at_y = clamp(oPlayer[y] + lengthdir_y(kSpawnDistance, around), kEdge, room_height - kEdge);
  spawnMob(at_x, at_y, oEnemy);
}
