#include "runtime/arrays_structs/array.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/collision_shapes.h"
#include "runtime/instances_loop/motion.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/builtin_variable.h"
#include "runtime/values/conversions.h"
#include "runtime/values/number_text.h"
#include "runtime/values/strings.h"
#include "runtime/values/text.h"

namespace arena {
namespace {

template <double CInstance::*field>
RValue get_field(CInstance* self, std::int32_t) {
  return RValue(self->*field);
}
template <double CInstance::*field>
void set_field(CInstance* self, std::int32_t, const RValue& value) {
  self->*field = to_real(value);
}
template <double CInstance::*field, void (*after)(CInstance&)>
void set_field_then(CInstance* self, std::int32_t, const RValue& value) {
  self->*field = to_real(value);
  after(*self);
}
template <double CInstance::*field>
RValue get_truth(CInstance* self, std::int32_t) {
  return RValue::of_bool(self->*field > 0.5);
}
template <double CInstance::*field>
void set_truth(CInstance* self, std::int32_t, const RValue& value) {
  self->*field = to_bool(value) ? 1 : 0;
}

template <double CInstance::*field>
struct Field : BuiltinVariable {
  explicit Field(const char* variable) : BuiltinVariable(variable, true, get_field<field>, set_field<field>) {}
};
template <double CInstance::*field>
struct ReadField : BuiltinVariable {
  explicit ReadField(const char* variable) : BuiltinVariable(variable, true, get_field<field>) {}
};
template <double CInstance::*field>
struct Truth : BuiltinVariable {
  explicit Truth(const char* variable) : BuiltinVariable(variable, true, get_truth<field>, set_truth<field>) {}
};
template <double CInstance::*field, void (*after)(CInstance&)>
struct LinkedField : BuiltinVariable {
  explicit LinkedField(const char* variable) : BuiltinVariable(variable, true, get_field<field>, set_field_then<field, after>) {}
};

// Position, motion and looks
const Field<&CInstance::x> x{"x"};
const Field<&CInstance::y> y{"y"};
const Field<&CInstance::xprevious> xprevious{"xprevious"};
const Field<&CInstance::yprevious> yprevious{"yprevious"};
const Field<&CInstance::xstart> xstart{"xstart"};
const Field<&CInstance::ystart> ystart{"ystart"};
const LinkedField<&CInstance::hspeed, motion_from_components> hspeed{"hspeed"};
const LinkedField<&CInstance::vspeed, motion_from_components> vspeed{"vspeed"};
const LinkedField<&CInstance::speed, motion_from_direction> speed{"speed"};
const LinkedField<&CInstance::direction, motion_from_direction> direction{"direction"};
const Field<&CInstance::friction> friction{"friction"};
const Field<&CInstance::gravity> gravity{"gravity"};
const Field<&CInstance::gravity_direction> gravity_direction{"gravity_direction"};
const Field<&CInstance::image_index> image_index{"image_index"};
const Field<&CInstance::image_speed> image_speed{"image_speed"};
const Field<&CInstance::image_xscale> image_xscale{"image_xscale"};
const Field<&CInstance::image_yscale> image_yscale{"image_yscale"};
const Field<&CInstance::image_angle> image_angle{"image_angle"};
const Field<&CInstance::image_alpha> image_alpha{"image_alpha"};
const Field<&CInstance::image_blend> image_blend{"image_blend"};
const Field<&CInstance::sprite_index> sprite_index{"sprite_index"};
const Field<&CInstance::mask_index> mask_index{"mask_index"};
const Truth<&CInstance::visible> visible{"visible"};
const Truth<&CInstance::solid> solid{"solid"};
const Truth<&CInstance::persistent> persistent{"persistent"};

const BuiltinVariable depth{"depth", true, get_field<&CInstance::depth>, [](CInstance* self, std::int32_t, const RValue& value) {
                              const double before = self->depth;
                              self->depth = orderly_depth(to_real(value));
                              if (self->is_alive && self->depth != before) world().depth_changed(*self, before);
                            }};
const BuiltinVariable layer{"layer", true, get_field<&CInstance::layer>, [](CInstance* self, std::int32_t, const RValue& value) {
                              const Layer* on = world().find_layer(to_int32(value));
                              if (on == nullptr) return;
                              const double before = self->depth;
                              self->layer = on->id;
                              self->depth = on->depth;
                              if (self->is_alive && self->depth != before) world().depth_changed(*self, before);
                            }};

struct AlarmVariable : BuiltinVariable {
  AlarmVariable() : BuiltinVariable("alarm", true, get_alarm, set_alarm) { length = kAlarms; }
  static RValue get_alarm(CInstance* self, std::int32_t index) { return RValue(self->alarm.data()[index]); }
  static void set_alarm(CInstance* self, std::int32_t index, const RValue& value) { self->alarm.data()[index] = to_real(value); }
} alarm;

// What an instance is
const BuiltinVariable id{"id", true, [](CInstance* self, std::int32_t) { return RValue(static_cast<double>(self->id)); }};
const BuiltinVariable object_index{"object_index", true,
                                   [](CInstance* self, std::int32_t) { return RValue(static_cast<double>(self->type->index)); }};

double sprite_measure(CInstance* self, double SpriteInfo::*measure, double scale) {
  const SpriteInfo* sprite = find_sprite(saturate_int32(self->sprite_index));
  return sprite != nullptr ? sprite->*measure * scale : 0;
}
const BuiltinVariable sprite_width{"sprite_width", true, [](CInstance* self, std::int32_t) {
                                     return RValue(sprite_measure(self, &SpriteInfo::width, self->image_xscale));
                                   }};
const BuiltinVariable sprite_height{"sprite_height", true, [](CInstance* self, std::int32_t) {
                                      return RValue(sprite_measure(self, &SpriteInfo::height, self->image_yscale));
                                    }};
const BuiltinVariable sprite_xoffset{"sprite_xoffset", true, [](CInstance* self, std::int32_t) {
                                       return RValue(sprite_measure(self, &SpriteInfo::origin_x, self->image_xscale));
                                     }};
const BuiltinVariable sprite_yoffset{"sprite_yoffset", true, [](CInstance* self, std::int32_t) {
                                       return RValue(sprite_measure(self, &SpriteInfo::origin_y, self->image_yscale));
                                     }};
const BuiltinVariable image_number{"image_number", true, [](CInstance* self, std::int32_t) {
                                     const SpriteInfo* sprite = find_sprite(saturate_int32(self->sprite_index));
                                     return RValue(sprite != nullptr ? static_cast<double>(sprite->frames) : 0.0);
                                   }};
const BuiltinVariable bbox_left{"bbox_left", true, [](CInstance* self, std::int32_t) { return RValue(bounding_box(*self).left); }};
const BuiltinVariable bbox_top{"bbox_top", true, [](CInstance* self, std::int32_t) { return RValue(bounding_box(*self).top); }};
const BuiltinVariable bbox_right{"bbox_right", true, [](CInstance* self, std::int32_t) { return RValue(bounding_box(*self).right); }};
const BuiltinVariable bbox_bottom{"bbox_bottom", true, [](CInstance* self, std::int32_t) { return RValue(bounding_box(*self).bottom); }};

// The world
const BuiltinVariable delta_time{"delta_time", false,
                                 [](CInstance*, std::int32_t) { return RValue(static_cast<double>(game_clock().frame_microseconds)); }};
const BuiltinVariable current_time{
    "current_time", false, [](CInstance*, std::int32_t) { return RValue(static_cast<double>(game_clock().total_microseconds) / 1000.0); }};
const BuiltinVariable fps{
    "fps", false, [](CInstance*, std::int32_t) {
      return RValue(game_clock().frame_microseconds > 0 ? 1e6 / static_cast<double>(game_clock().frame_microseconds) : 0.0);
    }};
const BuiltinVariable mouse_x{"mouse_x", false, [](CInstance*, std::int32_t) { return RValue(pointer_in_room().x); }};
const BuiltinVariable mouse_y{"mouse_y", false, [](CInstance*, std::int32_t) { return RValue(pointer_in_room().y); }};
const BuiltinVariable room{"room", false, [](CInstance*, std::int32_t) { return RValue(static_cast<double>(world().room)); },
                           [](CInstance*, std::int32_t, const RValue& value) {
                             const std::int32_t wanted = to_int32(value);  // an assignment is a room_goto, whoever makes it
                             if (require_room(wanted, "room_goto")) world().room_wanted = wanted;
                           }};
const BuiltinVariable room_width{"room_width", false, [](CInstance*, std::int32_t) { return RValue(world().room_width); }};
const BuiltinVariable room_height{"room_height", false, [](CInstance*, std::int32_t) { return RValue(world().room_height); }};
const BuiltinVariable instance_count{"instance_count", false,
                                     [](CInstance*, std::int32_t) { return RValue(static_cast<double>(world().live_count())); }};
const BuiltinVariable keyboard_lastkey{"keyboard_lastkey", false,
                                       [](CInstance*, std::int32_t) { return RValue(static_cast<double>(input_state().last_key)); }};
const BuiltinVariable keyboard_string{"keyboard_string", false, [](CInstance*, std::int32_t) { return make_string(input_state().typed); },
                                      [](CInstance*, std::int32_t, const RValue& value) { set_typed(to_text(value)); }};

struct ViewCamera : BuiltinVariable {
  ViewCamera() : BuiltinVariable("view_camera", false, get_camera, set_camera) { length = kViews; }
  static RValue get_camera(CInstance*, std::int32_t index) { return RValue(static_cast<double>(cameras().views.data()[index].camera)); }
  static void set_camera(CInstance*, std::int32_t index, const RValue& value) { cameras().views.data()[index].camera = to_int32(value); }
};
const ViewCamera view_camera;

}  // namespace

}  // namespace arena
