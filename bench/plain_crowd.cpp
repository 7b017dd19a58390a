#include "bench/plain_crowd.h"

#include <cmath>

namespace bench {

void PlainCrowd::fill_grid() {
  for (std::vector<int>& cell : cells_) cell.clear();
  for (int i = 0; i < static_cast<int>(enemies_.size()); ++i) {
    const int column = static_cast<int>(std::floor(enemies_[i].x / 40)), row = static_cast<int>(std::floor(enemies_[i].y / 40));
    if (column >= 0 && row >= 0 && column < kCells && row < kCells) cells_[row * kCells + column].push_back(i);
  }
}

void PlainCrowd::step_one(int index, double player_x, double player_y, double dt) {
  PlainEnemy& self = enemies_[index];
  double dir = std::atan2(-(player_y - self.y), player_x - self.x) * 180 / M_PI;
  if (dir < 0) dir += 360;
  const double move_x = 100 * std::cos(dir * M_PI / 180), move_y = -100 * std::sin(dir * M_PI / 180);
  double push_x = 0, push_y = 0;
  const int column = static_cast<int>(std::floor(self.x / 40)), row = static_cast<int>(std::floor(self.y / 40));
  std::vector<int> nearby;
  for (int r = row - 1; r <= row + 1; ++r) {
    for (int c = column - 1; c <= column + 1; ++c) {
      if (r < 0 || c < 0 || r >= kCells || c >= kCells) continue;
      for (const int other : cells_[r * kCells + c]) nearby.push_back(other);
    }
  }
  for (const int other : nearby) {
    if (other == index) continue;
    const double dx = self.x - enemies_[other].x, dy = self.y - enemies_[other].y, d2 = dx * dx + dy * dy;
    if (d2 > 0 && d2 < 64 * 64) {
      const double dist = std::sqrt(d2), force = (1 - dist / 64) * 1000;
      push_x += dx / dist * force;
      push_y += dy / dist * force;
    }
  }
  if (self.knockback_x != 0 || self.knockback_y != 0) {
    const double decay = std::exp(-5 * dt);
    self.knockback_x *= decay;
    self.knockback_y *= decay;
    if (std::sqrt(self.knockback_x * self.knockback_x + self.knockback_y * self.knockback_y) < 1) self.knockback_x = self.knockback_y = 0;
  }
  self.x += (move_x + push_x + self.knockback_x) * dt;
  self.y += (move_y + push_y + self.knockback_y) * dt;
  self.bob_timer += dt * 10;
  self.image_y_offset = std::sin(self.bob_timer) * 4;
  self.image_angle = dir;
}

void PlainCrowd::step(double player_x, double player_y, double dt) {
  fill_grid();
  for (int i = 0; i < static_cast<int>(enemies_.size()); ++i) step_one(i, player_x, player_y, dt);
}

}  // namespace bench
