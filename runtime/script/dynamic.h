#pragma once
// Value: a script value whose kind is not known. Its operators are the runtime's own, with the number-by-number case inlined.
// Proxies of variables and elements turn into Values by themselves; name the type to keep one: `const Value old = self[gun];`.
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "runtime/arrays_structs/array.h"
#include "runtime/reports/frame.h"
#include "runtime/script/real.h"
#include "runtime/values/compare.h"
#include "runtime/values/conversions.h"
#include "runtime/values/operators.h"
#include "runtime/values/strings.h"

namespace arena::script {

class Variable;
class BuiltinName;
struct Key;
struct BuiltinKey;
class VariableAccess;
class GeneralAccess;
class ElementAccess;

// A place in the source. Making one notes its line in the frame, so that a report names the statement that failed.
struct Here {
  explicit Here(int line) {
    if (innermost_frame() != nullptr) innermost_frame()->line = line;
  }
};

class Value : public RValue {
 public:
  Value() = default;
  Value(const RValue& value) : RValue(value) {}
  Value(RValue&& value) : RValue(static_cast<RValue&&>(value)) {}
  // A second holder of an array: whichever writes first copies.
  Value(const Value& value) : RValue(value) { clear_owner_token(*this); }
  Value(Value&& value) = default;
  Value& operator=(const Value& value) {
    RValue::operator=(value);
    clear_owner_token(*this);
    return *this;
  }
  Value& operator=(Value&& value) = default;
  Value(Real number) : RValue(number.number()) {}
  template <Arithmetic T>
  requires(!std::same_as<T, bool>) Value(T number) : RValue(static_cast<double>(number)) {}
  Value(bool truth) : RValue(RValue::of_bool(truth)) {}
  Value(const char* text) : RValue(make_string(text)) {}
  Value(std::string_view text) : RValue(make_string(text)) {}

  operator Real() const { return to_real(*this); }
  explicit operator bool() const { return to_bool(*this); }

  // A member of the struct or instance, by name; an element of the array, by index.
  VariableAccess operator[](Key key) const;
  GeneralAccess operator[](BuiltinKey key) const;
  ElementAccess operator[](Real index) const;
  // Calls the method, with the caller's self.
  template <class... Arguments>
  Value operator()(const Arguments&... arguments) const;
};

inline const Value undefined{};
inline const Real noone = kNoone;
inline Value int64(std::int64_t number) { return RValue::of_int64(number); }
inline Value int32(std::int32_t number) { return RValue::of_int32(number); }

// Anything that stands for a value of unknown kind.
template <class T>
concept Dynamic = std::is_base_of_v<RValue, std::remove_cvref_t<T>> || requires {
  typename std::remove_cvref_t<T>::IsDynamic;
};
// Anything else that may stand beside one.
template <class T>
concept Operand = Dynamic<T> || NumberProxy<T> || std::convertible_to<T, Value>;

template <class T>
decltype(auto) as_value(T&& operand) {
  if constexpr (std::is_base_of_v<RValue, std::remove_cvref_t<T>>) {
    return static_cast<const RValue&>(operand);
  } else if constexpr (Dynamic<T>) {
    return static_cast<const RValue&>(operand.get());
  } else if constexpr (NumberProxy<T>) {
    return Value(operand.number());
  } else {
    return Value(operand);
  }
}

// A number by its C++ type: it can meet a number of unknown kind without being boxed.
template <class T>
concept KnownNumber = NumberOperand<T> && !std::same_as<std::remove_cvref_t<T>, bool>;

#define ARENA_DYNAMIC_OPERATOR(symbol, routine)                                                                   \
  template <class L, class R>                                                                                     \
  requires((Dynamic<L> && Operand<R>) || (Operand<L> && Dynamic<R>)) Value operator symbol(L&& left, R&& right) { \
    if constexpr (KnownNumber<R>) {                                                                               \
      const RValue& known = as_value(left);                                                                       \
      if (known.kind_bits == kNumber) return Value(Real(known.real) symbol as_real(right));                       \
    }                                                                                                             \
    Value result(as_value(static_cast<L&&>(left)));                                                               \
    routine(result, as_value(static_cast<R&&>(right)));                                                           \
    return result;                                                                                                \
  }
ARENA_DYNAMIC_OPERATOR(+, op_add)
ARENA_DYNAMIC_OPERATOR(-, op_subtract)
ARENA_DYNAMIC_OPERATOR(*, op_multiply)
ARENA_DYNAMIC_OPERATOR(/, op_divide)
ARENA_DYNAMIC_OPERATOR(%, op_remainder)
#undef ARENA_DYNAMIC_OPERATOR

#define ARENA_DYNAMIC_COMPARISON(symbol, test)                                                                   \
  template <class L, class R>                                                                                    \
  requires((Dynamic<L> && Operand<R>) || (Operand<L> && Dynamic<R>)) bool operator symbol(L&& left, R&& right) { \
    if constexpr (KnownNumber<R>) {                                                                              \
      const RValue& known = as_value(left);                                                                      \
      if (known.kind_bits == kNumber) return Real(known.real) symbol as_real(right);                             \
      const int order = compare(known, RValue(as_real(right).number()));                                         \
      return test;                                                                                               \
    } else {                                                                                                     \
      const int order = compare(as_value(static_cast<L&&>(left)), as_value(static_cast<R&&>(right)));            \
      return test;                                                                                               \
    }                                                                                                            \
  }
ARENA_DYNAMIC_COMPARISON(==, order == 0)
ARENA_DYNAMIC_COMPARISON(!=, order != 0)
ARENA_DYNAMIC_COMPARISON(<, order == -1)
ARENA_DYNAMIC_COMPARISON(<=, order == -1 || order == 0)
ARENA_DYNAMIC_COMPARISON(>, order == 1)
ARENA_DYNAMIC_COMPARISON(>=, order == 1 || order == 0)
#undef ARENA_DYNAMIC_COMPARISON

template <Dynamic T>
Value operator-(T&& operand) {
  return negate(as_value(static_cast<T&&>(operand)));
}
template <Dynamic T>
bool operator!(T&& operand) {
  return !to_bool(as_value(static_cast<T&&>(operand)));
}

}  // namespace arena::script
