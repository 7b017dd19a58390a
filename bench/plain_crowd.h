#pragma once
// The crowd's rules in plain C++ structs: what a programmer would write without a runtime. The yardstick of the benches.
#include <vector>

namespace bench {

struct PlainEnemy {
  double x = 0, y = 0, hp = 100, knockback_x = 0, knockback_y = 0, bob_timer = 0, image_y_offset = 0, image_angle = 0;
};

class PlainCrowd {
 public:
  explicit PlainCrowd(std::vector<PlainEnemy> enemies) : enemies_(std::move(enemies)), cells_(kCells * kCells) {}
  void step(double player_x, double player_y, double dt);
  const std::vector<PlainEnemy>& enemies() const { return enemies_; }

 private:
  static constexpr int kCells = 100;
  void fill_grid();
  void step_one(int index, double player_x, double player_y, double dt);
  std::vector<PlainEnemy> enemies_;
  std::vector<std::vector<int>> cells_;
};

}  // namespace bench
