#pragma once
// How scripts are defined. Each macro makes one named entry of the compiled function table, opens its call-stack frame and runs the
// body that follows.
//
//   EVENT(oFader, Step_0) { ... }                                the handler ksl_Object_oFader_Step_0; `self` and `other` are instances
//   SCRIPT(Approach, Real from, Real to, Real amount) { ... }    the script ksl_Script_Approach, declared before as
//                                                                extern const Script<Real(Real, Real, Real)> Approach;
//   METHOD(void, oPlayer, startDash) { ... }                     a method that gives nothing; another one a Value, a Real or a bool:
//                                                                `self[startDash] = bind(self, oPlayer_startDash)`
//   STATIC_METHOD(Value, TuiBase, setGap, ...)  a method that all structs of a constructor share: theirs without being stored in them
//   CONSTRUCTOR(Weapon, Value label, Value stats) { ... }        `self` is the new struct; made with Weapon.make(...) or create
//   GLOBAL_SCRIPT(SPATIAL_HASH) { ... }                          runs once when the game starts, before the first room
#include <tuple>

#include "runtime/arrays_structs/method.h"
#include "runtime/arrays_structs/statics.h"
#include "runtime/script/handles.h"

namespace arena::script {

// How an argument enters a body: known kinds are converted, a Value takes anything. A missing one reads undefined.
template <class T>
T unpack_argument(std::int32_t argc, const RValue** args, std::size_t at) {
  static const RValue missing;
  const RValue& value = at < static_cast<std::size_t>(argc) ? *args[at] : missing;
  if constexpr (std::is_same_v<T, Real>) {
    return to_real(value);
  } else if constexpr (std::is_same_v<T, bool>) {
    return to_bool(value);
  } else {
    return T(Value(value));
  }
}

// All arguments of a call, for scripts that count them.
struct Arguments {
  std::int32_t count;
  const RValue** values;
  Value operator[](std::int32_t at) const { return at < count ? Value(*values[at]) : Value(); }
};

template <class Body>
struct Entry;
template <class Result, class SelfType, class... Parameters>
struct Entry<Result (*)(SelfType, ObjectSelf, Parameters...)> {
  template <std::size_t... Index>
  static RValue& call(Result (*body)(SelfType, ObjectSelf, Parameters...), WBObjectBase* self, WBObjectBase* other, RValue& result,
                      std::int32_t argc, const RValue** args, std::index_sequence<Index...>) {
    if constexpr (std::is_void_v<Result>) {
      body(to_self(self), ObjectSelf(other), unpack_argument<Parameters>(argc, args, Index)...);
    } else {
      result = as_value(body(to_self(self), ObjectSelf(other), unpack_argument<Parameters>(argc, args, Index)...));
    }
    return result;
  }
  static SelfType to_self(WBObjectBase* self) {
    if constexpr (std::is_same_v<SelfType, Self>) {
      return Self(instance_of(self));
    } else {
      return SelfType(self);
    }
  }
};

// How native code hands an argument to a parameter of a script.
template <class Parameter, class T>
Parameter pass(T&& given) {
  if constexpr (std::is_same_v<Parameter, std::remove_cvref_t<T>>) {
    return static_cast<T&&>(given);
  } else if constexpr (std::is_same_v<Parameter, Real> && NumberOperand<T>) {
    return as_real(given);
  } else if constexpr (std::is_same_v<Parameter, Real>) {
    return to_real(as_value(static_cast<T&&>(given)));
  } else if constexpr (std::is_same_v<Parameter, Value>) {
    return Value(as_value(static_cast<T&&>(given)));
  } else {
    return Parameter(static_cast<T&&>(given));
  }
}

// The first argument of a call. Made where the call stands, it notes that line before it is converted.
template <class Parameter>
struct Passed : Here {
  template <class T>
  Passed(T&& given, int line = __builtin_LINE()) : Here(line), value(pass<Parameter>(static_cast<T&&>(given))) {}
  Parameter value;
};

// A script as compiled code knows it: called like a function, and usable as a value (its number).
template <class Signature>
class Script;
template <class Result, class... Parameters>
class Script<Result(Parameters...)> {
 public:
  using Body = Result (*)(ObjectSelf, ObjectSelf, Parameters...);
  using ResultType = Result;
  using First = std::tuple_element_t<0, std::tuple<Parameters..., Value>>;
  Script(const char* name, const char* file, Body body, ScriptFunction entry) : function_(name, file, entry), body_(body) {}

  // Missing arguments read undefined. The first one given notes the line of the call.
  Result operator()(Here = Here(__builtin_LINE())) const { return run(all_parameters, std::tuple<>()); }
  template <class... Rest>
  requires(sizeof...(Rest) < sizeof...(Parameters)) Result operator()(Passed<First> first, Rest&&... rest) const {
    return run(all_parameters, std::tuple<First&&, Rest&&...>(static_cast<First&&>(first.value), static_cast<Rest&&>(rest)...));
  }
  operator Value() const { return Value(Real(kFirstScriptNumber + function_.index)); }
  CompiledFunction& function() const { return function_; }

 private:
  static constexpr std::index_sequence_for<Parameters...> all_parameters{};
  template <std::size_t... Index, class Pack>
  Result run(std::index_sequence<Index...>, Pack&& given) const {
    WBObjectBase* const self = innermost_frame() != nullptr ? innermost_frame()->self : nullptr;
    WBObjectBase* const other = innermost_frame() != nullptr ? innermost_frame()->other : nullptr;
    std::tuple<Parameters...> arguments(at<Index, Parameters>(given)...);
    const FrameScope frame(function_.name, self, other);
    return std::apply([&](auto&... each) { return body_(ObjectSelf(self), ObjectSelf(other), static_cast<Parameters&&>(each)...); },
                      arguments);
  }
  template <std::size_t Index, class Parameter, class Pack>
  static Parameter at(Pack& given) {
    if constexpr (Index < std::tuple_size_v<Pack>) {
      return pass<Parameter>(std::get<Index>(static_cast<Pack&&>(given)));
    } else {
      return unpack_argument<Parameter>(0, nullptr, Index);
    }
  }
  mutable CompiledFunction function_;
  Body body_;
};

// A method's code, before it is bound.
class Method {
 public:
  Method(const char* name, const char* file, ScriptFunction entry) : function_(name, file, entry) {}
  CompiledFunction& function() const { return function_; }

 private:
  mutable CompiledFunction function_;
};

// A constructor: Weapon.make("Pistol", stats) is `new Weapon("Pistol", stats)`.
class Constructor {
 public:
  Constructor(const char* name, const char* file, ScriptFunction entry) : function_(name, file, entry, true) {}
  template <class... Given>
  Value make(const Given&... given) const {
    const Value values[sizeof...(Given) + 1] = {Value(as_value(given))..., Value()};
    const RValue* pointers[sizeof...(Given) + 1];
    for (std::size_t i = 0; i < sizeof...(Given); ++i) pointers[i] = &values[i];
    WBObjectBase* const other = innermost_frame() != nullptr ? innermost_frame()->self : nullptr;
    return construct(other, function_, static_cast<std::int32_t>(sizeof...(Given)), pointers);
  }
  // Runs the body for a struct that a constructor based on this one is making: the first thing that one does.
  template <class... Given>
  void extend(const ObjectSelf& self, const Given&... given) const {
    const Value values[sizeof...(Given) + 1] = {Value(as_value(given))..., Value()};
    const RValue* pointers[sizeof...(Given) + 1];
    for (std::size_t i = 0; i < sizeof...(Given); ++i) pointers[i] = &values[i];
    RValue ignored;
    function_.script(self.object(), nullptr, ignored, static_cast<std::int32_t>(sizeof...(Given)), pointers);
  }
  CompiledFunction& function() const { return function_; }

 private:
  mutable CompiledFunction function_;
};

// Written once beside a constructor: its structs have the methods of another one's, too.
struct BasedOn : StaticsChain {
  BasedOn(const Constructor& from, const Constructor& to) : StaticsChain(from.function(), to.function()) {}
};

// A closure over `self`, to be stored in a variable.
inline Value bind(const ObjectSelf& self, const Method& code) {
  Value closure;
  make_method(closure, code.function(), self.object());
  return closure;
}
inline Value bind(const Self& self, const Method& code) { return bind(ObjectSelf(instance_of(Value(self).object)), code); }

// The static variables of a script: statics(getTarnCamera)[camera].
template <class Callable>
ObjectSelf statics(const Callable& callable) {
  return ObjectSelf(statics_of(callable.function()));
}

// `self` of a method is an instance when it belongs to an object type, else whatever it is bound to.
template <class Owner>
struct SelfOf {
  using Type = ObjectSelf;
};
template <>
struct SelfOf<ObjectName> {
  using Type = Self;
};

}  // namespace arena::script

// The scripts of the game live here; the names of the script layer are within reach, and hide the C library's.
namespace game {
using namespace arena::script;
}

#define EVENT(object, event)                                                                               \
  void ksl_Object_##object##_##event(arena::CInstance* self, arena::CInstance* other);                     \
  namespace game {                                                                                         \
  struct Event_##object##_##event {                                                                        \
    static void body(Self self, Instance other);                                                           \
  };                                                                                                       \
  static arena::CompiledFunction registered_##object##_##event{"ksl_Object_" #object "_" #event, __FILE__, \
                                                               &ksl_Object_##object##_##event};            \
  }                                                                                                        \
  void ksl_Object_##object##_##event(arena::CInstance* self, arena::CInstance* other) {                    \
    const arena::FrameScope frame(game::registered_##object##_##event.name, self, other);                  \
    game::Event_##object##_##event::body(arena::script::Self(self), arena::script::Instance(other));       \
  }                                                                                                        \
  void game::Event_##object##_##event::body([[maybe_unused]] Self self, [[maybe_unused]] Instance other)

// The boxed entry beside a body: opens the frame and unpacks the arguments.
#define ARENA_ENTRY(holder, full_name)                                                                                    \
  static arena::RValue& entry(arena::WBObjectBase* self_object, arena::WBObjectBase* other_object, arena::RValue& result, \
                              std::int32_t argc, const arena::RValue** args) {                                            \
    const arena::FrameScope frame(full_name, self_object, other_object);                                                  \
    return arena::script::call_entry(&holder::body, self_object, other_object, result, argc, args);                       \
  }

namespace arena::script {
template <class Result, class SelfType, class... Parameters>
RValue& call_entry(Result (*body)(SelfType, ObjectSelf, Parameters...), WBObjectBase* self, WBObjectBase* other, RValue& result,
                   std::int32_t argc, const RValue** args) {
  return Entry<Result (*)(SelfType, ObjectSelf, Parameters...)>::call(body, self, other, result, argc, args,
                                                                      std::index_sequence_for<Parameters...>());
}
}  // namespace arena::script

namespace arena::script {
// What a body for known numbers (Number is Real) or for values of any kind (Value) gives.
template <class Declared, class Number>
using ResultOf = std::conditional_t<std::is_void_v<Declared> || std::is_same_v<Number, Real>, Declared, Value>;

// The two bodies of a script over numbers, and the choice between them.
template <class Called, class Holder>
struct NumberBodies;
template <class Result, class... Parameters, class Holder>
struct NumberBodies<Script<Result(Parameters...)>, Holder> {
  static Result known(ObjectSelf self, ObjectSelf other, Parameters... parameters) {
    return Holder::template body<Real>(self, other, static_cast<Parameters&&>(parameters)...);
  }
  template <class>
  using Any = Value;
  static ResultOf<Result, Value> any(ObjectSelf self, ObjectSelf other, Any<Parameters>... parameters) {
    return Holder::template body<Value>(self, other, static_cast<Value&&>(parameters)...);
  }
  static RValue& call(WBObjectBase* self, WBObjectBase* other, RValue& result, std::int32_t argc, const RValue** args) {
    constexpr bool is_number[] = {std::is_same_v<Parameters, Real>...};
    bool are_known = true;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(sizeof...(Parameters)); ++i) {
      if (is_number[i] && (i >= argc || args[i]->kind_bits != kNumber)) are_known = false;
    }
    return are_known ? call_entry(&known, self, other, result, argc, args) : call_entry(&any, self, other, result, argc, args);
  }
};
}  // namespace arena::script

#define SCRIPT(name, ...)                                                                                 \
  namespace game {                                                                                        \
  struct Script_##name {                                                                                  \
    static decltype(name)::ResultType body(ObjectSelf self, ObjectSelf other __VA_OPT__(, ) __VA_ARGS__); \
    ARENA_ENTRY(Script_##name, "ksl_Script_" #name)                                                       \
  };                                                                                                      \
  const decltype(name) name{"ksl_Script_" #name, __FILE__, &Script_##name::body, &Script_##name::entry};  \
  }                                                                                                       \
  decltype(game::name)::ResultType game::Script_##name::body([[maybe_unused]] ObjectSelf self,            \
                                                             [[maybe_unused]] ObjectSelf other __VA_OPT__(, ) __VA_ARGS__)

// A script over numbers, NUMBER_SCRIPT(Range, Number value, Number low, Number high, Value label) { ... }, whose arithmetic is that of the
// values it is given: its body is compiled for known numbers, which C++ callers and calls with plain numbers run, and once more for values
// of any kind. A parameter that is a Real in the script's declaration is a Number here, and so is the result.
#define NUMBER_SCRIPT(name, ...)                                                                                            \
  namespace game {                                                                                                          \
  struct Script_##name {                                                                                                    \
    using Bodies = NumberBodies<std::remove_const_t<decltype(name)>, Script_##name>;                                        \
    template <class Number>                                                                                                 \
    static ResultOf<decltype(name)::ResultType, Number> body(ObjectSelf self, ObjectSelf other, __VA_ARGS__);               \
    static arena::RValue& entry(arena::WBObjectBase* self_object, arena::WBObjectBase* other_object, arena::RValue& result, \
                                std::int32_t argc, const arena::RValue** args) {                                            \
      const arena::FrameScope frame("ksl_Script_" #name, self_object, other_object);                                        \
      return Bodies::call(self_object, other_object, result, argc, args);                                                   \
    }                                                                                                                       \
  };                                                                                                                        \
  const decltype(name) name{"ksl_Script_" #name, __FILE__, &Script_##name::Bodies::known, &Script_##name::entry};           \
  }                                                                                                                         \
  template <class Number>                                                                                                   \
  arena::script::ResultOf<decltype(game::name)::ResultType, Number> game::Script_##name::body(                              \
      [[maybe_unused]] ObjectSelf self, [[maybe_unused]] ObjectSelf other, __VA_ARGS__)

#define METHOD(result, owner, name, ...)                                                                                   \
  namespace game {                                                                                                         \
  struct Method_##owner##_##name {                                                                                         \
    static result body(SelfOf<std::remove_cv_t<decltype(owner)>>::Type self, ObjectSelf other __VA_OPT__(, ) __VA_ARGS__); \
    ARENA_ENTRY(Method_##owner##_##name, "ksl_Script_" #owner "_" #name)                                                   \
  };                                                                                                                       \
  const Method owner##_##name{"ksl_Script_" #owner "_" #name, __FILE__, &Method_##owner##_##name::entry};                  \
  }                                                                                                                        \
  auto game::Method_##owner##_##name::body([[maybe_unused]] SelfOf<std::remove_cv_t<decltype(owner)>>::Type self,          \
                                           [[maybe_unused]] ObjectSelf other __VA_OPT__(, ) __VA_ARGS__)                   \
      ->result

// A method that every struct of a constructor has: STATIC_METHOD(Value, TuiBase, setPadding, Value pixels) { ... self is the struct ... }.
// The names of the method's variable and of the constructor must be in reach.
#define STATIC_METHOD(result, owner, name, ...)                                                                                 \
  namespace game {                                                                                                              \
  extern const Method owner##_##name;                                                                                           \
  [[maybe_unused]] static const arena::StaticMethod static_##owner##_##name{owner.function(), name, owner##_##name.function()}; \
  }                                                                                                                             \
  METHOD(result, owner, name __VA_OPT__(, ) __VA_ARGS__)

#define CONSTRUCTOR(name, ...)                                                       \
  namespace game {                                                                   \
  struct Constructor_##name {                                                        \
    static void body(ObjectSelf self, ObjectSelf other __VA_OPT__(, ) __VA_ARGS__);  \
    ARENA_ENTRY(Constructor_##name, "ksl_Script_" #name)                             \
  };                                                                                 \
  const Constructor name{"ksl_Script_" #name, __FILE__, &Constructor_##name::entry}; \
  }                                                                                  \
  void game::Constructor_##name::body([[maybe_unused]] ObjectSelf self, [[maybe_unused]] ObjectSelf other __VA_OPT__(, ) __VA_ARGS__)

#define GLOBAL_SCRIPT(file)                                                                                                            \
  namespace game {                                                                                                                     \
  struct GlobalScript_##file {                                                                                                         \
    static void body(ObjectSelf self, ObjectSelf other);                                                                               \
    ARENA_ENTRY(GlobalScript_##file, "ksl_GlobalScript_" #file)                                                                        \
  };                                                                                                                                   \
  [[maybe_unused]] static arena::CompiledFunction registered_##file{"ksl_GlobalScript_" #file, __FILE__, &GlobalScript_##file::entry}; \
  }                                                                                                                                    \
  void game::GlobalScript_##file::body([[maybe_unused]] ObjectSelf self, [[maybe_unused]] ObjectSelf other)
