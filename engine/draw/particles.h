#pragma once
// Particles: many small short-lived pictures that fly, fade, turn and end, some leaving others behind. Updated and drawn natively; types
// and emitters are described by scripts. All chance comes from the generator for visual effects: whether and how much is drawn changes
// nothing in the game.
#include <cstdint>
#include <vector>

#include "engine/draw/draw.h"

namespace arena::draw {

struct Range {
  double low = 0, high = 0;
};

// Times are seconds, lengths pixels, angles degrees. What changes over a life does so in two steps: from the start to the middle, and on
// to the end.
struct ParticleType {
  std::int32_t sprite = -1;
  double frame = 0;
  Range life{1, 1}, size{1, 1}, speed, direction{0, 360}, angle, spin;
  double size_end = 1;  // of the size at birth
  double drag = 0;      // share of the speed lost a second, exponentially
  double turn = 0;      // of the flight, degrees a second
  double gravity = 0, gravity_direction = 270;
  bool follows_direction = false;  // the picture points where it flies
  bool adds = false;               // light instead of paint
  std::uint32_t colors[3] = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
  double alphas[3] = {1, 1, 0};
  std::int32_t trail_type = -1;  // left behind on the way, so many a second
  double trail_rate = 0;
  std::int32_t end_type = -1;  // born where it ends
  std::int32_t end_count = 0;
};

enum class EmitShape : std::uint8_t { kPoint, kLine, kRectangle, kEllipse };

class ParticleSystem {
 public:
  // Born in the box (for a line: from one corner to the other). Past the limit nothing is born.
  void emit(const std::vector<ParticleType>& types, std::int32_t type, std::int32_t count, EmitShape shape, double x1, double y1, double x2,
            double y2);
  void update(const std::vector<ParticleType>& types, double seconds);
  void draw(const std::vector<ParticleType>& types, Draw& on) const;
  void clear() { particles_.clear(); }
  std::size_t count() const { return particles_.size(); }
  static constexpr std::size_t kMost = 100000;

 private:
  struct Particle {
    float x, y, vx, vy, age, life, size, angle, spin, trail;
    std::int32_t type;
  };
  void spawn(const ParticleType& type, std::int32_t index, double x, double y);
  std::vector<Particle> particles_;
  std::vector<Particle> born_;
};

// Frees all systems and types, as a restart does.
void reset_particles();

}  // namespace arena::draw
