#pragma once
// One live object of an object type: its built-in variables as plain fields, the rest in its row.
//
// Always true: from instance_destroy on, `is_alive` is false and nothing finds the instance any more; whoever holds it may still read
// it until the collector recycles it. An instance that sleeps is not `is_alive` either, so that every pass over the living leaves it out.
#include <array>
#include <tuple>

#include "runtime/arrays_structs/object.h"
#include "runtime/session/state.h"

namespace arena {

struct ObjectType;

inline constexpr int kAlarms = 12;

class CInstance final : public PropertyObject {
 public:
  CInstance() : PropertyObject(ObjectKind::kInstance) {}
  std::int32_t as_number() const override { return id; }
  std::string_view called() const override;  // the name of its object

  // Pixels and pixels a frame; angles in degrees, counter-clockwise on a screen whose y axis points down.
  // The position stands in one cache line, with what its readers ask next.
  alignas(64) double x = 0;
  double y = 0, xprevious = 0, yprevious = 0;
  ObjectType* type = nullptr;
  std::int32_t id = 0;
  bool is_alive = true;       // takes part: false once destroyed, and while asleep
  bool is_asleep = false;     // there, found by its id, and nothing else (world.h)
  std::int16_t kept_in = -1;  // asleep with the persistent room that was left; -1: not
  double image_angle = 0, sprite_index = -1;
  double xstart = 0, ystart = 0;
  double hspeed = 0, vspeed = 0, speed = 0, direction = 0, friction = 0, gravity = 0, gravity_direction = 270;
  double image_index = 0, image_speed = 1, image_xscale = 1, image_yscale = 1, image_alpha = 1;
  double image_blend = 0xFFFFFF;  // blue, green, red from the high byte down
  double mask_index = -1;
  double depth = 0;                                                                      // greater is further away: drawn earlier
  double layer = -1;                                                                     // id of its layer, or -1
  double visible = 1, solid = 0, persistent = 0;                                         // truths; read as bool
  std::array<double, kAlarms> alarm = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};  // frames left; -1: off

  static constexpr std::size_t kFieldsBegin = (sizeof(PropertyObject) + 63) / 64 * 64;
  static constexpr auto fields() {
    return std::tuple(field("x", &CInstance::x), field("y", &CInstance::y), field("xprevious", &CInstance::xprevious),
                      field("yprevious", &CInstance::yprevious), derived("type", &CInstance::type), derived("id", &CInstance::id),
                      field("is_alive", &CInstance::is_alive), derived("is_asleep", &CInstance::is_asleep),
                      derived("kept_in", &CInstance::kept_in), field("image_angle", &CInstance::image_angle),
                      field("sprite_index", &CInstance::sprite_index), field("xstart", &CInstance::xstart),
                      field("ystart", &CInstance::ystart), field("hspeed", &CInstance::hspeed), field("vspeed", &CInstance::vspeed),
                      field("speed", &CInstance::speed), field("direction", &CInstance::direction), field("friction", &CInstance::friction),
                      field("gravity", &CInstance::gravity), field("gravity_direction", &CInstance::gravity_direction),
                      field("image_index", &CInstance::image_index), field("image_speed", &CInstance::image_speed),
                      field("image_xscale", &CInstance::image_xscale), field("image_yscale", &CInstance::image_yscale),
                      field("image_alpha", &CInstance::image_alpha), field("image_blend", &CInstance::image_blend),
                      field("mask_index", &CInstance::mask_index), field("depth", &CInstance::depth), field("layer", &CInstance::layer),
                      field("visible", &CInstance::visible), field("solid", &CInstance::solid), field("persistent", &CInstance::persistent),
                      field("alarm", &CInstance::alarm));
  }
};

}  // namespace arena
