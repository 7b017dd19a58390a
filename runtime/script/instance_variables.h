#pragma once
// The built-in variables of instances and of the world as names: `self[x]`, `oPlayer[image_angle]`, `mouse_x`.
//
// Where the holder is known to be an instance they are plain fields and need no look-up; where it may be a struct the same names are
// ordinary fields of the struct.
#include "runtime/instances_loop/instance.h"
#include "runtime/instances_loop/motion.h"
#include "runtime/script/access.h"

namespace arena::script {

// What a write brings about besides, for the fields that are plain memory.
inline void nothing_follows(CInstance&) {}

// Reads and writes one plain field of an instance. `after` is what a write sets off.
template <double CInstance::*field, void (*after)(CInstance&)>
class FieldAccess {
 public:
  using IsNumber = void;
  explicit FieldAccess(CInstance* instance) : instance_(*instance) {}
  FieldAccess(const FieldAccess&) = delete;
  operator Real() && { return instance_.*field; }
  operator Value() && { return Value(instance_.*field); }
  void operator=(Real number) && { write(number.number()); }
  void operator=(const FieldAccess& other) && { write(other.instance_.*field); }
  void operator+=(Real number) && { write(instance_.*field + number.number()); }
  void operator-=(Real number) && { write(instance_.*field - number.number()); }
  void operator*=(Real number) && { write(instance_.*field * number.number()); }
  void operator/=(Real number) && { write(instance_.*field / number.number()); }
  Real number() const { return instance_.*field; }

 private:
  void write(double number) {
    instance_.*field = number;
    after(instance_);
  }
  CInstance& instance_;
};

template <double CInstance::*field, void (*after)(CInstance&) = nothing_follows>
class InstanceField : public BuiltinName {
 public:
  explicit InstanceField(const char* name) : BuiltinName(name, field) {}
  using Access = FieldAccess<field, after>;
};

inline const InstanceField<&CInstance::x> x{"x"};
inline const InstanceField<&CInstance::y> y{"y"};
inline const InstanceField<&CInstance::xprevious> xprevious{"xprevious"};
inline const InstanceField<&CInstance::yprevious> yprevious{"yprevious"};
inline const InstanceField<&CInstance::xstart> xstart{"xstart"};
inline const InstanceField<&CInstance::ystart> ystart{"ystart"};
inline const InstanceField<&CInstance::direction, motion_from_direction> direction{"direction"};
inline const InstanceField<&CInstance::friction> friction{"friction"};
inline const InstanceField<&CInstance::image_index> image_index{"image_index"};
inline const InstanceField<&CInstance::image_speed> image_speed{"image_speed"};
inline const InstanceField<&CInstance::image_xscale> image_xscale{"image_xscale"};
inline const InstanceField<&CInstance::image_yscale> image_yscale{"image_yscale"};
inline const InstanceField<&CInstance::image_angle> image_angle{"image_angle"};
inline const InstanceField<&CInstance::image_alpha> image_alpha{"image_alpha"};
inline const InstanceField<&CInstance::image_blend> image_blend{"image_blend"};
inline const InstanceField<&CInstance::sprite_index> sprite_index{"sprite_index"};

// The rest go through the table of built-in variables.
class InstanceIdName : public BuiltinName {
 public:
  using BuiltinName::BuiltinName;
};
inline const InstanceIdName id{"id"};
inline const BuiltinName object_index{"object_index"};
inline const BuiltinName alarm{"alarm"};
inline const BuiltinName depth{"depth"};
inline const BuiltinName visible{"visible"};
inline const BuiltinName image_number{"image_number"};
inline const BuiltinName sprite_width{"sprite_width"};
inline const BuiltinName sprite_height{"sprite_height"};

// A built-in variable of the world, read where it stands: `mouse_x`, `room_width`.
class WorldVariable : public Variable {
 public:
  using IsNumber = void;
  using Variable::Variable;
  operator Real() const { return number(); }
  Real number() const;
};
inline const WorldVariable delta_time{"delta_time"};
inline const WorldVariable current_time{"current_time"};
inline const WorldVariable mouse_x{"mouse_x"};
inline const WorldVariable mouse_y{"mouse_y"};
inline const WorldVariable room_width{"room_width"};
inline const WorldVariable room_height{"room_height"};

}  // namespace arena::script
