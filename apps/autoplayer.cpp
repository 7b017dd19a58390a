#include "apps/autoplayer.h"

#include <cmath>

#include "runtime/instances_loop/input_state.h"
#include "runtime/instances_loop/world.h"

namespace arena::apps {
namespace {

constexpr double kComfort = 420;  // pixels: enemies closer than this are walked away from
constexpr double kDanger = 150;   // pixels: closer than this a dash is worth its energy
constexpr double kWall = 350;     // pixels from the border where the way back to the middle counts
constexpr int kKeyShift = 16, kKeySpace = 32, kKeyE = 'E';

const CInstance* first_of(const char* object) {
  const std::int32_t index = object_types().find(object);
  if (index < 0) return nullptr;
  for (const CInstance* each : object_types().at(index).instances) {
    if (each->is_alive) return each;
  }
  return nullptr;
}

const CInstance* nearest_of(const char* object, double x, double y) {
  const std::int32_t index = object_types().find(object);
  const CInstance* nearest = nullptr;
  double best = 0;
  for (const CInstance* each : object_types().at(index).instances) {
    const double distance = std::hypot(each->x - x, each->y - y);
    if (!each->is_alive || (nearest != nullptr && distance >= best)) continue;
    nearest = each;
    best = distance;
  }
  return nearest;
}

}  // namespace

void Autoplayer::hold(int key, bool down) {
  if (held_[key] == down) return;
  held_[key] = down;
  push_key(key, down);
}

void Autoplayer::play() {
  hold(kKeySpace, first_of("oDeathScreen") != nullptr && !held_[kKeySpace]);
  const CInstance* player = first_of("oPlayer");
  if (player == nullptr) return;
  const bool has_gun = first_of("oGun") != nullptr;
  const CInstance* pickup = has_gun ? nullptr : nearest_of("oGunPickup", player->x, player->y);
  const CInstance* enemy = nearest_of("oParentEnemy", player->x, player->y);

  // Away from everybody near, back from the walls, towards a gun when the hands are empty.
  double push_x = 0, push_y = 0, closest = 1e9;
  for (const CInstance* each : object_types().at(object_types().find("oParentEnemy")).instances) {
    const double dx = player->x - each->x, dy = player->y - each->y, distance = std::hypot(dx, dy);
    if (!each->is_alive || distance > kComfort || distance == 0) continue;
    closest = std::fmin(closest, distance);
    const double weight = (kComfort - distance) / kComfort;
    push_x += dx / distance * weight;
    push_y += dy / distance * weight;
  }
  if (player->x < kWall) push_x += 1.5;
  if (player->y < kWall) push_y += 1.5;
  if (player->x > world().room_width - kWall) push_x -= 1.5;
  if (player->y > world().room_height - kWall) push_y -= 1.5;
  if (pickup != nullptr) {
    push_x += (pickup->x - player->x) / 100;
    push_y += (pickup->y - player->y) / 100;
  }
  hold('A', push_x < -0.15);
  hold('D', push_x > 0.15);
  hold('W', push_y < -0.15);
  hold('S', push_y > 0.15);
  hold(kKeyShift, closest < kDanger && !held_[kKeyShift]);
  hold(kKeyE, pickup != nullptr && !held_[kKeyE]);

  if (enemy != nullptr) push_pointer(PointerSpace::kRoom, enemy->x, enemy->y);
  const bool fire = enemy != nullptr && has_gun;
  if (fire != fires_) push_button(1, fire);
  fires_ = fire;
}

}  // namespace arena::apps
