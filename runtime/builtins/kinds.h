#pragma once
// What the parameters of built-in functions take and what the functions give: the words of their rows. A kind says how an argument is
// checked (`Checked`, a type of variables_calls/arguments.h), what compiled code gets where it is a result (`Face`), and what it is called.
//
//   In<Number, 0, 1>   a number from 0 to 1       Or<Flag, true>    may be left out and is true then
//   Optional<Text>     may be left out            Rest<Any>         all arguments from here on
#include <optional>
#include <string_view>
#include <type_traits>

#include "runtime/program/builtin_row.h"
#include "runtime/script/dynamic.h"

namespace arena {
struct BinaryFileArgument;
struct BufferArgument;
struct Callable;
struct FileName;
struct GridArgument;
struct IniArgument;
struct ListArgument;
struct MapArgument;
struct MutableArray;
struct NumberOrPointer;
struct NumberValue;
struct PlainStruct;
struct PointerArgument;
struct ReadArray;
struct Rest;
struct StructArgument;
struct TextFileArgument;
struct TimerArgument;
}  // namespace arena

namespace arena::script {

#define ARENA_KIND(name, what, checked, face)                  \
  struct name {                                                \
    using Checked = checked;                                   \
    using Face = face;                                         \
    static constexpr ParameterKind kDescription{.word = what}; \
  };
// Numbers of any kind, converted.
ARENA_KIND(Number, "number", double, Real)
ARENA_KIND(SingleNumber, "number", float, Real)  // of single precision
ARENA_KIND(Whole, "whole number", std::int32_t, Real)
ARENA_KIND(Natural, "whole number", std::uint32_t, Real)
ARENA_KIND(Flag, "bool", bool, bool)
ARENA_KIND(Degrees, "degrees", double, Real)  // counter-clockwise from the right
ARENA_KIND(Radians, "radians", double, Real)
ARENA_KIND(Date, "date", double, Real)      // seconds since 1970-01-01 00:00 UTC
ARENA_KIND(Colour, "colour", double, Real)  // blue, green, red from the high byte down
// Numbers that name something.
ARENA_KIND(ObjectIndex, "object", std::int32_t, Real)
ARENA_KIND(SpriteIndex, "sprite", std::int32_t, Real)
ARENA_KIND(FontIndex, "font", std::int32_t, Real)
ARENA_KIND(RoomIndex, "room", std::int32_t, Real)
ARENA_KIND(SoundIndex, "sound", std::int32_t, Real)
ARENA_KIND(SoundOrVoice, "sound or playing sound", std::int32_t, Real)
ARENA_KIND(Voice, "playing sound", std::int32_t, Real)
ARENA_KIND(KeyCode, "key", std::int32_t, Real)
ARENA_KIND(MouseButton, "mouse button", std::int32_t, Real)
ARENA_KIND(GamepadNumber, "gamepad", std::int32_t, Real)
ARENA_KIND(GamepadButton, "gamepad button", std::int32_t, Real)
ARENA_KIND(GamepadAxis, "gamepad axis", std::int32_t, Real)
ARENA_KIND(CameraIndex, "camera", std::int32_t, Real)
ARENA_KIND(LayerIndex, "layer", double, Value)
ARENA_KIND(ScriptNumber, "script", std::int32_t, Real)
ARENA_KIND(ListNumber, "list", std::int32_t, Real)
ARENA_KIND(MapNumber, "map", std::int32_t, Real)
ARENA_KIND(GridNumber, "grid", std::int32_t, Real)
ARENA_KIND(StickersNumber, "stickers", std::int32_t, Real)
ARENA_KIND(ParticleSystemNumber, "particle system", std::int32_t, Real)
ARENA_KIND(ParticleTypeNumber, "particle type", std::int32_t, Real)
ARENA_KIND(TextFileNumber, "text file", std::int32_t, Real)
ARENA_KIND(BinaryFileNumber, "binary file", std::int32_t, Real)
ARENA_KIND(IniNumber, "ini", std::int32_t, Real)
ARENA_KIND(BufferNumber, "buffer", std::int32_t, Real)
// Containers by handle, which must be alive.
ARENA_KIND(List, "list", ListArgument, Real)
ARENA_KIND(Map, "map", MapArgument, Real)
ARENA_KIND(GridHandle, "grid", GridArgument, Real)
ARENA_KIND(TextFile, "text file", TextFileArgument, Real)
ARENA_KIND(BinaryFile, "binary file", BinaryFileArgument, Real)
ARENA_KIND(Ini, "ini", IniArgument, Real)
ARENA_KIND(Buffer, "buffer", BufferArgument, Real)
ARENA_KIND(SaveName, "file name", FileName, Value)  // of a file or folder that scripts may reach
// By the number that it was given; it may have ended.
ARENA_KIND(Timer, "timer", TimerArgument, Real)
// The other kinds of values.
ARENA_KIND(Text, "text", std::string_view, Value)
ARENA_KIND(Array, "array", ReadArray, Value)
ARENA_KIND(ChangedArray, "array", MutableArray, Value)  // changed in place: not an immutable one
ARENA_KIND(Struct, "struct or instance", StructArgument, Value)
ARENA_KIND(OwnStruct, "struct", PlainStruct, Value)
ARENA_KIND(Function, "function", Callable, Value)
ARENA_KIND(AnyNumber, "number", NumberValue, Value)  // as it is, unconverted
ARENA_KIND(Pointer, "pointer", PointerArgument, Value)
ARENA_KIND(AnyNumberOrPointer, "number or pointer", NumberOrPointer, Value)
// Values that the function itself looks at.
ARENA_KIND(Any, "any", const RValue&, Value)
ARENA_KIND(InstanceId, "instance", const RValue&, Value)        // by id or as an object
ARENA_KIND(Target, "instance or object", const RValue&, Value)  // an instance, or an object for its instances
ARENA_KIND(Targets, "object, instance or array of them", const RValue&, Value)
ARENA_KIND(LayerName, "layer", const RValue&, Value)            // by name or number
ARENA_KIND(AlarmName, "alarm", const RValue&, Value)            // by name or number
ARENA_KIND(Fields, "struct or instance", const RValue&, Value)  // checked after the arguments before it have been looked up
ARENA_KIND(WeakReference, "weak reference", const RValue&, Value)
ARENA_KIND(Int64, "int64", const RValue&, Value)
#undef ARENA_KIND
using Pixels = Number;

template <class Kind, int low, int high>
struct In : Kind {
  static constexpr ParameterKind kDescription{.word = Kind::kDescription.word, .low = low, .high = high};
};

constexpr ParameterKind left_out(ParameterKind kind) {
  kind.may_be_left_out = true;
  return kind;
}
template <class Kind>
struct Optional : Kind {
  using Checked =
      std::conditional_t<std::is_reference_v<typename Kind::Checked>, typename Kind::Checked, std::optional<typename Kind::Checked>>;
  static constexpr ParameterKind kDescription = left_out(Kind::kDescription);
};
constexpr ParameterKind with_default(ParameterKind kind, double value) {
  kind.may_be_left_out = kind.has_default = true;
  kind.default_value = value;
  return kind;
}
template <class Kind, auto value>
struct Or : Kind {
  static constexpr auto kDefault = value;
  static constexpr ParameterKind kDescription = with_default(Kind::kDescription, value);
};
constexpr ParameterKind the_rest(ParameterKind kind) {
  kind.may_be_left_out = kind.takes_the_rest = true;
  return kind;
}
template <class Kind>
struct Rest {
  using Checked = arena::Rest;
  static constexpr ParameterKind kDescription = the_rest(Kind::kDescription);
};

}  // namespace arena::script
