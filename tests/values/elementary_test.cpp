// The runtime's elementary functions against MPFR: the error in units of the last place, over arguments of every size and near every
// seam of the algorithms; and the special values.
#include "runtime/values/elementary.h"

#include <gtest/gtest.h>
#include <mpfr.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace arena::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class Exact {
 public:
  Exact() {
    mpfr_init2(value_, 200);
    mpfr_init2(x_, 53);
    mpfr_init2(y_, 53);
  }
  ~Exact() {
    mpfr_clear(value_);
    mpfr_clear(x_);
    mpfr_clear(y_);
  }
  Exact(const Exact&) = delete;
  Exact& operator=(const Exact&) = delete;

  // How far `given` lies from f(x) or f(x, y), in units of the last place of a double there.
  double error(int (*f)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t), double x, double given) {
    mpfr_set_d(x_, x, MPFR_RNDN);
    f(value_, x_, MPFR_RNDN);
    return distance(given);
  }
  double error(int (*f)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t), double x, double y, double given) {
    mpfr_set_d(x_, x, MPFR_RNDN);
    mpfr_set_d(y_, y, MPFR_RNDN);
    f(value_, x_, y_, MPFR_RNDN);
    return distance(given);
  }

 private:
  double distance(double given) {
    const double nearest = mpfr_get_d(value_, MPFR_RNDN);
    if (!std::isfinite(nearest) || !std::isfinite(given)) return nearest == given || (std::isnan(nearest) && std::isnan(given)) ? 0 : 1e9;
    const int exponent = nearest == 0 ? -1074 : std::max(std::ilogb(nearest) - 52, -1074);
    mpfr_sub_d(value_, value_, given, MPFR_RNDN);
    mpfr_mul_2si(value_, value_, -exponent, MPFR_RNDN);
    return std::fabs(mpfr_get_d(value_, MPFR_RNDN));
  }
  mpfr_t value_, x_, y_;
};

class Elementary : public ::testing::Test {
 protected:
  double between(double low, double high) { return low + (high - low) * std::uniform_real_distribution<double>()(random_); }
  // Any finite double, all exponents alike.
  double any() {
    for (;;) {
      const double number = std::bit_cast<double>(random_());
      if (std::isfinite(number)) return number;
    }
  }
  double any_near_one(int least_exponent) { return std::ldexp(between(1, 2), static_cast<int>(random_() % 64) + least_exponent); }
  static double nudged(double number, int steps) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(number) + static_cast<std::uint64_t>(static_cast<std::int64_t>(steps)));
  }
  void look(const char* name, double (*mine)(double), int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t), double x) {
    note(name, exact_.error(exact, x, mine(x)), x, 0);
  }
  void look(const char* name, double (*mine)(double, double), int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t), double x,
            double y) {
    note(name, exact_.error(exact, x, y, mine(x, y)), x, y);
  }
  void note(const char* name, double error, double x, double y) {
    if (!(error > worst_)) return;
    worst_ = error;
    at_ = ::testing::PrintToString(x) + ", " + ::testing::PrintToString(y);
    name_ = name;
  }
  void TearDown() override {
    RecordProperty("worst_ulp", std::to_string(worst_));
    EXPECT_LT(worst_, 1) << name_ << " at " << at_;
    std::printf("worst %.3f ulp: %s(%s)\n", worst_, name_.c_str(), at_.c_str());
  }

  std::mt19937_64 random_{2026};

 private:
  Exact exact_;
  double worst_ = -1;
  std::string at_, name_;
};

TEST_F(Elementary, Exp) {
  for (int i = 0; i < 40000; ++i) {
    look("exp", elementary::exp, mpfr_exp, between(-746, 710));
    look("exp", elementary::exp, mpfr_exp, between(-1, 1));
    look("exp", elementary::exp, mpfr_exp, any());
    look("exp", elementary::exp, mpfr_exp, nudged((std::round(between(-3000, 3000)) + 0.5) * 0.005415212348514945, i % 5 - 2));
    look("exp", elementary::exp, mpfr_exp, -between(705, 746));  // below the normal numbers
  }
}

TEST_F(Elementary, Log) {
  for (int i = 0; i < 40000; ++i) {
    look("log", elementary::log, mpfr_log, std::fabs(any()));
    look("log", elementary::log, mpfr_log, between(0.5, 2));
    look("log", elementary::log, mpfr_log, 1 + std::ldexp(between(-1, 1), -static_cast<int>(random_() % 54)));
    look("log", elementary::log, mpfr_log, nudged(0.6875 + static_cast<double>(i % 200) / 256, i % 7 - 3));
  }
}

TEST_F(Elementary, Pow) {
  for (int i = 0; i < 20000; ++i) {
    const double base = std::fabs(any()), near = 1 + std::ldexp(between(-1, 1), -static_cast<int>(random_() % 54));
    look("pow", elementary::pow, mpfr_pow, base, between(-745, 745) / std::log(base));
    look("pow", elementary::pow, mpfr_pow, near, between(-745, 745) / std::log(near));
    look("pow", elementary::pow, mpfr_pow, between(0, 20), between(-20, 20));
    look("pow", elementary::pow, mpfr_pow, -between(0, 9), std::round(between(-300, 300)));
    look("pow", elementary::pow, mpfr_pow, base, any());
    look("pow", elementary::pow, mpfr_pow, between(0.5, 2), -between(705, 746) / 0.6931471805599453);
  }
}

TEST_F(Elementary, SinCosTan) {
  const auto all = [&](double x) {
    look("sin", elementary::sin, mpfr_sin, x);
    look("cos", elementary::cos, mpfr_cos, x);
    look("tan", elementary::tan, mpfr_tan, x);
  };
  for (int i = 0; i < 25000; ++i) {
    all(between(-10, 10));
    all(between(-1e6, 1e6));
    all(any());
    all(any_near_one(-30));
    all(nudged(std::round(between(-650000, 650000)) * 0.7853981633974483, i % 5 - 2));  // at the multiples of pi / 4
    all(std::ldexp(std::nearbyint(std::ldexp(1.5707963267948966 * i, 30)), -30));
  }
  // The double that comes nearest to a multiple of pi / 2, and others known to be hard.
  for (const double hard : {6381956970095103.0 * 0x1p797, 1e22, 1.6e308, 0x1.921fb54442d18p0, 2.0e6, 1048576.5, 5e-324, 1e-300}) {
    all(hard);
    all(-hard);
  }
}

TEST_F(Elementary, ArcFunctions) {
  for (int i = 0; i < 20000; ++i) {
    look("atan2", elementary::atan2, mpfr_atan2, between(-1, 1), between(-1, 1));
    look("atan2", elementary::atan2, mpfr_atan2, any(), any());
    const double x = any();
    look("atan2", elementary::atan2, mpfr_atan2, x * between(-2, 2), x);
    look("atan2", elementary::atan2, mpfr_atan2, x * std::ldexp(between(-2, 2), -static_cast<int>(random_() % 70)), x);
    look("atan2", elementary::atan2, mpfr_atan2, nudged((i % 130 + 0.5) / 64, i % 7 - 3), between(0, 1) > 0.5 ? 1 : -1);
    look("atan2", elementary::atan2, mpfr_atan2, std::round(between(-2000, 2000)), std::round(between(-2000, 2000)));
    look("asin", elementary::asin, mpfr_asin, between(-1, 1));
    look("acos", elementary::acos, mpfr_acos, between(-1, 1));
    const double edge = 1 - std::ldexp(between(0, 1), -static_cast<int>(random_() % 54));
    look("asin", elementary::asin, mpfr_asin, edge);
    look("acos", elementary::acos, mpfr_acos, -edge);
    look("acos", elementary::acos, mpfr_acos, edge);
    look("asin", elementary::asin, mpfr_asin, std::ldexp(between(-1, 1), -static_cast<int>(random_() % 80)));
  }
}

// Every pair of special values, as the C library has them.
TEST(ElementarySpecials, AreThoseOfTheCStandard) {
  const double nan = std::nan(""), least = 5e-324, most = std::numeric_limits<double>::max();
  const double values[] = {0.0,   -0.0,   1,     -1,     0.5,  -0.5,  2,         -2,         3,  -3,
                           1e300, -1e300, least, -least, most, -most, kInfinity, -kInfinity, nan};
  const auto same = [](double mine, double standard) {
    return std::isnan(mine) ? std::isnan(standard)
                            : std::signbit(mine) == std::signbit(standard) &&
                                  (mine == standard || std::fabs(mine - standard) <= 3e-16 * std::fabs(standard));
  };
  for (const double x : values) {
    for (const double y : values) {
      EXPECT_TRUE(same(elementary::pow(x, y), std::pow(x, y))) << x << " ^ " << y << " = " << elementary::pow(x, y);
      EXPECT_TRUE(same(elementary::atan2(x, y), std::atan2(x, y))) << "atan2 " << x << " " << y << " = " << elementary::atan2(x, y);
    }
    EXPECT_TRUE(same(elementary::exp(x), std::exp(x))) << "exp " << x;
    EXPECT_TRUE(same(elementary::log(x), std::log(x))) << "log " << x;
    EXPECT_TRUE(same(elementary::sin(x), std::sin(x))) << "sin " << x;
    EXPECT_TRUE(same(elementary::cos(x), std::cos(x))) << "cos " << x;
    EXPECT_TRUE(same(elementary::tan(x), std::tan(x))) << "tan " << x;
    EXPECT_TRUE(same(elementary::asin(x), std::asin(x))) << "asin " << x;
    EXPECT_TRUE(same(elementary::acos(x), std::acos(x))) << "acos " << x;
    EXPECT_TRUE(same(elementary::atan(x), std::atan(x))) << "atan " << x;
  }
}

}  // namespace
}  // namespace arena::test
