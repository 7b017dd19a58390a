#pragma once
// Real: a script number whose kind is known. It computes like a double; its comparisons keep the script's tolerance and its truth is
// "greater than 0.5".
#include <cmath>
#include <concepts>
#include <type_traits>

#include "runtime/values/compare.h"
#include "runtime/values/operators.h"

namespace arena::script {

template <class T>
concept Arithmetic = std::integral<T> || std::floating_point<T>;

class Real {
 public:
  constexpr Real() = default;
  template <Arithmetic T>
  constexpr Real(T number) : number_(static_cast<double>(number)) {}
  constexpr explicit operator double() const { return number_; }
  constexpr explicit operator bool() const { return number_ > 0.5; }
  constexpr double number() const { return number_; }

  constexpr Real& operator+=(Real right) { return number_ += right.number_, *this; }
  constexpr Real& operator-=(Real right) { return number_ -= right.number_, *this; }
  constexpr Real& operator*=(Real right) { return number_ *= right.number_, *this; }
  constexpr Real& operator/=(Real right) { return number_ /= right.number_, *this; }
  Real& operator%=(Real right) { return number_ = remainder_of(number_, right.number_), *this; }
  constexpr Real operator-() const { return -number_; }
  constexpr Real operator+() const { return *this; }

  friend constexpr Real operator+(Real a, Real b) { return a.number_ + b.number_; }
  friend constexpr Real operator-(Real a, Real b) { return a.number_ - b.number_; }
  friend constexpr Real operator*(Real a, Real b) { return a.number_ * b.number_; }
  friend constexpr Real operator/(Real a, Real b) { return a.number_ / b.number_; }
  friend Real operator%(Real a, Real b) { return remainder_of(a.number_, b.number_); }

  // NaN is unordered: only != holds. Equal infinities differ by NaN and are equal.
  friend bool operator==(Real a, Real b) { return std::fabs(a.number_ - b.number_) <= tolerance() || a.number_ == b.number_; }
  friend bool operator!=(Real a, Real b) { return !(a == b); }
  friend bool operator<(Real a, Real b) { return b.number_ - a.number_ > tolerance(); }
  friend bool operator>(Real a, Real b) { return b < a; }
  friend bool operator<=(Real a, Real b) { return a.number_ - b.number_ <= tolerance() || a.number_ == b.number_; }
  friend bool operator>=(Real a, Real b) { return b <= a; }

 private:
  double number_ = 0;
};

// A proxy of something that is known to be a number: it has a number() and computes as a Real.
template <class T>
concept NumberProxy = requires {
  typename std::remove_cvref_t<T>::IsNumber;
};
template <class T>
concept NumberOperand = NumberProxy<T> || Arithmetic<std::remove_cvref_t<T>> || std::same_as<std::remove_cvref_t<T>, Real>;

template <class T>
constexpr Real as_real(const T& operand) {
  if constexpr (NumberProxy<T>) {
    return operand.number();
  } else {
    return operand;
  }
}

#define ARENA_NUMBER_OPERATOR(result, symbol)                                                                                     \
  template <class L, class R>                                                                                                     \
  requires((NumberProxy<L> && NumberOperand<R>) || (NumberOperand<L> && NumberProxy<R>)) result operator symbol(const L& left,    \
                                                                                                                const R& right) { \
    return as_real(left) symbol as_real(right);                                                                                   \
  }
ARENA_NUMBER_OPERATOR(Real, +)
ARENA_NUMBER_OPERATOR(Real, -)
ARENA_NUMBER_OPERATOR(Real, *)
ARENA_NUMBER_OPERATOR(Real, /)
ARENA_NUMBER_OPERATOR(Real, %)
ARENA_NUMBER_OPERATOR(bool, ==)
ARENA_NUMBER_OPERATOR(bool, !=)
ARENA_NUMBER_OPERATOR(bool, <)
ARENA_NUMBER_OPERATOR(bool, <=)
ARENA_NUMBER_OPERATOR(bool, >)
ARENA_NUMBER_OPERATOR(bool, >=)
#undef ARENA_NUMBER_OPERATOR
template <NumberProxy T>
Real operator-(const T& operand) {
  return -as_real(operand);
}

}  // namespace arena::script

using arena::script::Real;
