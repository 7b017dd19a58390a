// The families of built-in functions, row by row. Expected values are worked out by hand.
#include "runtime/program/functions.h"
#include "tests/support/arguments.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Families : public TestGame {};

TEST_F(Families, Numbers) {
  check({
      {"[abs(-2.5), sign(-3), sign(0), sqr(-4), sqrt(2.25)]", "[2.50,-1,0,16,1.50]"},
      {"[floor(-1.5), ceil(-1.5), round(2.5), round(3.5), round(-2.5), frac(-1.25)]", "[-2,-1,2,4,-2,-0.25]"},  // halves go to the even one
      {"[min(3, 1, 2), max(3, 1, 2), mean(1, 2, 6), clamp(5, 0, 3), clamp(-5, 0, 3)]", "[1,3,3,3,0]"},
      {"[lerp(10, 20, 0.25), lerp(10, 20, 2), power(2, 10), exp(0), ln(1), log2(8), log10(100), logn(3, 81)]", "[12.50,30,1024,1,0,3,2,4]"},
      {"[dsin(30) == 0.5, dcos(60) == 0.5, dtan(45) == 1, darctan2(1, 0), radtodeg(degtorad(90))]", "[true,true,true,90,90]"},
      {"[arcsin(1) * 2 / arccos(-1), arctan(1) * 4 / arccos(-1), arctan2(0, -1) / arccos(-1)]", "[1,1,1]"},
      {"[point_distance(1, 2, 4, 6), point_direction(0, 0, 0, -5), point_direction(0, 0, -5, 0), point_direction(0, 0, 0, 5)]",
       "[5,90,180,270]"},
      {"[lengthdir_x(10, 60) == 5, lengthdir_y(10, 30) == -5, lengthdir_y(10, 270) == 10]", "[true,true,true]"},
      {"[angle_difference(10, 350), angle_difference(350, 10), angle_difference(180, 0), dot_product(1, 2, 3, 4)]", "[20,-20,180,11]"},
      {"[mod(7, 4), mod(-7, 4), 7.5 % 2]", "[3,-3,1.50]"},
      {"random_set_seed(9); a = [random(1), irandom(6), random_range(2, 3)]; random_set_seed(9); b = [random(1), irandom(6), "
       "random_range(2, 3)]; array_equals(a, b)",
       "true"},
      {"random_get_seed()", "9"},
      {"n = 0; low = 1; high = 0; random_set_seed(3); v = array_map(array_create(1000), method(undefined, one_die)); [array_contains(v, "
       "0), array_contains(v, 6), array_contains(v, 7), array_contains(v, -1)]",
       "[true,true,false,false]"},
      {"[choose(4, 4), choose(\"x\")]", "[4,\"x\"]"},
  });
}

TEST_F(Families, Colours) {
  check({
      {"[make_colour_rgb(1, 2, 3), colour_get_red(197121), colour_get_green(197121), colour_get_blue(197121)]", "[197121,1,2,3]"},
      {"[make_colour_hsv(0, 255, 255), make_colour_hsv(85, 255, 255), make_colour_hsv(170, 255, 255), make_colour_hsv(9, 0, 255)]",
       "[255,65280,16711680,16777215]"},
      {"[merge_colour(0, 16777215, 0), merge_colour(0, 16777215, 1), merge_colour(0, 200, 0.5)]", "[0,16777215,100]"},
  });
}

TEST_F(Families, Texts) {
  check({
      {"string_upper(\"abc\") + string_lower(\"DEF\")", "ABCdef"},
      {"string_char_at(\"añb\", 2)", "ñ"},
      {"string_char_at(\"ab\", 9)", ""},
      {"string_delete(\"hello\", 2, 3)", "ho"},
      {"string_insert(\"XY\", \"ab\", 2)", "aXYb"},
      {"string_replace(\"aXaX\", \"X\", \"-\")", "a-aX"},
      {"string_replace_all(\"aXaX\", \"X\", \"-\")", "a-a-"},
      {"string_replace_all(\"aa\", \"a\", \"aa\")", "aaaa"},
      {"string_count(\"aa\", \"aaaa\")", "2"},
      {"string_repeat(\"ab\", 3)", "ababab"},
      {"string_repeat(\"ab\", -1)", ""},
      {"string_digits(\"a1b22\")", "122"},
      {"string_letters(\"a1b22c\")", "abc"},
      {"string_pos(\"z\", \"abc\")", "0"},
      {"string_trim(\"  x y \")", "x y"},
      {"string_split(\"a,b,,c\", \",\")", "[\"a\",\"b\",\"\",\"c\"]"},
      {"string_join(\"-\", 1, \"b\", 2.5)", "1-b-2.50"},
      {"string_concat(1, \"b\", true)", "1btrue"},
      {"[string_starts_with(\"abc\", \"ab\"), string_ends_with(\"abc\", \"bc\"), string_starts_with(\"a\", \"ab\")]", "[true,true,false]"},
      {"[ord(\"A\"), ord(\"€\"), chr(8364) == \"€\", chr(65)]", "[65,8364,true,\"A\"]"},
      {"[string_byte_length(\"añ\"), string_length(\"\")]", "[3,0]"},
      {"string_copy(\"hello\", -3, 5)", "hello"},
      {"string_copy(\"hello\", 4, 99)", "lo"},
      {"string_format(-2.5, 6, 1)", "    -2.5"},
      {"[is_string(\"\"), is_real(1), is_bool(true), is_array([]), is_struct({}), is_undefined(undefined), is_int32(int32(1)), "
       "is_int64(int64(1)), is_ptr(ptr(1))]",
       "[true,true,true,true,true,true,true,true,true]"},
      {"[is_nan(NaN), is_infinity(-infinity), is_numeric(\"1\"), is_method(5), is_struct([]), is_real(int32(1))]",
       "[true,true,false,false,false,false]"},
  });
}

TEST_F(Families, Arrays) {
  check({
      {"array_create(3, \"x\")", "[\"x\",\"x\",\"x\"]"},
      {"array_create(-2)", "[]"},
      {"a = [7]; a[16777216] = 1", "! index out of bounds request 16777216 maximum size is 16777216"},
      {"a = [1, 2, 3]; array_reverse(a); a", "[3,2,1]"},
      {"a = [1, 2, 3, 4]; array_resize(a, 2); a", "[1,2]"},
      {"a = [1]; array_resize(a, 3); a", "[1,0,0]"},
      {"a = [1, 2, 3]; array_delete(a, -1, 1); a", "[1,2]"},
      {"a = [1, 2]; array_insert(a, 5, 9); a", "[1,2,0,0,0,9]"},
      {"a = [1, 2, 3]; [array_pop(a), a]", "[3,[1,2]]"},
      {"a = [5, 6]; array_set(a, 3, 1); a", "[5,6,0,1]"},
      {"a = [1, 2, 3]; array_copy(a, 1, [7, 8, 9], 0, 2); a", "[1,7,8]"},
      {"a = [1, 2]; array_copy(a, 2, [7, 8, 9], 1, 99); a", "[1,2,8,9]"},
      {"a = [1, 2, 3]; array_copy(a, 1, a, 0, 3); a", "[1,1,2,3]"},
      {"a = [\"s\", {k: 1}]; b = []; array_copy(b, 0, a, 0, 2); a[1].k = 2; b", "[\"s\",{k:2}]"},
      {"[array_get_index([4, 5], 5), array_get_index([4], 9), array_contains([\"a\"], \"a\")]", "[1,-1,true]"},
      {"array_equals([1, [2]], [1, [2]])", "false"},
      {"array_equals([1, \"b\"], [1, \"b\"])", "true"},
      {"array_length(5)", "0"},
      {"a = [2, 10, 1]; array_sort(a, false); a", "[10,2,1]"},
      {"a = [2, 10, 1]; array_sort(a, method(undefined, by_difference)); a", "[1,2,10]"},
      {"array_map([1, 2], method(undefined, twice))", "[2,4]"},
      {"array_filter([1, 0, 2, 0.4], method(undefined, twice))", "[1,2,0.40]"},
      {"a = array_create(50, 1); array_shuffle(a); array_length(a)", "50"},
      {"array_concat([1], [], [[2]])", "[1,[2]]"},
      {"array_copy(5, 0, [1], 0, 1)", "! array_copy :: argument 1 is not an array"},
      {"array_concat([1], 5)", "! array_concat :: argument 2 is not an array"},
  });
}

TEST_F(Families, ListsMapsAndGrids) {
  check({
      {"global.l = ds_list_create(); ds_list_add(global.l, 1, \"b\", 3); [ds_list_size(global.l), ds_list_find_value(global.l, 1), "
       "ds_list_find_value(global.l, 9)]",
       "[3,\"b\",undefined]"},
      {"ds_list_insert(global.l, 1, 7); ds_list_set(global.l, 0, 9); ds_list_delete(global.l, 2); [ds_list_find_index(global.l, 3), "
       "ds_list_find_index(global.l, \"b\"), ds_list_find_value(global.l, 0)]",
       "[2,-1,9]"},
      {"ds_list_clear(global.l); [ds_list_size(global.l), ds_exists(global.l, 2)]", "[0,true]"},
      {"ds_list_destroy(global.l); ds_list_size(global.l)", "! ds_list_size argument 1 invalid reference to (list) - requested 0"},
      {"global.m = ds_map_create(); ds_map_set(global.m, \"k\", 1); ds_map_set(global.m, 5, [2]); ds_map_set(global.m, \"k\", 3); "
       "[ds_map_size(global.m), ds_map_find_value(global.m, \"k\"), ds_map_find_value(global.m, 5)]",
       "[2,3,[2]]"},
      {"[ds_map_exists(global.m, 5), ds_map_exists(global.m, \"5\"), ds_map_find_value(global.m, \"none\")]", "[true,false,undefined]"},
      {"first = ds_map_find_first(global.m); second = ds_map_find_next(global.m, first); [is_undefined(second), ds_map_find_next(global.m, "
       "second)]",
       "[false,undefined]"},
      {"ds_map_delete(global.m, 5); ds_map_size(global.m)", "1"},
      {"ds_map_set(global.m, NaN, 7); ds_map_set(global.m, 8, 9); [ds_map_find_value(global.m, \"k\"), ds_map_find_value(global.m, NaN), "
       "ds_map_find_value(global.m, 8), ds_map_size(global.m)]",
       "[3,7,9,3]"},
      {"ds_map_destroy(global.m); ds_exists(global.m, 1)", "false"},
      {"global.g = ds_grid_create(3, 2); [ds_grid_width(global.g), ds_grid_height(global.g), ds_grid_get(global.g, 2, 1)]", "[3,2,0]"},
      {"ds_grid_set(global.g, 2, 1, 5); ds_grid_add(global.g, 2, 1, 2.5); ds_grid_get(global.g, 2, 1)", "7.50"},
      {"ds_grid_clear(global.g, \"x\"); ds_grid_get(global.g, 0, 0)", "x"},
      {"ds_grid_get(global.g, 3, 0)", "! index out of bounds request 3 maximum size is 3"},
      {"ds_grid_set(global.g, 0, -1, 1)", "! index out of bounds request -1 maximum size is 2"},
  });
}

TEST_F(Families, VariablesByNameAndLinks) {
  check({
      {"variable_global_set(\"made\", 4); [variable_global_exists(\"made\"), variable_global_get(\"made\"), "
       "variable_global_exists(\"unmade\")]",
       "[true,4,false]"},
      {"instance_create_depth(3, 4, 0, oBullet); variable_instance_set(oBullet, \"speedy\", 2); [variable_instance_get(oBullet, "
       "\"speedy\"), variable_instance_exists(oBullet, \"x\"), variable_instance_get(oBullet, \"x\")]",
       "[2,true,3]"},
      {"s = {a: 1}; w = weak_ref_create(s); [weak_ref_alive(w), weak_ref_get(w).a]", "[true,1]"},
      {"method_get_self(method({k: 3}, Approach)).k", "3"},
      {"script_get_name(method_get_index(method(undefined, Approach)))", "Approach"},
      {"[script_exists(Approach), script_exists(5)]", "[true,false]"},
      {"method_call(method(undefined, Approach), [0, 10, 4])", "4"},
      {"[object_get_name(18), object_get_parent(7), object_exists(99)]", "[\"oPlayer\",16,false]"},
      {"[object_is_ancestor(7, 16), object_is_ancestor(16, 7)]", "[true,false]"},
  });
}

// Every argument that a row says to be of one kind is refused when it is of another one, by its function's name and its number.
TEST_F(Families, RefuseArgumentsOfTheWrongKind) {
  eval("global.player = instance_create_depth(100, 100, 0, oPlayer)");
  eval(kMakeArgumentHolders);
  int refused = 0;
  for (std::int32_t i = 0; i < builtin_count(); ++i) {
    const BuiltinRow& row = *builtin_at(i).row;
    std::string before;
    int place = 0;
    for (const Parameter& parameter : row.parameters()) {
      ASSERT_TRUE(kArgumentSamples.count(parameter.kind.word) == 1) << parameter.kind.word;
      const ArgumentSamples& samples = kArgumentSamples.at(parameter.kind.word);
      ++place;
      if (samples.wrong != nullptr && !parameter.kind.takes_the_rest) {
        const std::string call = std::string(row.text) + "(" + before + samples.wrong + ")";
        const std::string answer = eval("with (global.player) { " + call + " }");
        EXPECT_NE(answer.find(row.text), std::string::npos) << call << " gives " << answer;
        EXPECT_NE(answer.find("argument " + std::to_string(place) + " "), std::string::npos) << call << " gives " << answer;
        ++refused;
      }
      before += std::string(samples.fitting[0]) + ", ";
    }
  }
  EXPECT_GT(refused, 500);
}

TEST_F(Families, Distances) {
  eval(
      "instance_create_depth(100, 100, 0, oPlayer); instance_create_depth(300, 100, 0, oEnemy); instance_create_depth(100, 500, 0, "
      "oEnemy)");
  check({
      {"[instance_nearest(110, 110, oEnemy) == instance_find(oEnemy, 0), instance_furthest(110, 110, oEnemy) == instance_find(oEnemy, 1)]",
       "[true,true]"},
      {"instance_nearest(0, 0, oGun)", "-4"},
      {"with (oPlayer) { global.d = distance_to_point(x + 1000, y) }; global.d < 1000", "true"},
      {"[point_in_rectangle(5, 5, 0, 0, 10, 10), point_in_rectangle(11, 5, 0, 0, 10, 10), point_in_circle(3, 4, 0, 0, 5.01), "
       "point_in_circle(3, 4, 0, 0, 4.9)]",
       "[true,false,true,false]"},
      {"[position_meeting(300, 100, oEnemy), position_meeting(10, 10, oEnemy), collision_point(300, 100, oEnemy, true, false) == "
       "instance_find(oEnemy, 0)]",
       "[true,false,true]"},
      {"[collision_line(0, 100, 1000, 100, oEnemy, true, false) == instance_find(oEnemy, 0), collision_line(0, 900, 1000, 900, oEnemy, "
       "true, false)]",
       "[true,-4]"},
      {"l = ds_list_create(); n = collision_circle_list(100, 100, 2000, oEnemy, false, false, l, true); [n, ds_list_find_value(l, 0) == "
       "instance_find(oEnemy, 0)]",
       "[2,true]"},
      {"with (oPlayer) { global.hit = [place_meeting(300, 100, oEnemy), place_meeting(900, 900, oEnemy), place_empty(900, 900)] }; "
       "global.hit",
       "[true,false,true]"},
  });
}

}  // namespace
}  // namespace arena::test
