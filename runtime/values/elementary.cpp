// How a result comes out right to the last bit but one: the argument is brought near zero without loss, a short polynomial gives the
// small rest, and where the rest itself must be finer than a double it is carried as the sum of two. The compiler may neither fuse nor
// reorder any of it (-ffp-contract=off, no -ffast-math).
#include "runtime/values/elementary.h"

#include <bit>
#include <cstdint>
#include <limits>

#include "runtime/values/bit_cast.h"
#include "runtime/values/elementary_tables.h"

namespace arena::elementary {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
// Added to a double below 2^51 and taken away again it leaves the nearest integer, whose low bits then stand in the sum.
constexpr double kRounder = 0x1.8p52;

std::uint64_t bits(double number) { return bit_cast<std::uint64_t>(number); }
double from_bits(std::uint64_t number) { return bit_cast<double>(number); }
// 2^exponent, from -1022 to 1023.
double power_of_two(int exponent) { return from_bits(static_cast<std::uint64_t>(exponent + 1023) << 52); }
// The upper half of the digits: products of two such halves are exact.
double upper(double number) { return from_bits(bits(number) & 0xFFFFFFFFF8000000u); }

// a + b and what rounding took away; the first wants |a| >= |b|.
Pair sum_of_ordered(double a, double b) {
  const double sum = a + b;
  return {sum, (a - sum) + b};
}
Pair sum_of(double a, double b) {
  const double sum = a + b, b_part = sum - a;
  return {sum, (a - (sum - b_part)) + (b - b_part)};
}
Pair product_of(double a, double b) {
  const double product = a * b, ah = upper(a), al = a - ah, bh = upper(b), bl = b - bh;
  return {product, ((ah * bh - product) + ah * bl + al * bh) + al * bl};
}

// --- exp ---

// e^(power.high + power.low), |power.high| < 800. A result below the normal numbers is rounded twice.
double exp_of(Pair power) {
  const double shifted = power.high * kExpStepsPerUnit + kRounder, steps = shifted - kRounder;
  const double r = ((power.high - steps * kExpStep.high) - steps * kExpStep.low) + power.low;
  const std::uint64_t count = bits(shifted);
  const Pair& table = kPowersOfTwo[count & 127];
  // The sum is signed and counts 128ths: its low 32 bits are enough.
  const int exponent = static_cast<std::int32_t>(static_cast<std::uint32_t>(count)) >> 7;
  const double square = r * r;
  const double rest = table.low + r + square * (0.5 + r * (1.0 / 6)) + square * square * (1.0 / 24 + r * (1.0 / 120));
  if (exponent >= -1021 && exponent <= 1022) {
    const double scale = from_bits(bits(table.high) + (static_cast<std::uint64_t>(static_cast<std::int64_t>(exponent)) << 52));
    return scale + scale * rest;
  }
  const int half = exponent / 2;
  return (table.high + table.high * rest) * power_of_two(half) * power_of_two(exponent - half);
}

// --- log ---

// A positive number as 2^exponent * part, part from 0.6875 to 1.375, and the interval of the table that it lies in.
struct Parts {
  double part;
  double exponent;
  int interval;
};
Parts parts_of(double number) {
  constexpr std::uint64_t kFirst = 0x3FE6000000000000u;  // 0.6875
  std::uint64_t word = bits(number);
  double exponent = 0;
  if (word < 0x0010000000000000u) {  // below the normal numbers
    word = bits(number * 0x1p54);
    exponent = -54;
  }
  const std::uint64_t above = word - kFirst;
  const std::int64_t whole = static_cast<std::int64_t>(above) >> 52;
  const double part = from_bits(word - (static_cast<std::uint64_t>(whole) << 52));
  // Below 1 the table has 256 intervals to the unit, above it 128, as the digits have.
  return {part, exponent + static_cast<double>(whole), static_cast<int>(above >> 45 & 127)};
}

// ln(1 + r) - r + r * r / 2, over r^3
double log_tail(double r, double square) {
  return (1.0 / 3 - r * 0.25) + square * ((0.2 - r * (1.0 / 6)) + square * ((1.0 / 7 - r * 0.125) + square * (1.0 / 9 - r * 0.1)));
}

// ln(number) as two doubles, right to some 67 bits; for positive finite numbers.
Pair log_of(double number) {
  const Parts parts = parts_of(number);
  const double reciprocal = kReciprocals[parts.interval];
  if (parts.exponent == 0 && reciprocal == 1) {
    const double r = parts.part - 1;
    const Pair square = product_of(r, r);
    const Pair sum = sum_of_ordered(r, -0.5 * square.high);
    return sum_of_ordered(sum.high, sum.low - 0.5 * square.low + r * square.high * log_tail(r, square.high));
  }
  // The reciprocal and the part's upper digits are short, so that both products, the sum of the high parts (all are multiples of 2^-42)
  // and the square are exact.
  const double upper_part = from_bits(bits(parts.part) & 0xFFFFFFFFC0000000u);
  const double r_high = upper_part * reciprocal - 1, r_low = (parts.part - upper_part) * reciprocal, r = r_high + r_low;
  const double high = (parts.exponent * kLn2.high + kLogarithms[parts.interval].high) + r_high, square = r_high * r_high;
  const double low = parts.exponent * kLn2.low + kLogarithms[parts.interval].low;
  const Pair sum = sum_of_ordered(high, -0.5 * square);
  const double rest = r * r * r * log_tail(r, r * r) - r_low * (r_high + 0.5 * r_low);
  return sum_of_ordered(sum.high, (sum.low + r_low) + (low + rest));
}

// --- angles ---

// What is left of an angle after the nearest multiple of pi / 2, and that multiple's number modulo 4.
struct Reduced {
  Pair rest;
  std::uint64_t quarter;
};

struct TwoWords {
  std::uint64_t high, low;
};

// All digits of a product, in steps that a machine with small words knows, too.
TwoWords whole_product(std::uint64_t a, std::uint64_t b) {
  const std::uint64_t a_high = a >> 32, a_low = a & 0xFFFFFFFFu, b_high = b >> 32, b_low = b & 0xFFFFFFFFu;
  const std::uint64_t lowest = a_low * b_low, across = a_high * b_low + (lowest >> 32), other = a_low * b_high + (across & 0xFFFFFFFFu);
  return {a_high * b_high + (across >> 32) + (other >> 32), other << 32 | (lowest & 0xFFFFFFFFu)};
}

// For great angles: the digits of 2 / pi that matter, times those of the angle.
Reduced reduce_far(double angle) {
  const std::uint64_t digits = (bits(angle) & 0x000FFFFFFFFFFFFFu) | 0x0010000000000000u;
  const int exponent = static_cast<int>(bits(angle) >> 52 & 0x7FF) - 1075;  // |angle| is digits * 2^exponent
  // 192 bits of 2 / pi, from where the product has two bits before the point; what stands before them gives whole turns.
  const auto word_at = [first = exponent - 2 + 64](int place) {  // the table begins with a word of zeros
    const int index = first / 64 + place, shift = first % 64;
    return shift == 0 ? kTwoOverPiBits[index] : kTwoOverPiBits[index] << shift | kTwoOverPiBits[index + 1] >> (64 - shift);
  };
  const TwoWords low = whole_product(digits, word_at(2)), above = whole_product(digits, word_at(1));
  const std::uint64_t middle = above.low + low.high, carry = middle < low.high ? 1 : 0;
  const std::uint64_t top = digits * word_at(0) + above.high + carry;
  std::uint64_t quarter = top >> 62, rest = low.low << 2;
  TwoWords fraction{top << 2 | middle >> 62, middle << 2 | low.low >> 62};
  const bool is_below = fraction.high >> 63 != 0;  // the nearest quarter is the next one
  if (is_below) {
    ++quarter;
    fraction = {~fraction.high, ~fraction.low};
    rest = ~rest;
  }
  const int zeros = std::countl_zero(fraction.high);  // no double comes nearer than 2^-62
  if (zeros > 0) fraction = {fraction.high << zeros | fraction.low >> (64 - zeros), fraction.low << zeros | rest >> (64 - zeros)};
  const double scale = power_of_two(-zeros);
  const Pair part = sum_of_ordered(static_cast<double>(fraction.high >> 11) * 0x1p-53 * scale,
                                   static_cast<double>(fraction.high << 53 | fraction.low >> 11) * 0x1p-117 * scale);
  const Pair product = product_of(part.high, kHalfPi.high);
  Pair left = sum_of_ordered(product.high, product.low + (part.high * kHalfPi.low + part.low * kHalfPi.high));
  if (is_below != (angle < 0)) left = {-left.high, -left.low};
  return {left, angle < 0 ? 0 - quarter : quarter};
}

Reduced reduce(double angle) {
  if (std::fabs(angle) > 1e6) return reduce_far(angle);
  const double shifted = angle * kTwoOverPi + kRounder, quarters = shifted - kRounder;
  const double first = angle - quarters * kHalfPiParts[0];  // the products with the parts of 33 bits are exact
  const double near = first - quarters * kHalfPiParts[1];
  if (std::fabs(near) > 0x1p-10) {  // little was cancelled
    const double low = ((first - near) - quarters * kHalfPiParts[1]) - quarters * kHalfPiParts[2];
    return {sum_of_ordered(near, low), bits(shifted)};
  }
  const Pair second = sum_of(first, -quarters * kHalfPiParts[1]);
  const Pair third = sum_of(second.high, -quarters * kHalfPiParts[2]);
  return {sum_of_ordered(third.high, (second.low + third.low) - quarters * kHalfPiParts[3]), bits(shifted)};
}

template <std::size_t n>
double polynomial(const double (&terms)[n], double z) {
  double sum = terms[n - 1];
  for (std::size_t i = n - 1; i-- > 0;) sum = sum * z + terms[i];
  return sum;
}

double near_sine(Pair x) {
  const double z = x.high * x.high;
  return x.high + (x.high * z * polynomial(kSine, z) + x.low * (1 - 0.5 * z));
}
double near_cosine(Pair x) {
  const double z = x.high * x.high, half = 0.5 * z, one = 1 - half;
  return one + (((1 - one) - half) + (z * z * polynomial(kCosine, z) - x.high * x.low));
}

// Sine and cosine a little beyond a double, for their quotient.
Pair fine_sine(Pair x) {
  const double z = x.high * x.high;
  return sum_of_ordered(x.high, x.high * z * polynomial(kSine, z) + x.low * (1 - 0.5 * z));
}
Pair fine_cosine(Pair x) {
  const Pair z = product_of(x.high, x.high);
  const double half = 0.5 * z.high, one = 1 - half;
  return sum_of_ordered(one, ((1 - one) - half) + (z.high * z.high * polynomial(kCosine, z.high) - (x.high * x.low + 0.5 * z.low)));
}
Pair quotient_of(Pair above, Pair below) {
  const double quotient = above.high / below.high, inverse = 1 / below.high;
  const Pair back = product_of(quotient, below.high);
  return {quotient, (((above.high - back.high) - back.low) + above.low - quotient * below.low) * inverse};
}

// The arc tangent of y / x, 0 <= y <= x, x > 0, neither near the ends of the exponents.
Pair near_arc_tangent(Pair y, Pair x) {
  const double shifted = y.high / x.high * 64 + kRounder;
  const std::uint64_t place = bits(shifted) & 127;
  const double c = (shifted - kRounder) * (1.0 / 64);
  // (y - c x) / (x + c y) is the tangent of what is left; c has few digits, so its products with halves are exact.
  const double x_upper = upper(x.high), y_upper = upper(y.high);
  const Pair above = sum_of(y.high - c * x_upper, -c * (x.high - x_upper));
  const Pair sum_below = sum_of_ordered(x.high, c * y_upper);
  const Pair below = sum_of_ordered(sum_below.high, sum_below.low + c * (y.high - y_upper) + (x.low + c * y.low));
  const Pair t = quotient_of({above.high, above.low + (y.low - c * x.low)}, below);
  const double square = t.high * t.high;
  const double rest = t.high * square * (-1.0 / 3 + square * (0.2 + square * (-1.0 / 7 + square * (1.0 / 9))));
  const Pair sum = sum_of_ordered(kArcTangents[place].high, t.high);
  return sum_of_ordered(sum.high, sum.low + (kArcTangents[place].low + t.low + rest));
}

// The direction of (x, y), both positive.
Pair quadrant_angle(Pair y, Pair x) {
  if (y.high <= x.high) return near_arc_tangent(y, x);
  const Pair other = near_arc_tangent(x, y);
  const Pair sum = sum_of_ordered(kHalfPi.high, -other.high);
  return {sum.high, sum.low + (kHalfPi.low - other.low)};
}

}  // namespace

double exp(double power) {
  if (!(std::fabs(power) < 745.2)) {
    if (std::isnan(power)) return power;
    return power > 0 ? kInfinity : 0;
  }
  return exp_of({power, 0});
}

double log(double number) {
  if (!(number > 0 && number < kInfinity)) return number == 0 ? -kInfinity : number < 0 ? kNan : number;
  const Parts parts = parts_of(number);
  const double reciprocal = kReciprocals[parts.interval];
  if (parts.exponent == 0 && reciprocal == 1) {
    const double r = parts.part - 1, square = r * r;
    return r + (r * square * log_tail(r, square) - 0.5 * square);
  }
  const double upper_part = upper(parts.part);
  const double r_high = upper_part * reciprocal - 1, r_low = (parts.part - upper_part) * reciprocal;
  const double high = (parts.exponent * kLn2.high + kLogarithms[parts.interval].high) + r_high;
  const double low = parts.exponent * kLn2.low + kLogarithms[parts.interval].low;
  const double r = r_high + r_low, square = r * r;
  return high + ((r_low + low) + (r * square * log_tail(r, square) - 0.5 * square));
}

namespace {

// size^exponent for a positive finite size.
double power_of(double size, double exponent) {
  if (std::fabs(exponent) < 0x1p-65) return 1;
  const Pair logarithm = log_of(size);
  if (std::fabs(exponent) > 0x1p100) return size == 1 ? 1 : (logarithm.high > 0) == (exponent > 0) ? kInfinity : 0;
  const Pair power = product_of(exponent, logarithm.high);
  if (std::fabs(power.high) > 746) return power.high > 0 ? kInfinity : 0;
  return exp_of({power.high, power.low + exponent * logarithm.low});
}

}  // namespace

double pow(double base, double exponent) {
  if (base > 0 && base < kInfinity && std::fabs(exponent) < kInfinity) return power_of(base, exponent);
  if (exponent == 0 || base == 1) return 1;
  if (std::isnan(base) || std::isnan(exponent)) return kNan;
  const double size = std::fabs(base);
  if (std::isinf(exponent)) return size == 1 ? 1 : (size > 1) == (exponent > 0) ? kInfinity : 0;
  const bool is_whole = std::floor(exponent) == exponent;
  const double sign = std::signbit(base) && is_whole && std::fmod(exponent, 2) != 0 ? -1 : 1;
  if (size == 0 || size == kInfinity) return sign * ((size == 0) == (exponent > 0) ? 0 : kInfinity);
  return is_whole ? sign * power_of(size, exponent) : kNan;
}

namespace {

// The sine of an angle of so many quarters and a rest. Both series are worked out, for the processor cannot guess which one is wanted.
double sine_at(Pair rest, std::uint64_t quarter) {
  const double sine = near_sine(rest), cosine = near_cosine(rest);
  const std::uint64_t chosen = (quarter & 1) != 0 ? bits(cosine) : bits(sine);
  return from_bits(chosen ^ (quarter & 2) << 62);
}

}  // namespace

double sin(double radians) {
  if (std::fabs(radians) <= kHalfPi.high / 2) return std::fabs(radians) < 0x1p-27 ? radians : near_sine({radians, 0});
  if (!(std::fabs(radians) < kInfinity)) return kNan;
  const Reduced angle = reduce(radians);
  return sine_at(angle.rest, angle.quarter);
}

double cos(double radians) {
  if (std::fabs(radians) <= kHalfPi.high / 2) return near_cosine({radians, 0});
  if (!(std::fabs(radians) < kInfinity)) return kNan;
  const Reduced angle = reduce(radians);
  return sine_at(angle.rest, angle.quarter + 1);
}

double tan(double radians) {
  if (std::fabs(radians) < 0x1p-27) return radians;
  if (!(std::fabs(radians) < kInfinity)) return kNan;
  const Reduced angle = std::fabs(radians) <= kHalfPi.high / 2 ? Reduced{{radians, 0}, 0} : reduce(radians);
  const Pair sine = fine_sine(angle.rest), cosine = fine_cosine(angle.rest);
  const bool is_odd = (angle.quarter & 1) != 0;
  const Pair value = quotient_of({is_odd ? -cosine.high : sine.high, is_odd ? -cosine.low : sine.low},
                                 {is_odd ? sine.high : cosine.high, is_odd ? sine.low : cosine.low});
  return value.high + value.low;
}

double atan2(double y, double x) {
  if (std::isnan(y) || std::isnan(x)) return kNan;
  double across = std::fabs(x), up = std::fabs(y);
  const bool is_left = std::signbit(x);
  double angle = 0;
  if (up == 0 || across == kInfinity) {
    angle = up == kInfinity ? (is_left ? 3 * kHalfPi.high / 2 : kHalfPi.high / 2) : is_left ? kWholePi.high : 0;
  } else if (across == 0 || up == kInfinity) {
    angle = kHalfPi.high;
  } else {
    const int most = static_cast<int>(bits(across > up ? across : up) >> 52);
    const int least = static_cast<int>(bits(across > up ? up : across) >> 52);
    if (most - least > 64) {
      angle = up > across ? kHalfPi.high : is_left ? kWholePi.high : up / across;
    } else {
      if (most > 1500 || least < 500) {  // far from the ends of the exponents nothing is lost
        const double scale = most > 1500 ? 0x1p-600 : 0x1p600;
        across *= scale;
        up *= scale;
      }
      const Pair value = quadrant_angle({up, 0}, {across, 0});
      if (is_left) {
        const Pair sum = sum_of_ordered(kWholePi.high, -value.high);
        angle = sum.high + (sum.low + (kWholePi.low - value.low));
      } else {
        angle = value.high + value.low;
      }
    }
  }
  return std::signbit(y) ? -angle : angle;
}

double atan(double ratio) { return atan2(ratio, 1); }

namespace {

// sqrt(1 - x * x), 0 <= x < 1, as two doubles.
Pair side_of(double x) {
  const Pair square = product_of(x, x);
  const Pair rest = sum_of_ordered(1, -square.high);
  const double low = rest.low - square.low, root = std::sqrt(rest.high + low);
  const Pair back = product_of(root, root);
  return {root, (((rest.high - back.high) - back.low) + low) / (2 * root)};
}

}  // namespace

double asin(double ratio) {
  const double size = std::fabs(ratio);
  if (!(size < 1)) return size == 1 ? std::copysign(kHalfPi.high, ratio) : kNan;
  if (size < 0x1p-27) return ratio;
  const Pair angle = quadrant_angle({size, 0}, side_of(size));
  return std::copysign(angle.high + angle.low, ratio);
}

double acos(double ratio) {
  const double size = std::fabs(ratio);
  if (!(size < 1)) return size == 1 ? (ratio > 0 ? 0 : kWholePi.high) : kNan;
  if (size < 0x1p-60) return kHalfPi.high;
  const Pair angle = quadrant_angle(side_of(size), {size, 0});
  if (ratio > 0) return angle.high + angle.low;
  const Pair sum = sum_of_ordered(kWholePi.high, -angle.high);
  return sum.high + (sum.low + (kWholePi.low - angle.low));
}

}  // namespace arena::elementary
