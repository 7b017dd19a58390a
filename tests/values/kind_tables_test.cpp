// Every operator and comparison over every pair of kinds, against tables written down from the rules.
#include <string>
#include <vector>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/reports/report.h"
#include "runtime/values/compare.h"
#include "runtime/values/operators.h"
#include "runtime/values/strings.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

struct Sample {
  const char* name;
  RValue value;
};

// One value of each kind that an operator treats in its own way, in the order of the tables' rows and columns.
std::vector<Sample> samples() {
  return {{"number", RValue(7.0)},
          {"bool", RValue::of_bool(true)},
          {"string", make_string("3")},
          {"int32", RValue::of_int32(5)},
          {"int64", RValue::of_int64(4)},
          {"ref", RValue::of_ref(77, 2)},
          {"ptr", RValue::of_pointer(reinterpret_cast<void*>(8))},
          {"array", make_array(1)},
          {"undefined", RValue()},
          {"struct", make_struct()},
          {"null", RValue::null()},
          {"unset", RValue::unset()}};
}

// What came of an operation: n number, i int32, l int64, s string; T the type error, A "unable to add a number to string", C a conversion
// that failed, Z a division by zero.
char outcome(Operator operation, const RValue& left, const RValue& right) {
  RValue result(left);
  try {
    operate(operation, result, right);
  } catch (const WBKSLException& error) {
    const std::string& message = error.message();
    if (message.starts_with("invalid type for ")) return 'T';
    if (message == "unable to add a number to string") return 'A';
    if (message == "divide by zero" || message == "unable to mod by 0") return 'Z';
    return message.find("argument") != std::string::npos ? 'C' : '?';
  }
  switch (result.kind()) {
    case kNumber: return 'n';
    case kInt32: return 'i';
    case kInt64: return 'l';
    case kString: return 's';
    default: return '?';
  }
}

struct Table {
  const char* name;
  Operator operation;
  // Right operand:     num bool str i32 i64 ref ptr arr und obj nul uns
  const char* rows[12];
};

const Table kTables[] = {
    {"+",
     Operator::kAdd,
     {"nnnnnnCCCCCC", "nnnnnnCCCCCC", "AAsAAAAAAAAA", "niiiliiCCCCC", "nllllllCCCCC", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT",
      "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT"}},
    {"-",
     Operator::kSubtract,
     {"nnnnnnCCCCCC", "nnnnnnCCCCCC", "TTTTTTTTTTTT", "niiiliiCCCCC", "nllllllCCCCC", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT",
      "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT"}},
    {"*",
     Operator::kMultiply,
     {"nnnnnnCCCCCC", "nnnnnnCCCCCC", "TTTTTTTTTTTT", "niiiliiCCCCC", "nllllllCCCCC", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT",
      "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT"}},
    {"/",
     Operator::kDivide,
     {"nnnnnnTCCCCC", "nnnnnnTCCCCC", "nnnnnnCCCCCC", "nnnilnCCCCCC", "nnnllnTCCCCC", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT",
      "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT"}},
    {"%",
     Operator::kRemainder,
     {"nnnnnnCCCCCC", "nnnnnnCCCCCC", "TTTTTTTTTTTT", "niiiliiCCCCC", "nllllllCCCCC", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT",
      "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT", "TTTTTTTTTTTT"}},
};

class KindTables : public TestGame {};

TEST_F(KindTables, OperatorsOverEveryPairOfKinds) {
  const std::vector<Sample> all = samples();
  for (const Table& table : kTables) {
    for (std::size_t left = 0; left < all.size(); ++left) {
      for (std::size_t right = 0; right < all.size(); ++right) {
        EXPECT_EQ(outcome(table.operation, all[left].value, all[right].value), table.rows[left][right])
            << all[left].name << " " << table.name << " " << all[right].name;
      }
    }
  }
}

TEST_F(KindTables, AFailedOperationLeavesTheLeftOperand) {
  const ErrorSuppression quiet;
  const std::vector<Sample> all = samples();
  for (const Table& table : kTables) {
    for (std::size_t left = 0; left < all.size(); ++left) {
      for (std::size_t right = 0; right < all.size(); ++right) {
        if (std::string("TAC").find(table.rows[left][right]) == std::string::npos) continue;
        RValue result(all[left].value);
        operate(table.operation, result, all[right].value);
        EXPECT_EQ(result.kind(), all[left].value.kind()) << all[left].name << " " << table.name << " " << all[right].name;
        EXPECT_EQ(result.i64, all[left].value.i64) << all[left].name << " " << table.name << " " << all[right].name;
      }
    }
  }
}

TEST_F(KindTables, ComparisonsOfNumbersAgreeWithTheirOrder) {
  // The same number in every kind that can hold it, and neighbours on both sides.
  const double numbers[] = {-3, -1, 0, 1, 2, 250};
  const auto kinds_of = [](double number) {
    const auto whole = static_cast<std::int32_t>(number);
    return std::vector<RValue>{RValue(number), RValue::of_int32(whole), RValue::of_int64(whole), make_string(std::to_string(whole)),
                               RValue::of_ref(77, whole)};
  };
  for (const double left : numbers) {
    for (const double right : numbers) {
      const int expected = left < right ? -1 : left > right ? 1 : 0;
      for (const RValue& a : kinds_of(left)) {
        for (const RValue& b : kinds_of(right)) {
          if (a.kind() == b.kind() && (a.is_string() || a.kind() == kRef)) continue;  // as texts; as type and index
          EXPECT_EQ(compare(a, b), expected) << type_name(a) << " " << left << " against " << type_name(b) << " " << right;
        }
      }
    }
  }
}

TEST_F(KindTables, WhatHasNoOrderComparesAsTheRulesSay) {
  const std::vector<Sample> all = samples();
  for (const Sample& other : all) {
    const std::uint32_t kind = other.value.kind();
    if (kind == kUnset) continue;
    EXPECT_EQ(compare(RValue(), other.value), kind == kUndefined ? 0 : -2) << "undefined against " << other.name;
    EXPECT_EQ(compare(other.value, RValue()), kind == kUndefined ? 0 : -2) << other.name << " against undefined";
    EXPECT_THROW(compare(RValue::unset(), other.value), WBKSLException) << other.name;
    EXPECT_THROW(compare(other.value, RValue::unset()), WBKSLException) << other.name;
    if (kind == kUndefined) continue;
    EXPECT_EQ(compare(make_array(1), other.value), 1) << "an array against " << other.name;
    EXPECT_EQ(compare(other.value, make_array(1)), 1) << other.name << " against an array";
    EXPECT_THROW(compare(make_array(1), other.value, 1e-5, true), WBKSLException) << "strictly, against " << other.name;
  }
}

}  // namespace
}  // namespace arena::test
