#pragma once
// A scripted particle system, over the engine's own.
//
//   Value sparks = advanced_part_type.make(struct_of({{sprite, sprSpark}, {life, array_of(0.2, 0.5)}, {speed, array_of(50, 400)}, ...}));
//   Value system = advanced_part_system.make();
//   system[burst](sparks, 20, x, y);
//   Value smoke = advanced_part_emitter.make(system, struct_of({{type, smoke_type}, {rate, 30}, {shape, 3}, {x1, ...}, ...}));
//   ... every Step: system[update](); every Draw: system[draw]();
//
// Fields of a type: sprite, image, life, size, size_end, speed, direction, angle, spin (numbers, or [low, high]), drag, turn, gravity,
// gravity_direction, follows_direction, additive, color and alpha (one, [start, end] or [start, middle, end]), trail_type with trail_rate,
// end_type with end_count. Seconds, pixels, degrees.
#include "toolkit/names.h"

namespace game {

extern const Constructor advanced_part_system;
extern const Constructor advanced_part_type;
extern const Constructor advanced_part_emitter;  // (system, settings): type, rate a second, shape, x1, y1, x2, y2, active

namespace particles {
inline constexpr int kPoint = 0, kLine = 1, kRectangle = 2, kEllipse = 3;  // shapes
}

}  // namespace game
