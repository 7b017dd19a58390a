#pragma once
// Binds a plain C++ function to its row: implement<script::instance_number, number_of>. The kinds of the row check the arguments, and the
// function's parameters must be what they give, in their order; besides it may ask for its caller (SelfInstance, const CallContext&).
#include "runtime/builtins/builtin.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {
namespace detail {

// The check of one argument by its kind.
template <class Kind>
typename Kind::Checked checked_argument(const CallContext& call, int at) {
  if constexpr (Kind::kDescription.has_default) {
    if (argument_at(call, at).is_undefined()) return Kind::kDefault;
  }
  return Argument<typename Kind::Checked>::get(call, at);
}

// Whether what a function returns is what its row says that it gives.
template <class Kind, class Returned>
constexpr bool gives() {
  if constexpr (std::is_void_v<Kind> || std::is_void_v<Returned>) {
    return std::is_void_v<Kind> && std::is_void_v<Returned>;
  } else if constexpr (std::is_same_v<Returned, RValue>) {
    return !std::is_same_v<typename Kind::Face, bool>;
  } else if constexpr (std::is_same_v<Returned, bool>) {
    return std::is_same_v<typename Kind::Face, bool>;
  } else if constexpr (std::is_arithmetic_v<Returned>) {
    return std::is_same_v<typename Kind::Face, script::Real>;
  } else {
    return std::is_same_v<Kind, script::Text>;
  }
}

template <class Row>
struct Binding;
template <class Result, class... Kinds>
struct Binding<script::Builtin<Result(Kinds...)>> {
  template <std::size_t place>
  using KindAt = std::tuple_element_t<place, std::tuple<Kinds..., void>>;

  template <class Parameter, std::size_t place>
  static Parameter argument(const CallContext& call) {
    if constexpr (!Argument<Parameter>::consumes) {
      return Argument<Parameter>::get(call, place);
    } else {
      static_assert(std::is_same_v<Parameter, typename KindAt<place>::Checked>, "the parameter is not what the row's kind gives");
      return checked_argument<KindAt<place>>(call, place);
    }
  }

  template <class Returned, class... Parameters, std::size_t... Index>
  static void run(Returned (*function)(Parameters...), RValue& result, const CallContext& call, std::index_sequence<Index...>) {
    static_assert((0 + ... + (Argument<Parameters>::consumes ? 1 : 0)) == sizeof...(Kinds),
                  "the row has as many parameters as the function");
    static_assert(gives<Result, Returned>(), "the function gives what the row says");
    const std::uint64_t errors_before = error_count();
    // Braces keep the checks in order of the arguments, so that the first wrong one is reported.
    struct Bound {
      std::tuple<Parameters...> values;
    };
    Bound bound{std::tuple<Parameters...>{argument<Parameters, place_of<Parameters...>(Index)>(call)...}};
    if (error_count() != errors_before) return;  // a suppressed report: nothing is called with what is wrong
    if constexpr (std::is_void_v<Returned>) {
      std::apply(function, bound.values);
    } else {
      result = to_value(std::apply(function, bound.values));
    }
  }

  template <class Returned, class... Parameters>
  static void run(Returned (*function)(Parameters...), RValue& result, const CallContext& call) {
    run(function, result, call, std::index_sequence_for<Parameters...>());
  }

  template <auto function>
  static void call(RValue& result, WBObjectBase* self, WBObjectBase* other, std::int32_t argc, RValue* args) {
    run(function, result, CallContext{self, other, argc, args});
  }
};

}  // namespace detail

template <const auto& row, auto function>
inline constexpr Implementation implement{&row, &detail::Binding<std::remove_cvref_t<decltype(row)>>::template call<function>};

}  // namespace arena
