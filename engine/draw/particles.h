#pragma once
// Particles: many small short-lived pictures that fly, fade, turn and end, some leaving others behind. Updated and drawn natively; types
// and emitters are described by scripts. All chance comes from the generator for visual effects: whether and how much is drawn changes
// nothing in the game.
#include <array>
#include <cstdint>
#include <tuple>
#include <vector>

#include "engine/draw/draw.h"

namespace arena::draw {

struct Range {
  double low = 0, high = 0;
  static constexpr auto fields() { return std::tuple(field("low", &Range::low), field("high", &Range::high)); }
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
  std::array<std::uint32_t, 3> colors = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
  std::array<double, 3> alphas = {1, 1, 0};
  std::int32_t trail_type = -1;  // left behind on the way, so many a second
  double trail_rate = 0;
  std::int32_t end_type = -1;  // born where it ends
  std::int32_t end_count = 0;
  static constexpr auto fields() {
    return std::tuple(
        field("sprite", &ParticleType::sprite), field("frame", &ParticleType::frame), field("life", &ParticleType::life),
        field("size", &ParticleType::size), field("speed", &ParticleType::speed), field("direction", &ParticleType::direction),
        field("angle", &ParticleType::angle), field("spin", &ParticleType::spin), field("size_end", &ParticleType::size_end),
        field("drag", &ParticleType::drag), field("turn", &ParticleType::turn), field("gravity", &ParticleType::gravity),
        field("gravity_direction", &ParticleType::gravity_direction), field("follows_direction", &ParticleType::follows_direction),
        field("adds", &ParticleType::adds), field("colors", &ParticleType::colors), field("alphas", &ParticleType::alphas),
        field("trail_type", &ParticleType::trail_type), field("trail_rate", &ParticleType::trail_rate),
        field("end_type", &ParticleType::end_type), field("end_count", &ParticleType::end_count));
  }
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
  static constexpr auto fields() {
    return std::tuple(field("particles", &ParticleSystem::particles_), derived("born", &ParticleSystem::born_));
  }

 private:
  struct Particle {
    float x, y, vx, vy, age, life, size, angle, spin, trail;
    std::int32_t type;
    static constexpr auto fields() {
      return std::tuple(field("x", &Particle::x), field("y", &Particle::y), field("vx", &Particle::vx), field("vy", &Particle::vy),
                        field("age", &Particle::age), field("life", &Particle::life), field("size", &Particle::size),
                        field("angle", &Particle::angle), field("spin", &Particle::spin), field("trail", &Particle::trail),
                        field("type", &Particle::type));
    }
  };
  void spawn(const ParticleType& type, std::int32_t index, double x, double y);
  std::vector<Particle> particles_;
  std::vector<Particle> born_;
};

}  // namespace arena::draw
