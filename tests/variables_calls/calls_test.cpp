// Argument checks, reading and writing errors, the report's form, and what is restored after an error.
#include "runtime/variables_calls/calls.h"

#include <nlohmann/json.hpp>

#include "engine/console/evaluator.h"
#include "runtime/arrays_structs/array.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/container_stack.h"
#include "runtime/arrays_structs/method.h"
#include "runtime/instances_loop/instance.h"
#include "runtime/memory/block_pool.h"
#include "runtime/program/builtin_variable.h"
#include "runtime/program/names.h"
#include "runtime/reports/frame.h"
#include "runtime/reports/log.h"
#include "runtime/reports/report.h"
#include "runtime/values/conversions.h"
#include "runtime/values/operators.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/access.h"
#include "runtime/variables_calls/extension_functions.h"
#include "runtime/variables_calls/resolve.h"
#include "tests/support/failing_memory.h"
#include "tests/support/test_game.h"
#include "tests/variables_calls/test_scripts.h"

namespace arena::test {
namespace {

class Calls : public TestGame {};

TEST_F(Calls, ArgumentsAreCheckedByTheirKind) {
  check({
      {"sqrt(\"x\")", "! sqrt argument 1 incorrect type (string) expecting a Number (WBGR)"},
      {"draw_set_alpha([])", "! draw_set_alpha argument 1 incorrect type (array) expecting a Number (WBGF)"},
      {"keyboard_check(undefined)", "! keyboard_check argument 1 incorrect type (undefined) expecting a Number (WBGI32)"},
      {"chr({})", "! chr argument 1 incorrect type (struct) expecting a Number (WBGU32)"},
      {"audio_play_sound(0, 1, \"yes\")", "! audio_play_sound argument 3 incorrect type (string) expecting a Boolean (WBGB)"},
      {"string_length(5)", "! string_length argument 1 incorrect type (number) expecting a String (WBGS)"},
      {"number_sum(\"a\", 1)", "! number_sum argument 1 incorrect type (string) expecting a Number"},
      {"ptr_address(1)", "! ptr_address argument 1 incorrect type (number) expecting a Pointer"},
      {"script_execute(int64, \"x\")", "! int64 argument 1 incorrect type (string) expecting a Number or Pointer"},
      {"struct_get_names(\"x\")", "! struct_get_names argument 1 incorrect type (string) needs to be a struct"},
      {"array_map([1], 99999)", "! array_map :: argument 2 is neither a method or a function"},
      {"ds_list_size(\"x\")", "! ds_list_size argument 1 incorrect type (string) expecting a list"},
      {"ds_list_size(77)", "! ds_list_size argument 1 invalid reference to (list) - requested 77"},
      {"sprite_get_width(9999)", "! sprite_get_width argument 1 invalid reference to (sprite) - requested 9999 max is 58"},
      {"instance_destroy()", "! instance_destroy() must be called in an instance context"},
      {"sqrt()", "! sqrt argument 1 incorrect type (undefined) expecting a Number (WBGR)"},
  });
  const double id = number("instance_create_depth(0, 0, 0, oBullet)");
  EXPECT_EQ(eval("weak_ref_create((" + std::to_string(static_cast<int>(id)) + "))"),
            "! weak_ref_create argument 1 incorrect type (number) needs to be a struct");
  EXPECT_EQ(eval("with (oBullet) { weak_ref_create(self) }"), "! weak_ref_create argument 1 cannot be an instance");
}

TEST_F(Calls, VariablesThatAreNotThere) {
  const std::string missing = std::to_string(variable_id("nobody_wrote_this"));
  EXPECT_EQ(eval("global.nobody_wrote_this"),
            "! global variable name 'nobody_wrote_this' index (" + missing + ") not set before reading it.");
  EXPECT_EQ(eval("local.nobody_wrote_this"), "! local variable nobody_wrote_this(" + missing + ") not set before reading it.");
  check({
      {"oPlayer.hp", "! Unable to find any instance for object index '18' name 'oPlayer'"},
      {"(123456).hp", "! Unable to find any instance for object index '123456' name '<undefined>'"},
      {"with (global) { 1 }", "! Cannot use global in with statement"},
      {"with (local) { 1 }", "! Cannot use local in with statement"},
      {"with (\"x\") { 1 }", "! invalid with reference"},
      {"with (noone) { 1 }", "undefined"},
      {"room_width = 5", "! unable to set built in variable room_width\n"},
  });
  const int bullet = static_cast<int>(number("instance_create_depth(0, 0, 0, oBullet)"));
  const std::string message = eval("oBullet.hp");
  EXPECT_EQ(message, "! Unable to get variable hp from object " + std::to_string(resolve_instance(bullet)->serial) + "\n");
  resolve_instance(bullet)->get_variable_ref(variable_id("half"));
  const std::string half = std::to_string(variable_id("half"));
  EXPECT_EQ(eval("oBullet.half"), "! Variable oBullet.half(" + half + ", -2147483648) not set before reading it.");
  RValue out;
  eval("global.list = [1, 2]");
  const std::int32_t list = variable_id("list");
  try {
    var_get(RValue::of_object(global_object()), list, 7, out);
    FAIL() << "an index past the end must be reported";
  } catch (const WBKSLException& error) {
    const std::string id = std::to_string(list);
    EXPECT_EQ(error.message(),
              "Variable Index [7] out of range [2] - " + std::to_string(global_object()->serial) + "." + id + "(" + id + ",7)");
  }
  ASSERT_TRUE(var_set(RValue::of_object(global_object()), list, kNoIndex, RValue(5.0)));
  EXPECT_EQ(eval("global.list"), "5") << "the no-index marker writes the whole variable";
}

TEST_F(Calls, MissingArgumentsReadUndefined) {
  const RValue one(1.0);
  const RValue* given[] = {&one};
  const ArgumentVector padded(1, 3, given);
  EXPECT_EQ(padded.count(), 3);
  EXPECT_EQ(const_cast<ArgumentVector&>(padded).values()[0].real, 1);
  EXPECT_TRUE(const_cast<ArgumentVector&>(padded).values()[2].is_undefined());
  check({{"canDamageTarget()", "undefined"}, {"canDamageTarget(1)", "true"}, {"Chance()", "false"}});
}

TEST_F(Calls, SuppressedReportsOnlySetTheFlag) {
  clear_error_happened();
  const ErrorSuppression quiet;
  RValue left = RValue::of_int32(7);
  op_divide(left, RValue::of_int32(0));
  EXPECT_TRUE(error_happened());
  EXPECT_EQ(left.i32, 7) << "the left operand stays";
  EXPECT_EQ(left.kind(), kInt32);
  RValue text = make_string("abc");
  EXPECT_EQ(to_real(text), 0);
  EXPECT_FALSE(to_bool(make_array(1)));
}

TEST_F(Calls, LongMessagesAreCutAtTheBuffer) {
  const std::string message = eval("real(\"" + std::string(3000, 'x') + "\")");
  EXPECT_EQ(message.size(), 2 + 1023u);
}

TEST_F(Calls, ReportsNameEventObjectAndFrames) {
  eval(
      "global.dt_steady = 0.01; instance_create_depth(0, 0, 0, oGun).owner = 5; oGun.owner = oGun.id; oGun.base_bullet_type = 0; "
      "oGun.is_firing = true; oGun.modifiers = [5]");
  const auto reply = ask({{"step", 1}});
  ASSERT_TRUE(reply.contains("errors")) << reply.dump();
  const std::string report = reply["errors"][0]["report"];
  EXPECT_EQ(report.find(std::string(43, '_') + "\nERROR in action number 1\nof  Step Event0 for object oGun:\n"), 0u) << report;
  const std::size_t inner = report.find(" at ksl_Script_oGun_applyModifiers (line "),
                    outer = report.find(" at ksl_Object_oGun_Step_0 (line ");
  EXPECT_NE(inner, std::string::npos) << report;
  EXPECT_NE(outer, std::string::npos) << report;
  EXPECT_LT(inner, outer) << "innermost first";
  for (const std::size_t place : {inner, outer}) {
    const std::string line = report.substr(place, report.find('\n', place) - place);
    EXPECT_TRUE(line.ends_with(" - game/combat/gun.cpp")) << line;
  }
  EXPECT_EQ(report.substr(report.size() - 93), std::string(92, '#') + "\n");
  EXPECT_EQ(broken_invariant(), "") << "frames, containers and the current built-in are restored";
}

// Each script fails in a statement that reads no variable of its own; the report must name its line all the same.
TEST_F(Calls, ReportsNameTheLineOfTheStatement) {
  const auto line_of = [](const auto& script, const char* name) {
    try {
      script();
    } catch (const WBKSLException& error) {
      EXPECT_EQ(error.script(), name);
      return error.line();
    }
    ADD_FAILURE() << name << " did not fail";
    return 0;
  };
  EXPECT_EQ(line_of(game::fail_in_builtin, "ksl_Script_fail_in_builtin"), game::kBuiltinLine);
  EXPECT_EQ(line_of(game::fail_in_argument, "ksl_Script_fail_in_argument"), game::kArgumentLine);
  EXPECT_EQ(line_of(game::fail_in_object, "ksl_Script_fail_in_object"), game::kObjectLine);
  EXPECT_EQ(line_of(game::fail_in_array, "ksl_Script_fail_in_array"), game::kArrayLine);
}

TEST_F(Calls, UnhandledErrorsReachTheScriptsHandler) {
  check({{"exception_unhandled_handler(method({}, note_exception))", "undefined"}});
  eval("instance_create_depth(0, 0, 0, oGun).is_firing = true; oGun.owner = oGun.id; oGun.modifiers = [5]; global.dt_steady = 0");
  ASSERT_TRUE(ask({{"step", 1}}).contains("errors"));
  check({{"global.noted_text", "[[WBKSLException]]"},
         {"global.noted.script", "ksl_Script_oGun_applyModifiers"},
         {"global.noted.line > 0", "true"}});
  EXPECT_NE(eval("global.noted.longMessage").find(eval("global.noted.message")), std::string::npos);
}

TEST_F(Calls, GrowingMemoryIsReportedOncePerDoubling) {
  const auto warnings = [&] {
    step();
    std::size_t count = 0;
    for (const std::string& line : take_log()) count += line.find("memory has grown") != std::string::npos ? 1 : 0;
    return count;
  };
  set_memory_warning(allocated_bytes() + (1 << 20));
  EXPECT_EQ(warnings(), 0u);
  eval("global.big = array_create(100000)");
  EXPECT_EQ(warnings(), 1u);
  EXPECT_EQ(warnings(), 0u) << "not again for the same";
  set_memory_warning(std::size_t{1} << 30);
}

TEST_F(Calls, ConstantTextIsNeverFreed) {
  static const char kText[] = "constant";
  RValue value = make_constant_string(kText);
  EXPECT_LT(value.string->size, 0);
  EXPECT_EQ(value.string->text, kText);
  RValue second(value);
  release(value);
  EXPECT_EQ(value.string, nullptr);
  EXPECT_EQ(text_of(second), "constant");
}

RValue& count_arguments(WBObjectBase*, WBObjectBase*, RValue& result, std::int32_t argc, const RValue**) {
  return result = RValue(argc), result;
}

TEST_F(Calls, TheSecondFunctionTableIsCalledByNumber) {
  const std::int32_t number = add_extension_function(count_arguments);
  EXPECT_GT(number, 500000);
  EXPECT_EQ(eval("(" + std::to_string(number) + ")(1, 2, 3)"), "3");
}

TEST_F(Calls, TheLookupFindsEverything) {
  const LookupResult& lookup = look_up_names();
  EXPECT_TRUE(lookup.problems.empty()) << lookup.problems.front();
  EXPECT_EQ(lookup.report().find("WBC lookup took "), 0u);
  EXPECT_GT(lookup.user_functions, 50);
}

// Past the end of a built-in array, before its beginning, and where there is none.
TEST_F(Calls, IndicesOfBuiltInArraysAreChecked) {
  const int probe = static_cast<int>(number("global.seen = []; global.hooks = {}; instance_create_depth(0, 0, 0, oProbe)"));
  const auto out_of_range = [](WBObjectBase* object, const char* variable, int index, int length) {
    const std::string at = std::to_string(index), id = std::to_string(variable_id(variable));
    return "! Variable Index [" + at + "] out of range [" + std::to_string(length) + "] - " + std::to_string(object->serial) + "." + id +
           "(" + id + "," + at + ")";
  };
  for (const int index : {12, -1, 2000000000}) {
    const std::string element = "oProbe.alarm[" + std::to_string(index) + "]",
                      expected = out_of_range(resolve_instance(probe), "alarm", index, 12);
    EXPECT_EQ(eval(element), expected);
    EXPECT_EQ(eval(element + " = 5"), expected);
  }
  EXPECT_EQ(eval("view_camera[9]"), out_of_range(global_object(), "view_camera", 9, 8));
  EXPECT_EQ(eval("view_camera[-3] = 1"), out_of_range(global_object(), "view_camera", -3, 8));
  check({{"oProbe.alarm[11] = 4; oProbe.alarm[11]", "4"}, {"view_camera[7]", "-1"}});
  RValue out;
  EXPECT_THROW(builtin_var_get(resolve_instance(probe), find_builtin_variable("x"), 0, out), WBKSLException) << "x is no array";
}

// An assignment to `room` is a room_goto: it reports in the same words, whoever makes it.
TEST_F(Calls, ARoomThatIsNotThereIsReportedAlikeByEveryWayThere) {
  const int probe = static_cast<int>(number("global.seen = []; global.hooks = {}; instance_create_depth(0, 0, 0, oProbe)"));
  for (const char* const room : {"99", "-1", "3", "2147483647"}) {
    const std::string wanted = room, expected = eval("room_goto(" + wanted + ")");
    EXPECT_EQ(expected, "! room_goto argument 1 invalid reference to (room) - requested " + wanted + " max is 3");
    for (const std::string& way : {"room = " + wanted, "with (oProbe) { room = " + wanted + " }",
                                   "variable_instance_set(" + std::to_string(probe) + ", \"room\", " + wanted + ")"}) {
      EXPECT_EQ(eval(way), expected) << way;
    }
  }
  step();
  EXPECT_EQ(eval("room_get_name(room)"), "rTest");
}

// A script that calls itself for ever ends in a report, by whichever way it does, and the game goes on.
TEST_F(Calls, RunawayRecursionIsReported) {
  eval(
      "global.seen = []; global.hooks = {}; global.w = instance_create_depth(0, 0, 0, oGun); oGun.owner = oGun.id; "
      "oGun.modifiers = [noone]; oGun.applyModifiers = oGun.clearModifiers; "
      "global.args = [0, 0]; array_set(global.args, 0, method_call); array_set(global.args, 1, global.args)");
  const std::string expected = "! calls are nested more than " + std::to_string(kDeepestCalls) + " deep";
  for (const char* const statement :
       {"call_itself()", "call_by_number()", "oGun.clearModifiers()", "method_call(method_call, global.args)", "walk_again()",
        "array_map([1], walk_again)", "new MakesItself()", "global.hooks = {Create_0: method(undefined, make_a_probe)}; make_a_probe()"}) {
    const auto reply = ask({{"eval", statement}});
    ASSERT_TRUE(reply.contains("error")) << statement;
    EXPECT_EQ("! " + reply["error"].get<std::string>(), expected) << statement;
    EXPECT_EQ(session().call_depth, 0) << statement;
    step();
  }
  eval("global.hooks = {}; instance_destroy(oGun)");
  step(2);
  clear_error_happened();
  const ErrorSuppression quiet;
  EXPECT_THROW(game::call_itself(), WBKSLException) << "no way to go on";
}

// The allocations of a statement fail in turn (of very many, some): the statement either does all it should or is reported, and everything
// is whole.
TEST_F(Calls, MemoryThatRunsOutIsReported) {
  if (!can_fail_allocations()) GTEST_SKIP();
  eval("global.kept = [1, 2]; global.s = {a: 1}; global.m = ds_map_create(); global.l = ds_list_create(); global.n = 0");
  eval("global.seen = []; global.hooks = {}");
  for (const char* const statement :
       {"global.kept = array_create(100000, \"x\")", "global.t = string_repeat(\"long\", 5000) + \"er\"",
        "global.s = {a: [1], b: {c: \"d\"}}", "array_push(global.kept, [1], {}, \"t\")",
        "variable_struct_set(global.s, \"made\" + string(global.n), [1]); struct_remove(global.s, \"a\")",
        "ds_map_set(global.m, \"k\" + string(global.n), [1])", "ds_list_add(global.l, [1], {})", "array_sort([3, 1, 2], by_difference)",
        "global.w = weak_ref_create({})", "global.f = method({}, abs)", "global.f2 = method({}, Approach)", "call_by_number()",
        "instance_create_depth(0, 0, 0, oProbe)", "new MakesItself()", "real(\"abc\")"}) {
    int failures = 0;
    for (int allowed = 0;; allowed += 1 + allowed / 32) {
      eval("global.n = global.n + 1");
      std::string message;
      bool failed;
      {
        const std::string source = statement;
        FailingMemory failing(allowed);
        try {
          console::evaluate(source, nullptr, nullptr);
        } catch (const WBKSLException& error) {
          failing.stop();
          message = error.message();
        }
        failed = failing.has_failed();
      }
      if (!failed) break;
      ++failures;
      ASSERT_TRUE(message.empty() || message == "out of memory" || message.starts_with("calls are nested") ||
                  message.starts_with("unable to convert"))
          << statement << " " << allowed << ": " << message;
      ASSERT_EQ(broken_invariant(), "") << statement << " " << allowed;
      ASSERT_EQ(session().call_depth, 0);
      if (allowed % 8 == 0) collect_everything();
    }
    EXPECT_GT(failures, 0) << statement;
    collect_everything();
    EXPECT_NE(eval("string(global)").size(), 0u) << statement;
  }
  step(2);
}

}  // namespace
}  // namespace arena::test
