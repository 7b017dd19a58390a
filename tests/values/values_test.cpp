// The laws of values: conversions, operators, comparisons, texts. Expected results are worked out by hand from the rules.
#include <utility>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/slots.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/program/names.h"
#include "runtime/script.h"
#include "runtime/values/strings.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Values : public TestGame {};

TEST_F(Values, ConvertToNumbers) {
  check({
      {"real(\"  12.5 \")", "12.50"},
      {"real(\"0x10\")", "16"},
      {"real(\"-3\")", "-3"},
      {"real(\"1e3\")", "1000"},
      {"real(int64(7))", "7"},
      {"real(true)", "1"},
      {"real(ref(5, 9))", "9"},
      {"real(\"abc\")", "! unable to convert string \"abc\" to number"},
      {"real(\"\")", "! unable to convert string \"\" to number"},
      {"real(\"1 2\")", "! unable to convert string \"1 2\" to number"},
      {"real([1])", "! REAL argument incorrect type array"},
      {"real(undefined)", "! REAL argument incorrect type undefined"},
      {"real({a: 1})", "! REAL argument incorrect type struct"},
      {"real(ptr(4))", "! REAL argument incorrect type ptr"},
      {"real(unset())", "! REAL argument is unset"},
      {"real(null)", "! REAL argument incorrect type null"},
      {"real(kind(3))", "! REAL argument incorrect type ptr"},
      {"real(kind(4))", "! REAL argument incorrect type vec3"},
      {"real(kind(77))", "! REAL argument incorrect type unknown"},
      {"int32(2.9)", "2"},
      {"int32(-2.9)", "-2"},
      {"int32(1e12)", "2147483647"},
      {"int32(-1e12)", "-2147483648"},
      {"int32(NaN)", "0"},
      {"int32(int64(4294967297))", "1"},
      {"int32(ptr(4294967298))", "2"},
      {"int32(\"41.9\")", "41"},
      {"int32(\"9999999999\")", "2147483647"},
      {"int32(\"-9999999999\")", "-2147483648"},
      {"int32(\"-9999999999.7\")", "-2147483648"},
      {"int32(\"0xFFFFFFFF\")", "2147483647"},
      {"int32(\"-0xFFFFFFFFFFFFFFFFFF\")", "-2147483648"},
      {"int64(\"99999999999999999999\")", "9223372036854775807"},
      {"int64(\"-99999999999999999999\")", "-9223372036854775808"},
      {"int64(\"0xFFFFFFFFFFFFFFFF\")", "9223372036854775807"},
      {"int32(5) + \"9999999999\"", "-2147483644"},  // 5 + 2147483647 wraps
      {"int32(\"x\")", "! unable to convert string \"x\" to integer"},
      {"int32([1])", "! I32 argument is array"},
      {"int32(undefined)", "! I32 argument is undefined"},
      {"int32(unset())", "! I32 argument is unset"},
      {"int32({})", "! I32 argument incorrect type 6"},
      {"int32(null)", "! I32 argument incorrect type 12"},
      {"int64(-1.5)", "-1"},
      {"int64(int32(-5))", "-5"},
      {"int64(1e300)", "9223372036854775807"},
      {"int64(\"y\")", "! unable to convert string \"y\" to int64"},
      {"int64([1])", "! INT64 argument is array"},
      {"int64(undefined)", "! I64 argument is undefined"},
      {"int64(unset())", "! I64 argument is unset"},
      {"int64(kind(14))", "! I64 argument incorrect type 14"},
  });
}

TEST_F(Values, TruthIsAboveOneHalf) {
  check({
      {"bool(0.5)", "false"},
      {"bool(0.50001)", "true"},
      {"bool(-1)", "false"},
      {"bool(NaN)", "false"},
      {"bool(int32(1))", "true"},
      {"bool(int32(-1))", "false"},
      {"bool(int64(1))", "true"},
      {"bool(undefined)", "false"},
      {"bool({})", "true"},
      {"bool(ptr(0))", "false"},
      {"bool(ptr(1))", "true"},
      {"bool(\"true\")", "true"},
      {"bool(\"0.4\")", "false"},
      {"bool(\"maybe\")", "! unable to convert string \"maybe\" to bool"},
      {"bool([1])", "! bool argument is array"},
      {"bool(unset())", "! bool argument is unset"},
      {"bool(kind(11))", "! bool argument incorrect type 11"},
      {"!0.5", "true"},
      {"1 && 0.4", "false"},
      {"0 || 0.6", "true"},
  });
}

TEST_F(Values, Add) {
  check({
      {"1 + 2.5", "3.50"},
      {"typeof(true + 1)", "number"},
      {"true + true", "2"},
      {"1 + \"2\"", "3"},
      {"\"a\" + \"b\"", "ab"},
      {"\"a\" + 1", "! unable to add a number to string"},
      {"typeof(int32(1) + int32(2))", "int32"},
      {"int32(2147483647) + int32(1)", "-2147483648"},
      {"typeof(int32(1) + 2.5)", "number"},
      {"typeof(int32(1) + int64(2))", "int64"},
      {"typeof(int32(1) + true)", "int32"},
      {"typeof(int64(1) + 1)", "number"},
      {"typeof(int64(1) + int32(1))", "int64"},
      {"int64(9223372036854775807) + int64(1)", "-9223372036854775808"},
      {"typeof(int64(1) + \"3\")", "int64"},
      {"[1] + 1", "! invalid type for += lhs=[1] (type=2), rhs=1 (type=0)"},
      {"undefined + 1", "! invalid type for += lhs=undefined (type=5), rhs=1 (type=0)"},
      {"1 + undefined", "! REAL argument incorrect type undefined"},
  });
}

TEST_F(Values, SubtractMultiplyDivideRemainder) {
  check({
      {"\"a\" - 1", "! invalid type for -= lhs=a (type=1), rhs=1 (type=0)"},
      {"\"2\" * 2", "! invalid type for *= lhs=2 (type=1), rhs=2 (type=0)"},
      {"typeof(int32(7) - int32(2))", "int32"},
      {"int32(7) * int64(3)", "21"},
      {"typeof(int32(7) * int64(3))", "int64"},
      {"7 / 2", "3.50"},
      {"typeof(int32(7) / int32(2))", "int32"},
      {"int32(7) / int32(2)", "3"},
      {"int32(-7) / int32(2)", "-3"},
      {"typeof(int32(7) / int64(2))", "int64"},
      {"typeof(int32(7) / 2)", "number"},
      {"int32(7) / 2", "3.50"},
      {"int32(7) / true", "7"},
      {"int32(7) / int32(0)", "! divide by zero"},
      {"int64(7) / int64(0)", "! divide by zero"},
      {"7 / 0", "inf"},
      {"-7 / 0", "-inf"},
      {"0 / 0", "NaN"},
      {"int32(-2147483648) / int32(-1)", "-2147483648"},
      {"\"7\" / 2", "3.50"},
      {"typeof(true / 2)", "number"},
      {"1 / ptr(1)", "! invalid type for /= lhs=1 (type=0), rhs=0000000000000001 (type=3)"},
      {"int64(1) / ptr(1)", "! invalid type for /= lhs=1 (type=10), rhs=0000000000000001 (type=3)"},
      {"null / 1", "! invalid type for /= lhs=null (type=12), rhs=1 (type=0)"},
      {"7 % 4", "3"},
      {"-7 % 4", "-3"},
      {"5.5 % 2", "1.50"},
      {"int32(7) % int32(4)", "3"},
      {"7 % 0", "! unable to mod by 0"},
      {"int32(7) % int32(0)", "! unable to mod by 0"},
      {"int64(7) % 0", "! unable to mod by 0"},
  });
}

TEST_F(Values, CompareWithTolerance) {
  check({
      {"0.1 + 0.2 == 0.3", "true"},
      {"1 == 1.00001", "true"},
      {"1 == 1.0001", "false"},
      {"1 < 1.00001", "false"},
      {"1 <= 0.99999", "true"},
      {"1 >= 1.00001", "true"},
      {"1 < 1.0001", "true"},
      {"NaN == NaN", "false"},
      {"NaN != NaN", "true"},
      {"NaN < 1", "false"},
      {"infinity == infinity", "true"},
      {"infinity == -infinity", "false"},
      {"-infinity < infinity", "true"},
      {"true == 1", "true"},
      {"int32(16777217) == 16777216", "true"},
      {"16777216 == int32(16777217)", "true"},
      {"int64(16777217) == 16777216", "false"},
      {"int32(16777217) == int32(16777216)", "false"},
      {"int64(3) == 3.000001", "true"},
      {"int32(1) == 1.00001", "false"},
      {"int32(1) == 1.0000099", "true"},
      {"int32(1) == 1.0001", "false"},
      {"\"2\" == 2", "true"},
      {"2 == \"2\"", "true"},
      {"\"abc\" == \"abc\"", "true"},
      {"\"abc\" < \"abd\"", "true"},
      {"\"x\" == 1", "! unable to convert string \"x\" to number"},
      {"undefined == undefined", "true"},
      {"undefined == 0", "false"},
      {"undefined < 1", "false"},
      {"undefined != 0", "true"},
      {"undefined >= undefined", "true"},
      {"[1] == [1]", "false"},
      {"[1] > 0", "true"},
      {"unset() == 1", "! Cannot compare unset variables"},
      {"a = {}; b = a; a == b", "true"},
      {"{} == {}", "false"},
      {"ptr(5) == ptr(5)", "true"},
      {"ref(1, 2) == 2", "true"},
      {"noone == -4", "true"},
  });
}

TEST_F(Values, Texts) {
  check({
      {"string(3)", "3"},
      {"string(-0.5)", "-0.50"},
      {"string(1 / 3)", "0.33"},
      {"string(1e20)", "100000000000000000000"},
      {"string(NaN)", "NaN"},
      {"string(-infinity)", "-inf"},
      {"string(true)", "true"},
      {"string(int64(-9))", "-9"},
      {"string([1, \"a\", [true]])", "[1,\"a\",[true]]"},
      {"string({b: 1, a: {c: 2.5}})", "{b:1,a:{c:2.50}}"},
      {"string(undefined)", "undefined"},
      {"string(null)", "null"},
      {"string(unset())", "! STRING argument is unset"},
      {"s = {}; s.me = s; string(s)", "{me:\"Warning: recursive struct found\"}"},
      {"r = []; r[0] = 1; q = {list: r}; q.list[1] = q; string(q.list)", "[1,{list:\"Warning: recursive array found\"}]"},
      {"string(\"Kills: {0} of {1}\", 3, 4.5)", "Kills: 3 of 4.50"},
      {"string(ref(77, 5))", "ref unknown 5"},
      {"typeof(kind(99))", "unknown"},
      {"typeof(method(undefined, Approach))", "method"},
      {"string(method(undefined, Approach))", "[[Method]]"},
      {"typeof(unset())", "unknown"},
      {"string_copy(\"añb\", 2, 2)", "ñb"},
      {"string_length(\"añ€\")", "3"},
      {"string_pos(\"b\", \"añb\")", "3"},
      {"string_format(3.14159, 4, 2)", "   3.14"},
  });
}

// A reference tells what it refers to by kind and name; by kind and number where there is no name or no such thing.
TEST_F(Values, ReferencesReadAsKindAndName) {
  check({
      {"string(ref(16777216, oPlayer))", "ref object oPlayer"},
      {"string(ref(16777217, 33))", "ref sprite sprBlood"},
      {"string(ref(16777218, 5))", "ref sound sndHit"},
      {"string(ref(16777219, rArena))", "ref room rArena"},
      {"string(ref(16777222, 2))", "ref font fntUi"},
      {"string(ref(16777221, Approach))", "ref script Approach"},
      {"string(ref(16777217, 9999))", "ref sprite 9999"},
      {"string(ref(67108865, 100000))", "ref instance 100000"},
      {"string(ref(67108866, layer_get_id(\"layMobs\")))", "ref layer layMobs"},
      {"string(ref(67108867, 0))", "ref camera 0"},
      {"string(ref(67108868, ds_list_create()))", "ref list 0"},
      {"string(ref(67108869, 3))", "ref map 3"},
      {"string(ref(67108870, 3))", "ref grid 3"},
      {"string(ref(67108871, 1))", "ref particle system 1"},
      {"string(ref(67108872, 1))", "ref particle type 1"},
      {"string(ref(67108873, 1))", "ref stickers 1"},
      {"string(ref(67108874, 1))", "ref sound instance 1"},
      {"string([ref(77, 2)])", "[ref unknown 2]"},
  });
}

struct Witness : OwnedObject {
  explicit Witness(int& counted) : deaths(counted) {}
  ~Witness() override { ++deaths; }
  int& deaths;
};

// However an owning pointer value travels, its object dies once, with the one value that owns it.
TEST_F(Values, AnOwnedObjectDiesOnceWithItsOwner) {
  int deaths = 0;
  const auto owner = [&] { return RValue::of_owned(new Witness(deaths)); };
  {
    RValue value = owner();
    release(value);
    EXPECT_EQ(deaths, 1) << "released";
    release(value);
  }
  EXPECT_EQ(deaths, 1) << "and no second time";
  {
    RValue value = owner();
    RValue copy(value), another, raw;
    another = value;
    assign(raw, value);
    RValue list = make_array(1);
    array_store(*list.array, 0, value);
    array_append(*list.array, value);
    const script::Value box(value);
    RValue object = make_struct();
    store_variable(property_object(object), variable_id("held"), value);
    const RValue* const copies[] = {&copy, &another, &raw, &list.array->elements[0], &list.array->elements[1], &box};
    for (const RValue* const each : copies) {
      EXPECT_EQ(each->pointer, value.pointer);
      EXPECT_EQ(each->flags, 0u) << "a copy does not own";
    }
    release(copy);
    EXPECT_EQ(deaths, 1);
    RValue moved(std::move(value));
    RValue again;
    again = std::move(moved);
    EXPECT_EQ(deaths, 1) << "moved on";
    again = RValue(5.0);
    EXPECT_EQ(deaths, 2) << "overwritten";
  }
  EXPECT_EQ(deaths, 2);
  { const RValue value = owner(); }
  EXPECT_EQ(deaths, 3) << "gone with its holder";
  RValue slot = owner();
  assign(slot, RValue());
  EXPECT_EQ(deaths, 4) << "assigned over";
}

TEST_F(Values, WhatAMoveReplacesIsGivenBackAtOnce) {
  const int strings = live_strings();
  RValue kept = make_string("old"), fresh = make_string("new");
  kept = std::move(fresh);
  EXPECT_EQ(live_strings(), strings + 1);
  EXPECT_TRUE(fresh.is_undefined());  // what a move leaves is part of the contract: NOLINT(bugprone-use-after-move)
  RValue& same = kept;
  kept = std::move(same);
  EXPECT_EQ(text_of(kept), "new");
}

TEST_F(Values, ATextMadeOfCharactersIsTheValuesOwn) {
  char buffer[] = "here";
  const script::Value value(buffer);
  buffer[0] = 't';
  EXPECT_EQ(text_of(value), "here");
}

}  // namespace
}  // namespace arena::test
