// The way of builds whose standard library has no decimal numbers: the same texts and numbers as the library's own.
#include "runtime/values/real_chars.h"

#include <gtest/gtest.h>

#include "runtime/instances_loop/random.h"
#include "runtime/values/bit_cast.h"

namespace arena::test {
namespace {

template <class Put>
std::string text_by(Put put) {
  char buffer[512];
  const std::to_chars_result result = put(buffer, buffer + sizeof buffer);
  return result.ec == std::errc() ? std::string(buffer, static_cast<std::size_t>(result.ptr - buffer)) : "does not fit";
}

void expect_the_same_texts(double number) {
  EXPECT_EQ(text_by([&](char* first, char* last) { return real_chars::exact(first, last, number); }),
            text_by([&](char* first, char* last) { return std::to_chars(first, last, number); }));
  for (const int decimals : {0, 2})
    EXPECT_EQ(text_by([&](char* first, char* last) { return real_chars::fixed(first, last, number, decimals); }),
              text_by([&](char* first, char* last) { return std::to_chars(first, last, number, std::chars_format::fixed, decimals); }));
}

void expect_the_same_number(const std::string& text) {
  double ours = 5, theirs = 5;
  const char* const end = text.data() + text.size();
  const std::from_chars_result mine = real_chars::from(text.data(), end, ours), other = std::from_chars(text.data(), end, theirs);
  EXPECT_EQ(mine.ptr - text.data(), other.ptr - text.data()) << text;
  EXPECT_EQ(mine.ec, other.ec) << text;
  EXPECT_EQ(bit_cast<std::uint64_t>(ours), bit_cast<std::uint64_t>(theirs)) << text;
}

TEST(RealChars, AreThoseOfTheStandardLibrary) {
  for (const double each : {0.0,
                            -0.0,
                            1.0,
                            0.1,
                            100000.0,
                            1e5 + 1,
                            123456.0,
                            1e15,
                            1e16,
                            1e21,
                            1e22,
                            1e23,
                            5e-324,
                            2.2250738585072014e-308,
                            1.7976931348623157e308,
                            0.125,
                            0.375,
                            2.5,
                            1e-4,
                            1e-5,
                            123456789012345680000.0,
                            9007199254740993.0,
                            -1.25e10})
    expect_the_same_texts(each);
  RandomGenerator chance(5);
  for (int round = 0; round < 20000 && !::testing::Test::HasFailure(); ++round) {
    const double any = bit_cast<double>(chance.next());
    if (std::isfinite(any)) expect_the_same_texts(any);
    expect_the_same_texts(static_cast<double>(chance.integer(-100000000, 100000000)) / 1000);
  }
  for (const char* each : {"1",
                           "-1.5%",
                           "-",
                           "--1",
                           "-.5",
                           "-0",
                           "+1",
                           "1.5",
                           ".5",
                           "5.",
                           ".",
                           "",
                           "e5",
                           "1e",
                           "1e+",
                           "1e5",
                           "1E-5",
                           "1e400",
                           "1e-400",
                           "0e400",
                           "0.0e-999",
                           "12abc",
                           "1.5.5",
                           "1e5.5",
                           "17976931348623157e292",
                           "2.4703282292062327e-324",
                           "2.4703282292062328e-324",
                           "9007199254740993",
                           "0.1000000000000000055511151231257827021181583404541015625"})
    expect_the_same_number(each);
}

}  // namespace
}  // namespace arena::test
