#pragma once
// Builtin: one row of a family's table, and the function as compiled code calls it.
//
//   BUILTIN(instance_number, Whole(ObjectIndex), "object", "How many instances of an object exist.");
//
// Its name, the kinds of its result and its parameters, the names of the parameters in one text, what it does. A row is a declaration,
// except in the file that implements the family: that one defines ARENA_DEFINES_BUILTINS and includes no other family. A call
// boxes its arguments, which are checked as those of any script's call, and gives a Real, a bool, a Value or nothing. A wrong number of
// arguments does not compile.
#include "runtime/builtins/kinds.h"
#include "runtime/script/define.h"
#include "runtime/variables_calls/calls.h"

namespace arena::script {

template <class Result>
struct ResultKind {
  using Face = typename Result::Face;
  static constexpr const char* kWord = Result::kDescription.word;
};
template <>
struct ResultKind<void> {
  using Face = void;
  static constexpr const char* kWord = "";
};

template <class Signature>
class Builtin;
template <class Result, class... Kinds>
class Builtin<Result(Kinds...)> : public BuiltinRow {
 public:
  using Face = typename ResultKind<Result>::Face;

  // The names of the parameters, as many as there are kinds.
  struct Names {
    consteval Names(const char* names) : text(names) {
      std::size_t found = *names != '\0' ? 1 : 0;
      for (const char* at = names; *at != '\0'; ++at) found += *at == ',' ? 1 : 0;
      if (found != sizeof...(Kinds)) throw "each parameter has a name and a kind";
    }
    const char* text;
  };
  Builtin(const char* name, Names parameter_names, const char* what_it_does)
      : BuiltinRow(name, parameter_names.text, kKinds, sizeof...(Kinds), ResultKind<Result>::kWord, what_it_does) {}

  // Whether a call may have so many arguments.
  static constexpr bool takes(std::size_t given) {
    std::size_t least = 0, most = sizeof...(Kinds);
    for (std::size_t i = 0; i < sizeof...(Kinds); ++i) {
      if (!kKinds[i].may_be_left_out) least = i + 1;
      if (kKinds[i].takes_the_rest) most = given;
    }
    return least <= given && given <= most;
  }

  Face operator()(Here = Here(__builtin_LINE())) const requires(takes(0)) {
    RValue none;
    return call(0, &none);
  }
  template <class... More>
  requires(takes(1 + sizeof...(More))) Face operator()(Passed<Value> first, const More&... more) const {
    RValue block[] = {static_cast<Value&&>(first.value), RValue(as_value(more))...};
    return call(1 + static_cast<std::int32_t>(sizeof...(More)), block);
  }

 private:
  static constexpr ParameterKind kKinds[sizeof...(Kinds) + 1] = {Kinds::kDescription..., ParameterKind{}};

  Face call(std::int32_t given, RValue* block) const {
    WBObjectBase* const self = innermost_frame() != nullptr ? innermost_frame()->self : nullptr;
    WBObjectBase* const other = innermost_frame() != nullptr ? innermost_frame()->other : nullptr;
    Value result;
    call_builtin_in_place(self, other, result, given, slot, block);
    if constexpr (!std::is_void_v<Face>) return static_cast<Face>(static_cast<Value&&>(result));
  }
};

}  // namespace arena::script

// BUILTIN_NAMED is for names that C++ has taken.
#ifdef ARENA_DEFINES_BUILTINS
#define BUILTIN_NAMED(variable, name, signature, parameters, sentence) \
  extern const Builtin<signature> variable;                            \
  const Builtin<signature> variable { name, parameters, sentence }
#else
#define BUILTIN_NAMED(variable, name, signature, parameters, sentence) extern const Builtin<signature> variable
#endif
#define BUILTIN(name, signature, parameters, sentence) BUILTIN_NAMED(name, #name, signature, parameters, sentence)
