#include "bench/fight.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "engine/draw/stickers.h"
#include "game/combat/names.h"
#include "game/decals/stickers.h"
#include "game/flow/reward.h"
#include "runtime/instances_loop/frame_loop.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/instances_loop/world.h"
#include "runtime/variables_calls/resolve.h"

namespace bench {
namespace {

using namespace arena;

constexpr int kSettling = 180;  // frames: droplets come and go at the same rate, generations and caches are warm

struct Fight {
  const char* name;
  int enemies, projectiles, decals, hits;
  double mean, worst;  // required milliseconds; the worst is the 99th percentile
};

class FightScene {
 public:
  explicit FightScene(const Fight& fight) : fight_(fight) {
    world().enter_room(1);
    using namespace game;
    oLevel1[wave_pause] = true;  // no waves of its own
    for (int i = 0; i < fight.enemies; ++i) add_enemy();
    for (int i = 0; i < fight.projectiles; ++i) bullets_.push_back(add_bullet());
    const Value layer = global[decals];
    for (int i = 0; i < fight.decals; ++i) layer[Add](sprSplatSmall, i % 6, i * 37 % 3500, i * 91 % 3500, 1, 1, i, 255);
  }

  // What happens before a frame: nobody dies by accident, bullets that were spent are replaced, and so many hits fall.
  void prepare() {
    using namespace game;
    oPlayer[x] = 1800;
    oPlayer[y] = 1800;
    oPlayer[hp] = 1e15;
    for (std::size_t i = 0; i < bullets_.size(); ++i) {
      if (world().find(bullets_[i]) == nullptr) bullets_[i] = add_bullet();
    }
    const std::vector<CInstance*>& all = object_types().at(object_types().find("oEnemy")).instances;
    for (int i = 0; i < fight_.hits; ++i) {
      CInstance* victim = all[next_random() % all.size()];
      if (!victim->is_alive) continue;
      Instance struck(victim);
      struck[takeDamage](8, victim->x - 10, victim->y, 0);
      if (!victim->is_alive) add_enemy();
    }
  }

 private:
  std::uint32_t next_random() { return random_ = random_ * 1664525u + 1013904223u, random_ >> 8; }
  double somewhere(int from, int to) { return from + static_cast<int>(next_random() % static_cast<std::uint32_t>(to - from)); }
  // Around the player, on the floor of the arena.
  void add_enemy() {
    using namespace game;
    instance_create_layer(somewhere(0, 3600), somewhere(0, 3600), "layMobs", oEnemy);
  }
  // In flight beside the crowd, where it meets nobody; all of it takes part in the search for collisions.
  std::int32_t add_bullet() {
    using namespace game;
    const Instance bullet = instance_create_layer(somewhere(5000, 6500), somewhere(0, 3600), "layBullets", oBulletProjectile);
    bullet[h_speed] = somewhere(-200, 200);
    bullet[v_speed] = somewhere(-200, 200);
    bullet[lifetime] = 2 + somewhere(0, 100) / 50;
    return bullet.pointer()->id;
  }

  const Fight& fight_;
  std::vector<std::int32_t> bullets_;
  std::uint32_t random_ = 5;
};

double at_share(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

void run_one(host::Game& game, const Fight& fight, int frames, double scale) {
  FightScene scene(fight);
  std::vector<double> totals;
  StageTimes sum{};
  double pause = 0, droplets = 0;
  for (int i = 0; i < frames + kSettling; ++i) {
    scene.prepare();
    game.run_frame(16667);
    if (i < kSettling) continue;
    const StageTimes& times = last_stage_times();
    totals.push_back(times[Stage::kMainloopProcess] / 1000);
    pause = std::max(pause, times.collection / 1000);
    droplets += static_cast<double>(object_types().at(object_types().find("oBlood")).live_count) / frames;
    for (int stage = 0; stage < kStages; ++stage) sum.stages[stage] += times.stages[stage];
  }
  double mean = 0;
  for (const double total : totals) mean += total / static_cast<double>(totals.size());
  std::printf("%-8s %8.2f %8.2f %8.2f %8.2f %8.2f %8.2f %9.0f", fight.name, mean, fight.mean * scale, at_share(totals, 0.99),
              fight.worst * scale, pause, 1.0, droplets);
  std::printf("\n");
  for (int stage = 0; stage < kStages; ++stage) {
    std::printf("  %-26s %6.1f%%\n", std::string(kStageNames[stage]).c_str(), sum.stages[stage] / sum[Stage::kMainloopProcess] * 100);
  }
}

}  // namespace

void run_fights(host::Game& game, int frames, double scale) {
  const Fight fights[] = {{"arena", 2000, 2000, 50000, 0, 4, 6}, {"heavy", 5000, 10000, 0, 20, 16.6, 16.6}};
  std::printf("\nWhole frames in ms; the required times are those of a machine that is %.2f times as fast.\n", scale);
  std::printf("%-8s %8s %8s %8s %8s %8s %8s %9s\n", "fight", "mean", "required", "99th", "required", "pause", "required", "droplets");
  const FrameScope frame("bench", global_object(), nullptr);
  for (const Fight& fight : fights) run_one(game, fight, frames, scale);
}

}  // namespace bench
