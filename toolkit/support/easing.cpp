#include "toolkit/support/easing.h"

#include <algorithm>

#include "runtime/script/intrinsics.h"

namespace game {
namespace {

namespace elementary = arena::elementary;
using elementary::kPi;

constexpr double kOvershoot = 1.70158;  // Back: a tenth beyond the goal

// Four arcs, each lower than the one before: where an arc's middle lies, and its height above the floor.
double bounce_out(double t) {
  constexpr double kSteepness = 7.5625, kSpan = 2.75;
  constexpr struct {
    double until, middle, height;
  } kArcs[] = {{1 / kSpan, 0, 0}, {2 / kSpan, 1.5 / kSpan, 0.75}, {2.5 / kSpan, 2.25 / kSpan, 0.9375}, {2, 2.625 / kSpan, 0.984375}};
  for (const auto& arc : kArcs) {
    if (t < arc.until) return kSteepness * (t - arc.middle) * (t - arc.middle) + arc.height;
  }
  return 1;
}

// Each curve as it accelerates; the other two forms come from it.
struct Curve {
  std::string_view name;
  double (*in)(double t);
};
const Curve kCurves[] = {
    {"Quad", [](double t) { return t * t; }},
    {"Cubic", [](double t) { return t * t * t; }},
    {"Quart", [](double t) { return t * t * t * t; }},
    {"Quint", [](double t) { return t * t * t * t * t; }},
    {"Sine", [](double t) { return 1 - elementary::cos(t * kPi / 2); }},
    {"Expo", [](double t) { return t <= 0 ? 0 : elementary::pow(2, 10 * t - 10); }},
    {"Circ", [](double t) { return 1 - elementary::sqrt(std::max(0.0, 1 - t * t)); }},
    {"Back", [](double t) { return (kOvershoot + 1) * t * t * t - kOvershoot * t * t; }},
    {"Elastic",
     [](double t) { return t <= 0 || t >= 1 ? t : -elementary::pow(2, 10 * t - 10) * elementary::sin((t * 10 - 10.75) * 2 * kPi / 3); }},
    {"Bounce", [](double t) { return 1 - bounce_out(1 - t); }},
};

const Curve* find_curve(std::string_view name) {
  const auto found = std::find_if(std::begin(kCurves), std::end(kCurves), [&](const Curve& curve) { return curve.name == name; });
  return found != std::end(kCurves) ? found : nullptr;
}

// "inOut", "in" or "out" taken off the front; empty for what is no easing.
std::string_view form_of(std::string_view name) {
  for (const std::string_view form : {"inOut", "in", "out"}) {
    if (name.starts_with(form) && find_curve(name.substr(form.size())) != nullptr) return form;
  }
  return {};
}

}  // namespace

bool is_easing(std::string_view name) { return name == "linear" || !form_of(name).empty(); }

double ease(std::string_view name, double t) {
  t = std::clamp(t, 0.0, 1.0);
  const std::string_view form = form_of(name);
  if (form.empty() || t == 0 || t == 1) return t;
  const Curve& curve = *find_curve(name.substr(form.size()));
  if (form == "in") return curve.in(t);
  if (form == "out") return 1 - curve.in(1 - t);
  return t < 0.5 ? curve.in(2 * t) / 2 : 1 - curve.in(2 - 2 * t) / 2;
}

}  // namespace game
