#pragma once
// How the arguments of a built-in function are checked: Argument<T>::get(call, at) gives the one at `at` (from 0) as a T, or reports it
// with the message that belongs to the type. Results become values by to_value.
//
//   double "Number (WBGR)"    float "Number (WBGF)"   int32 "Number (WBGI32)"   uint32 "Number (WBGU32)"   bool "Boolean (WBGB)"
//   std::string_view "String (WBGS)"       const RValue& anything        Rest all arguments from here on
//   std::optional<T> may be left out       the structs below for the rest
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "runtime/arrays_structs/array.h"
#include "runtime/program/functions.h"
#include "runtime/reports/report.h"
#include "runtime/values/conversions.h"
#include "runtime/values/strings.h"

namespace arena {

class CInstance;

struct CallContext {
  WBObjectBase* self;
  WBObjectBase* other;
  std::int32_t argc;
  RValue* args;
};

// Parameters that are more than a number, a truth or a text.
struct Rest : std::span<RValue> {
  using std::span<RValue>::span;
};
struct ReadArray {  // any array
  ArrayRecord* array;
};
struct MutableArray {  // an array that is not immutable; changed in place
  ArrayRecord* array;
};
struct StructArgument {  // a struct or an instance
  PropertyObject* object;
};
struct PlainStruct {  // a struct that is no instance
  PropertyObject* object;
};
struct Callable {  // a method, or the number of a function
  RValue value;
};
struct NumberValue {  // a number of any kind, unconverted
  RValue value;
};
struct PointerArgument {
  void* pointer;
};
struct NumberOrPointer {
  RValue value;
};
struct SelfInstance {  // takes no argument: the instance that calls
  CInstance* instance;
};

std::string_view current_builtin_name();   // "Unknown Function" when none is current
bool is_number_like(const RValue& value);  // number, bool, int32, int64, ref, instance

double check_real(const CallContext& call, int at);
float check_float(const CallContext& call, int at);
std::int32_t check_int32(const CallContext& call, int at);
std::uint32_t check_uint32(const CallContext& call, int at);
bool check_bool(const CallContext& call, int at);
std::string_view check_string(const CallContext& call, int at);
// These two give null after a suppressed report.
ArrayRecord* check_array(const CallContext& call, int at, bool must_be_mutable);
PropertyObject* check_struct(const CallContext& call, int at, bool allows_instance);
RValue check_callable(const CallContext& call, int at);
RValue check_number(const CallContext& call, int at);
void* check_pointer(const CallContext& call, int at);
RValue check_number_or_pointer(const CallContext& call, int at);
CInstance* check_self_instance(const CallContext& call);
// Reports "... expecting a WHAT" for argument `at` (from 0).
void report_argument_type(const CallContext& call, int at, std::string_view what);
// Reports a number that names no resource of the kind; `count` below zero leaves the range out.
void report_invalid_resource(int argument_number, std::string_view kind, std::int32_t requested, std::int32_t count);
const RValue& argument_at(const CallContext& call, int at);  // undefined when left out

template <class T>
struct Argument;
#define ARENA_ARGUMENT(type, expression)                                    \
  template <>                                                               \
  struct Argument<type> {                                                   \
    static constexpr bool consumes = true;                                  \
    static type get(const CallContext& call, int at) { return expression; } \
  };
ARENA_ARGUMENT(double, check_real(call, at))
ARENA_ARGUMENT(float, check_float(call, at))
ARENA_ARGUMENT(std::int32_t, check_int32(call, at))
ARENA_ARGUMENT(std::uint32_t, check_uint32(call, at))
ARENA_ARGUMENT(bool, check_bool(call, at))
ARENA_ARGUMENT(std::string_view, check_string(call, at))
ARENA_ARGUMENT(ReadArray, ReadArray{check_array(call, at, false)})
ARENA_ARGUMENT(MutableArray, MutableArray{check_array(call, at, true)})
ARENA_ARGUMENT(StructArgument, StructArgument{check_struct(call, at, true)})
ARENA_ARGUMENT(PlainStruct, PlainStruct{check_struct(call, at, false)})
ARENA_ARGUMENT(Callable, Callable{check_callable(call, at)})
ARENA_ARGUMENT(NumberValue, NumberValue{check_number(call, at)})
ARENA_ARGUMENT(PointerArgument, PointerArgument{check_pointer(call, at)})
ARENA_ARGUMENT(NumberOrPointer, NumberOrPointer{check_number_or_pointer(call, at)})
#undef ARENA_ARGUMENT

template <>
struct Argument<const RValue&> {
  static constexpr bool consumes = true;
  static const RValue& get(const CallContext& call, int at) { return argument_at(call, at); }
};
template <>
struct Argument<Rest> {
  static constexpr bool consumes = true;
  static Rest get(const CallContext& call, int at) {
    return call.argc > at ? Rest(call.args + at, static_cast<std::size_t>(call.argc - at)) : Rest();
  }
};
template <>
struct Argument<SelfInstance> {
  static constexpr bool consumes = false;
  static SelfInstance get(const CallContext& call, int) { return SelfInstance{check_self_instance(call)}; }
};
template <>
struct Argument<const CallContext&> {
  static constexpr bool consumes = false;
  static const CallContext& get(const CallContext& call, int) { return call; }
};
template <class T>
struct Argument<std::optional<T>> {
  static constexpr bool consumes = true;
  static std::optional<T> get(const CallContext& call, int at) {
    if (argument_at(call, at).is_undefined()) return std::nullopt;
    return Argument<T>::get(call, at);
  }
};

inline RValue to_value(double number) { return RValue(number); }
inline RValue to_value(std::int32_t number) { return RValue(static_cast<double>(number)); }
inline RValue to_value(std::uint32_t number) { return RValue(static_cast<double>(number)); }
inline RValue to_value(bool truth) { return RValue::of_bool(truth); }
inline RValue to_value(const std::string& text) { return make_string(text); }
inline RValue to_value(std::string_view text) { return make_string(text); }
inline RValue to_value(RValue value) { return value; }

namespace detail {

// Where the arguments of the parameter `wanted` begin.
template <class... Parameters>
constexpr int place_of(std::size_t wanted) {
  constexpr bool consumes[] = {Argument<Parameters>::consumes..., false};
  int place = 0;
  for (std::size_t i = 0; i < wanted; ++i) place += consumes[i] ? 1 : 0;
  return place;
}

}  // namespace detail

}  // namespace arena
