#pragma once
// The 31 usual easings: how far something has come when a share of its time has passed.
#include <string_view>

namespace game {

// "linear", or in, out or inOut before Quad, Cubic, Quart, Quint, Sine, Expo, Circ, Back, Elastic or Bounce: "outBack". `t` is the share of
// time, 0 to 1; 0 gives 0 and 1 gives 1, in between Back and Elastic overshoot. An unknown name is linear.
double ease(std::string_view name, double t);
bool is_easing(std::string_view name);

}  // namespace game
