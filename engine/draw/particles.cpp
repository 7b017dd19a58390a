#define ARENA_DEFINES_BUILTINS

#include "engine/draw/particles.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "engine/draw/colors.h"
#include "engine/draw/draw_service.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/particles.h"
#include "runtime/checks/assert.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/program/names.h"
#include "runtime/session/state.h"
#include "runtime/values/elementary.h"
#include "runtime/values/number_text.h"
#include "runtime/values/refs.h"

namespace arena::draw {
namespace {

constexpr double kDegree = elementary::kPi / 180.0;

double pick(const Range& range) { return range.low + visual_random().unit() * (range.high - range.low); }

}  // namespace

void ParticleSystem::spawn(const ParticleType& type, std::int32_t index, double x, double y) {
  const double speed = pick(type.speed), direction = pick(type.direction) * kDegree;
  Particle made{};
  made.x = static_cast<float>(x);
  made.y = static_cast<float>(y);
  made.vx = static_cast<float>(elementary::cos(direction) * speed);
  made.vy = static_cast<float>(-elementary::sin(direction) * speed);
  made.life = static_cast<float>(std::max(1e-3, pick(type.life)));
  made.size = static_cast<float>(pick(type.size));
  made.angle = static_cast<float>(pick(type.angle));
  made.spin = static_cast<float>(pick(type.spin));
  made.type = index;
  born_.push_back(made);
}

void ParticleSystem::emit(const std::vector<ParticleType>& types, std::int32_t type, std::int32_t count, EmitShape shape, double x1,
                          double y1, double x2, double y2) {
  if (type < 0 || static_cast<std::size_t>(type) >= types.size()) return;
  const std::size_t room = kMost - std::min(kMost, particles_.size());
  for (std::size_t i = 0; i < std::min(room, static_cast<std::size_t>(std::max(0, count))); ++i) {
    double x = x1, y = y1;
    if (shape == EmitShape::kLine) {
      const double along = visual_random().unit();
      x = x1 + (x2 - x1) * along;
      y = y1 + (y2 - y1) * along;
    } else if (shape == EmitShape::kRectangle) {
      x = x1 + (x2 - x1) * visual_random().unit();
      y = y1 + (y2 - y1) * visual_random().unit();
    } else if (shape == EmitShape::kEllipse) {
      // Evenly over the area: the root of the share of it.
      const double around = visual_random().unit() * 2 * elementary::kPi, out = elementary::sqrt(visual_random().unit());
      x = (x1 + x2) / 2 + elementary::cos(around) * out * (x2 - x1) / 2;
      y = (y1 + y2) / 2 + elementary::sin(around) * out * (y2 - y1) / 2;
    }
    spawn(types[static_cast<std::size_t>(type)], type, x, y);
  }
  particles_.insert(particles_.end(), born_.begin(), born_.end());
  born_.clear();
}

void ParticleSystem::update(const std::vector<ParticleType>& types, double seconds) {
  struct Step {
    float drag, gravity_x, gravity_y, turn_cos, turn_sin;
    bool turns;
  };
  std::vector<Step> steps(types.size());
  for (std::size_t i = 0; i < types.size(); ++i) {
    const ParticleType& type = types[i];
    const double fall = type.gravity_direction * kDegree, turn = type.turn * seconds * kDegree;
    steps[i] = {static_cast<float>(elementary::exp(-type.drag * seconds)),
                static_cast<float>(elementary::cos(fall) * type.gravity * seconds),
                static_cast<float>(-elementary::sin(fall) * type.gravity * seconds),
                static_cast<float>(elementary::cos(turn)),
                static_cast<float>(elementary::sin(turn)),
                type.turn != 0};
  }
  const float dt = static_cast<float>(seconds);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < particles_.size(); ++i) {
    Particle each = particles_[i];
    const auto index = static_cast<std::size_t>(each.type);
    const ParticleType& type = types[index];
    const Step& step = steps[index];
    each.age += dt;
    if (each.age >= each.life) {
      if (type.end_type >= 0 && static_cast<std::size_t>(type.end_type) < types.size()) {
        for (std::int32_t n = 0; n < type.end_count && particles_.size() + born_.size() < kMost; ++n) {
          spawn(types[static_cast<std::size_t>(type.end_type)], type.end_type, static_cast<double>(each.x), static_cast<double>(each.y));
        }
      }
      continue;
    }
    each.vx = each.vx * step.drag + step.gravity_x;
    each.vy = each.vy * step.drag + step.gravity_y;
    if (step.turns) {
      const float vx = each.vx * step.turn_cos + each.vy * step.turn_sin;
      each.vy = each.vy * step.turn_cos - each.vx * step.turn_sin;
      each.vx = vx;
    }
    each.x += each.vx * dt;
    each.y += each.vy * dt;
    each.angle += each.spin * dt;
    if (type.trail_rate > 0 && type.trail_type >= 0 && static_cast<std::size_t>(type.trail_type) < types.size()) {
      each.trail += static_cast<float>(type.trail_rate) * dt;
      for (; each.trail >= 1 && particles_.size() + born_.size() < kMost; each.trail -= 1) {
        spawn(types[static_cast<std::size_t>(type.trail_type)], type.trail_type, static_cast<double>(each.x), static_cast<double>(each.y));
      }
    }
    particles_[kept++] = each;
  }
  particles_.resize(kept);
  particles_.insert(particles_.end(), born_.begin(), born_.end());
  born_.clear();
}

void ParticleSystem::draw(const std::vector<ParticleType>& types, Draw& on) const {
  if (!on.is_seen()) return;
  const gpu::Blend before = on.state().blend;
  Draw::QuadStream stream(on);
  for (const Particle& each : particles_) {
    ARENA_ASSERT(each.type >= 0 && static_cast<std::size_t>(each.type) < types.size());
    const ParticleType& type = types[static_cast<std::size_t>(each.type)];
    const float share = each.age / each.life, half = share < 0.5f ? share * 2 : share * 2 - 1;
    const std::size_t from = share < 0.5f ? 0 : 1;
    const float alpha = static_cast<float>(type.alphas[from]) + static_cast<float>(type.alphas[from + 1] - type.alphas[from]) * half;
    const std::uint32_t one = type.colors[from], two = type.colors[from + 1];
    const float size = each.size * (1 + static_cast<float>(type.size_end - 1) * share);
    double angle = static_cast<double>(each.angle);
    if (type.follows_direction) angle += elementary::atan2(static_cast<double>(-each.vy), static_cast<double>(each.vx)) / kDegree;
    on.state().blend = type.adds ? gpu::Blend::kAdd : gpu::Blend::kNormal;
    stream.add(type.sprite, type.frame, each.x, each.y, size, angle, one == two ? one : mixed(one, two, half), alpha);
  }
  stream.flush();
  on.state().blend = before;
}

namespace {

struct Particles {
  std::vector<ParticleType> types;
  std::map<std::int32_t, ParticleSystem> systems;
  std::int32_t next_system = 1;
  static constexpr auto fields() {
    return std::tuple(field("types", &Particles::types), field("systems", &Particles::systems),
                      field("next_system", &Particles::next_system));
  }
};
const StatePart<Particles> part{PartLevel::kServices, "particles"};
const RefKind system_refs{ref_type::kParticleSystem, "particle system"};
const RefKind type_refs{ref_type::kParticleType, "particle type"};

ParticleSystem* require_system(std::int32_t handle) {
  const auto found = part().systems.find(handle);
  if (found != part().systems.end()) return &found->second;
  report_error(messages::kArgumentHandle, current_builtin_name(), 1, "particle system", handle);
  return nullptr;
}
ParticleType* require_type(std::int32_t handle) {
  if (handle >= 0 && static_cast<std::size_t>(handle) < part().types.size()) return &part().types[static_cast<std::size_t>(handle)];
  report_error(messages::kArgumentHandle, current_builtin_name(), 1, "particle type", handle);
  return nullptr;
}

std::int32_t part_system_create() {
  part().systems[part().next_system];
  return part().next_system++;
}
void part_system_destroy(std::int32_t handle) { part().systems.erase(handle); }
void part_system_clear(std::int32_t handle) {
  if (ParticleSystem* system = require_system(handle)) system->clear();
}
std::int32_t part_system_count(std::int32_t handle) {
  const ParticleSystem* system = require_system(handle);
  return system != nullptr ? static_cast<std::int32_t>(system->count()) : 0;
}
void part_system_update(std::int32_t handle, double seconds) {
  ParticleSystem* system = require_system(handle);
  if (system == nullptr || !(seconds > 0)) return;
  const StageTimer timer(Stage::kParticleSystemUpdate);
  system->update(part().types, std::min(seconds, 1.0));
}
void part_system_draw(std::int32_t handle) {
  const ParticleSystem* system = require_system(handle);
  if (system != nullptr && draw_service() != nullptr) system->draw(part().types, *draw_service());
}
void part_emit(std::int32_t handle, std::int32_t type, std::int32_t count, std::int32_t shape, double x1, double y1, double x2, double y2) {
  ParticleSystem* system = require_system(handle);
  if (system == nullptr) return;
  if (type < 0 || static_cast<std::size_t>(type) >= part().types.size()) {
    report_error(messages::kArgumentHandle, current_builtin_name(), 2, "particle type", type);
    return;
  }
  system->emit(part().types, type, count, static_cast<EmitShape>(std::clamp(shape, 0, 3)), x1, y1, x2, y2);
}
std::int32_t part_type_create() {
  part().types.emplace_back();
  return static_cast<std::int32_t>(part().types.size()) - 1;
}

// A field of the struct: a number, or for ranges and courses an array of two or three. An array that never was one counts as left out.
class Fields {
 public:
  explicit Fields(PropertyObject* from) : from_(from) {}
  const RValue* find(const char* name) const {
    const RValue* found = from_->find_variable(variable_id(name));
    if (found == nullptr || found->is_unset() || found->is_undefined()) return nullptr;
    return found->is_array() && found->array == nullptr ? nullptr : found;
  }
  void read(const char* name, double& into) const {
    if (const RValue* found = find(name)) into = to_real(*found);
  }
  void read(const char* name, std::int32_t& into) const {
    if (const RValue* found = find(name)) into = to_int32(*found);
  }
  void read(const char* name, bool& into) const {
    if (const RValue* found = find(name)) into = to_bool(*found);
  }
  void read(const char* name, Range& into) const {
    const RValue* found = find(name);
    if (found == nullptr) return;
    if (found->is_array() && found->array->length >= 2) {
      into = {to_real(found->array->elements[0]), to_real(found->array->elements[1])};
    } else {
      into.low = into.high = to_real(*found);
    }
  }
  // One value for the whole life, two for start and end, three with the middle.
  template <class T, class Convert>
  void read_course(const char* name, std::array<T, 3>& into, Convert convert) const {
    const RValue* found = find(name);
    if (found == nullptr) return;
    if (!found->is_array()) {
      into[0] = into[1] = into[2] = convert(to_real(*found));
      return;
    }
    const std::int32_t length = found->array->length;
    if (length == 0) return;
    into[0] = convert(to_real(found->array->elements[0]));
    into[2] = convert(to_real(found->array->elements[length - 1]));
    into[1] = length > 2 ? convert(to_real(found->array->elements[1])) : T((into[0] + into[2]) / 2);
  }

 private:
  PropertyObject* from_;
};

void part_type_set(std::int32_t handle, StructArgument description) {
  ParticleType* type = require_type(handle);
  if (type == nullptr) return;
  const Fields fields(description.object);
  fields.read("sprite", type->sprite);
  fields.read("image", type->frame);
  fields.read("life", type->life);
  fields.read("size", type->size);
  fields.read("size_end", type->size_end);
  fields.read("speed", type->speed);
  fields.read("direction", type->direction);
  fields.read("angle", type->angle);
  fields.read("spin", type->spin);
  fields.read("drag", type->drag);
  fields.read("turn", type->turn);
  fields.read("gravity", type->gravity);
  fields.read("gravity_direction", type->gravity_direction);
  fields.read("follows_direction", type->follows_direction);
  fields.read("additive", type->adds);
  const auto to_color = [](double colour) { return static_cast<std::uint32_t>(saturate_int64(colour)) & 0xFFFFFF; };
  fields.read_course("color", type->colors, to_color);
  if (const RValue* color = fields.find("color"); color != nullptr && color->is_array() && color->array->length == 2)
    type->colors[1] = mixed(type->colors[0], type->colors[2], 0.5f);
  fields.read_course("alpha", type->alphas, [](double alpha) { return alpha; });
  fields.read("trail_type", type->trail_type);
  fields.read("trail_rate", type->trail_rate);
  fields.read("end_type", type->end_type);
  fields.read("end_count", type->end_count);
}

constexpr Implementation kRows[] = {
    implement<script::part_system_create, part_system_create>,
    implement<script::part_system_destroy, part_system_destroy>,
    implement<script::part_system_clear, part_system_clear>,
    implement<script::part_system_count, part_system_count>,
    implement<script::part_system_update, part_system_update>,
    implement<script::part_system_draw, part_system_draw>,
    implement<script::part_emit, part_emit>,
    implement<script::part_type_create, part_type_create>,
    implement<script::part_type_set, part_type_set>,
};
const BuiltinTable table("Particles", "Their chance is not the game's.", kRows);

}  // namespace

}  // namespace arena::draw
