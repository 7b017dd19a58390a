// Arrays by value, their growth and errors; structs, methods and constructors.
#include <nlohmann/json.hpp>

#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/arrays_structs/statics.h"
#include "runtime/reports/report.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Arrays : public TestGame {};

TEST_F(Arrays, NobodySeesAnothersWrite) {
  check({
      {"a = [1, 2]; b = a; b[0] = 9; [a, b]", "[[1,2],[9,2]]"},
      {"a = [1, 2]; b = a; a[0] = 9; [a, b]", "[[9,2],[1,2]]"},
      {"s = {list: [1]}; t = s.list; s.list[0] = 5; [s.list, t]", "[[5],[1]]"},
      {"a = [[1], [2]]; b = a; b[0][0] = 7; [a, b]", "[[[1],[2]],[[7],[2]]]"},
      {"inner = [1]; a = [inner]; inner[0] = 3; [a, inner]", "[[[1]],[3]]"},
      {"a = [1]; b = a; array_push(b, 2); [a, b]", "[[1,2],[1,2]]"},  // in place by its purpose
  });
}

TEST_F(Arrays, GrowAndFail) {
  check({
      {"a = [1, 2]; a[5] = 6; a", "[1,2,0,0,0,6]"},
      {"x1 = 3; x1[2] = 1; x1", "[0,0,1]"},
      {"[1, 2][2]", "! index out of bounds request 2 maximum size is 2"},
      {"[1][-1]", "! Array index must be positive"},
      {"(5)[0]", "! trying to index a variable which is not an array"},
      {"a = immutable([1]); a[0] = 2", "! Unable to write to immutable array"},
      {"a = [1]; a[-1] = 2", "! Array index must be positive"},
      {"array_push(5, 1)", "! array_push :: argument 1 is not an array"},
      {"array_push(immutable([1]), 1)", "! array_push :: argument 1 cannot be an immutable array"},
      {"array_push(unset(), 1)", "! ARRAY argument is unset"},
      {"a = [3, 1, \"b\", 2, \"a\"]; array_sort(a, true); a", "[1,2,3,\"a\",\"b\"]"},
      {"a = [1, 2, 3, 4]; array_delete(a, 1, 2); a", "[1,4]"},
      {"a = [1, 4]; array_insert(a, 1, 2, 3); a", "[1,2,3,4]"},
      {"array_concat([1], [2, 3])", "[1,2,3]"},
      {"array_pop([])", "undefined"},
      {"array_contains([1, 2.000001], 2)", "true"},
  });
}

TEST_F(Arrays, SharedOnesAreCopiedUnlessTheTokenOwnsThem) {
  const RValue holder = make_array(2);
  RValue other(holder);  // two values, one array: count 2
  ASSERT_EQ(holder.array->count, 2);
  ASSERT_EQ(array_element_for_write(other, 0), other.array->elements) << "the current owner writes in place";
  EXPECT_EQ(other.array, holder.array);
  {
    const OwnerTokenScope stranger(session().owner_token + 1);
    RValue* slot = array_element_for_write(other, 0);
    *slot = RValue(7.0);
  }
  EXPECT_NE(other.array, holder.array);
  EXPECT_EQ(holder.array->elements[0].real, 0);
  EXPECT_EQ(holder.array->count, 1);
  EXPECT_EQ(other.array->count, 1);
  EXPECT_EQ(other.array->capacity >= other.array->length, true);
  const OwnerTokenScope stranger(session().owner_token + 2);
  ArrayRecord* const alone = other.array;
  array_element_for_write(other, 1);
  EXPECT_EQ(other.array, alone) << "the only reference never copies";
}

TEST_F(Arrays, GrowGeometricallyWhenAsked) {
  RValue value = make_array(10);
  value.array->flags = kArrayGrowsGeometrically;
  ASSERT_EQ(value.array->capacity, 10);
  array_element_for_write(value, 10);
  EXPECT_EQ(value.array->length, 11);
  EXPECT_EQ(value.array->capacity, 15);
}

TEST_F(Arrays, WithoutCountingNothingIsCopied) {
  set_array_counting(false);
  const RValue holder = make_array(1);
  RValue other(holder);
  const OwnerTokenScope stranger(session().owner_token + 1);
  array_element_for_write(other, 0);
  EXPECT_EQ(other.array, holder.array);
  set_array_counting(true);
}

class Structs : public TestGame {};

TEST_F(Structs, KeepTheirOrderAndRefuseBadNames) {
  check({
      {"s = {z: 1, a: 2}; s.m = 3; variable_struct_get_names(s)", "[\"z\",\"a\",\"m\"]"},
      {"s = {a: 1, b: 2, c: 3}; variable_struct_remove(s, \"a\"); s.a = 4; s", "{b:2,c:3,a:4}"},
      {"s = {}; variable_struct_set(s, \"\", 1)", "! variable_struct_set: illegal to use empty names"},
      {"s = {}; variable_struct_set(s, \"@@x\", 1)", "! illegal to use internal names (names that start with @@)"},
      {"{a: 1}.b", "! Unable to get property"},
      {"m = method(undefined, Approach); m.x1 = 1", "! Unable to set property"},
      {"\"text\".a", "! Unable to use string \"text\" as struct"},
      {"s = {a: 1}; t = s; t.a = 2; s.a", "2"},
      {"s = {made_at_run_time_1: 5}; s.made_at_run_time_1", "5"},
      {"s = {a: 1}; struct_freeze(s); s.a = 2", "! Writing to variable 'a' in managed object 'struct' which is read-only. "},
      {"s = {a: 1}; struct_freeze(s); s.a = {}",
       "! Writing reference to unmanaged object 'struct' to variable 'a' in managed object 'struct'."},
  });
}

TEST_F(Structs, OfManyFieldsBecomeDictionariesAndStayThemselves) {
  eval("big = {first: 1}; same = big");
  for (int i = 0; i < 100; ++i) eval("big.field_" + std::to_string(i) + " = " + std::to_string(i));
  check({{"same.field_99", "99"},
         {"same.first", "1"},
         {"variable_struct_names_count(big)", "101"},
         {"variable_struct_get_names(big)[64]", "field_63"}});
}

TEST_F(Structs, MethodsAndConstructors) {
  check({
      {"new Modifier(\"x\", \"y\", {damage_mult: 2, foo: 1}).foo", "1"},
      {"Modifier(1, 2, 3)", "! calling a constructor directly - constructors should only be called using new"},
      {"\"x\"(1)", "! argument is not a method, unable to call"},
      {"(-1)()", "! attempting to call invalid function with script index -1"},
      {"(500000)()", "! attempting to call invalid function with script index 500000"},
      {"script_execute(Approach, 0, 10, 3)", "3"},
      {"m = method({k: 1}, Approach); m(0, 10, 4)", "4"},
      {"f = [Approach]; f[0](10, 0, 3)", "7"},
      {"getTarnCamera() == getTarnCamera()", "true"},
      {"weak_ref_alive(weak_ref_create({}))", "true"},
      {"weak_ref_create(5)", "! weak_ref_create argument 1 incorrect type (number) needs to be a struct"},
  });
}

TEST_F(Structs, ShareTheStaticMethodsOfTheirConstructor) {
  check({
      {"b = new TuiBox(); typeof(b.setPadding)", "method"},
      {"array_contains(variable_struct_get_names(b), \"setPadding\")", "false"},  // theirs without being stored in them
      {"c = new TuiButton(); static_get(TuiButton).setPadding == static_get(TuiBase).setPadding", "true"},
      {"c.onDraw == b.onDraw", "false"},
      {"b.setPadding(3); [b.padding_left, b.padding_bottom]", "[3,3]"},  // self is the struct that it was read from
      {"b.setPadding = 5; [b.setPadding, typeof(c.setPadding)]", "[5,\"method\"]"},
      {"variable_struct_remove(b, \"setPadding\"); typeof(b.setPadding)", "method"},
      {"variable_struct_remove(b, \"setPadding\"); typeof(b.setPadding)", "method"},
      {"b.nothing_like_this", "! Unable to get property"},
  });
}

// Whatever a function answers, sorting ends, stays inside the array and loses no element.
TEST_F(Arrays, AreSortedByAnyFunction) {
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(eval("a = [-1, 1, -1, 1, -1, 1, -1, 1]; array_sort(a, choose); array_length(a) + a[0] + a[1] + a[2] + a[3] + a[4] + a[5] + "
                   "a[6] + a[7]"),
              "8");
  }
  check({
      {"a = [3, 1, 2]; array_sort(a, by_difference); a", "[1,2,3]"},
      {"a = [3, 1, 2]; array_sort(a, method(undefined, by_difference)); a", "[1,2,3]"},
      {"a = [1, 0, -1]; array_sort(a, method(undefined, min)); a", "[-1,1,0]"},  // below zero when one of them is
      {"a = [[1, \"a\"], [0, \"b\"], [1, \"c\"], [0, \"d\"]]; array_sort(a, by_first); a", "[[0,\"b\"],[0,\"d\"],[1,\"a\"],[1,\"c\"]]"},
      {"a = [2, NaN, 1, NaN, 0]; array_sort(a, true); a", "[0,1,2,NaN,NaN]"},
      {"a = [2, NaN, 1]; array_sort(a, false); a", "[NaN,2,1]"},
      {"a = [3, 1, 2]; array_sort(a, {}); a", "! argument is not a method, unable to call"},
      {"a = [3, 1, 2]; array_sort(a, 99999)", "! attempting to call invalid function with script index 99999"},
      {"a", "[3,1,2]"},
      {"global.list = [3, 1, 2, 5]; array_sort(global.list, shorten_the_list); global.list", "[]"},
      {"global.list = [3, 1, 2, 5]; array_sort(global.list, fail_to_compare); 1", "! unable to add a number to string"},
      {"global.list", "[3,1,2,5]"},
  });
}

// A frozen struct holds in depth: nothing inside it changes by any way, and nobody else's array is frozen along.
TEST_F(Arrays, FrozenStructsHoldInDepth) {
  eval(
      "global.mine = [1, [2]]; global.f = {a: 1, list: [3, 1, [4]], inner: {b: [5]}, shared: global.mine}; global.f.inner.up = global.f; "
      "struct_freeze(global.f)");
  for (const char* const change : {"global.f.a = 2",
                                   "global.f.fresh = 2",
                                   "global.f.inner.b = 2",
                                   "global.f.list[0] = 9",
                                   "global.f.list[2][0] = 9",
                                   "global.f.inner.b[0] = 9",
                                   "global.f.inner.b[1] = 9",
                                   "struct_remove(global.f, \"a\")",
                                   "variable_struct_remove(global.f.inner, \"b\")",
                                   "variable_struct_set(global.f, \"a\", 2)",
                                   "struct_set(global.f.inner, \"z\", 2)",
                                   "variable_instance_set(global.f, \"a\", 2)",
                                   "array_push(global.f.list, 1)",
                                   "array_push(global.f.list[2], 1)",
                                   "array_pop(global.f.list)",
                                   "array_insert(global.f.list, 0, 1)",
                                   "array_delete(global.f.list, 0, 1)",
                                   "array_resize(global.f.list, 0)",
                                   "array_set(global.f.inner.b, 0, 9)",
                                   "array_copy(global.f.list, 0, [9], 0, 1)",
                                   "array_reverse(global.f.list)",
                                   "array_shuffle(global.f.list)",

                                   "array_sort(global.f.list, true)",
                                   "array_push(global.f.shared, 1)",
                                   "array_push(global.f.shared[1], 1)",
                                   "t = global.f.list; array_push(t, 1)",
                                   "t = global.f.list; global.f.list[2][0] = 9"}) {
    EXPECT_EQ(eval(change)[0], '!') << change;
    EXPECT_EQ(eval("[global.f.a, global.f.list, global.f.inner.b, global.f.shared, struct_names_count(global.f)]"),
              "[1,[3,1,[4]],[5],[1,[2]],4]")
        << change;
  }
  check({
      {"t = global.f.list; t[0] = 7; t", "[7,1,[4]]"},  // a holder of its own copies when it writes
      {"array_push(global.mine, 3); array_push(global.mine[1], 4); [global.mine, global.f.shared]", "[[1,[2,4],3],[1,[2]]]"},
      {"s = {l: array_create(50, 1)}; struct_freeze(s); ArrayShuffle(s.l)", "! Unable to write to immutable array"},
      {"global.f.a = 2", "! Writing to variable 'a' in managed object 'struct' which is read-only. "},
      {"global.f.a = {}", "! Writing reference to unmanaged object 'struct' to variable 'a' in managed object 'struct'."},
      {"struct_remove(global.f, \"a\")", "! Writing to variable 'a' in managed object 'struct' which is read-only. "},
      {"array_push(global.f.list, 1)", "! array_push :: argument 1 cannot be an immutable array"},
      {"c = [0]; array_set(c, 0, c); s = {c: c}; struct_freeze(s); array_push(s.c, 1)",  // in circles, too
       "! array_push :: argument 1 cannot be an immutable array"},
  });
}

// A built-in function as a method is a closure like any other.
TEST_F(Arrays, MethodsOfBuiltInFunctions) {
  check({
      {"m = method(undefined, abs); typeof(m)", "method"},
      {"m(-3)", "3"},
      {"string(m)", "[[Method]]"},
      {"is_method(m)", "true"},
      {"method_get_index(m) == abs", "true"},
      {"method_get_index(method({}, Approach)) == Approach", "true"},
      {"method_call(m, [-4])", "4"},
      {"script_execute(m, -5)", "5"},
      {"array_map([-1, 2], m)", "[1,2]"},
      {"static_get(m)", "undefined"},
      {"method(undefined, m)(-6)", "6"},
      {"s = {f: m}; string(s)", "{f:[[Method]]}"},
      {"global.s = {v: 1}; b = method(global.s, variable_struct_exists); method_get_self(b) == global.s", "true"},
      {"global.seen = []; global.hooks = {}; instance_create_depth(7, 8, 0, oProbe); n = instance_number(oProbe); d = method(oProbe.id, "
       "instance_destroy); d(); n - "
       "instance_number(oProbe)",
       "1"},
      {"method(undefined, -7)", "! method :: argument 2 is neither a method or a function"},
  });
  const std::string before = ask({{"hash", true}})["hash"];
  eval("global.closure = method(undefined, abs)");
  const std::string with_abs = ask({{"hash", true}})["hash"];
  eval("global.closure = method(undefined, sqrt)");
  EXPECT_NE(with_abs, before);
  EXPECT_NE(ask({{"hash", true}})["hash"], with_abs) << "the state tells one function from another";
}

}  // namespace
}  // namespace arena::test
