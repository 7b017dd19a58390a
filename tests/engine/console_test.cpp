// The console takes any line, and the game goes on.
#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>

#include "runtime/input/outside.h"
#include "runtime/instances_loop/random.h"
#include "runtime/reports/log.h"
#include "tests/support/failing_memory.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Console : public TestGame {};

TEST_F(Console, GarbageGetsAnErrorReply) {
  const std::vector<std::string> lines = {"",
                                          "garbage",
                                          "{",
                                          "[]",
                                          "5",
                                          "null",
                                          "{}",
                                          "{\"eval\": 5}",
                                          "{\"step\": \"x\"}",
                                          "{\"step\": -1}",
                                          "{\"step\": true}",
                                          "{\"step\": 1, \"dt\": -1}",
                                          "{\"key\": 65}",
                                          "{\"key\": \"a\", \"down\": true}",
                                          "{\"mouse\": [1]}",
                                          "{\"mouse\": 5}",
                                          "{\"instances\": \"oNothing\"}",
                                          "{\"eval\": \"1\", \"self\": 5}",
                                          "{\"eval\": \"1\", \"self\": \"x\"}",
                                          "{\"eval\": \"(((\"}",
                                          "{\"eval\": \"1 +\"}",
                                          "{\"eval\": \"\\\"open\"}",
                                          "{\"eval\": \"a b\"}",
                                          "{\"eval\": \"5 = 3\"}",
                                          "{\"eval\": \"new Nothing()\"}",
                                          "{\"eval\": \"{a 1}\"}",
                                          "{\"eval\": \"#\"}",
                                          "{\"eval\": \"with (1) 2\"}",
                                          "{\"eval\": \"1..2\"}",
                                          "\xff\xfe",
                                          "{\"eval\": \"" + std::string(5000, '(') + "\"}",
                                          "{\"eval\": \"" + std::string(5000, '-') + "1\"}",
                                          "{\"eval\": \"" + std::string(5000, '!') + "\"}"};
  for (const std::string& line : lines) {
    const auto reply = nlohmann::json::parse(console->answer(line));
    EXPECT_TRUE(reply.contains("error")) << line.substr(0, 60) << " gives " << reply.dump();
    EXPECT_TRUE(reply.contains("report"));
  }
  EXPECT_EQ(eval("1 + 1"), "2");
}

TEST_F(Console, NumbersOutOfRangeAreRefusedAndNothingRuns) {
  const std::string step = "\"step\" must be a whole number of frames from 0 to 10000000";
  const std::string dt = "\"dt\" must be a number of seconds from 0 to 3600";
  const std::string key = "\"key\" must be a whole number from -2147483648 to 2147483647";
  const struct {
    const char* line;
    std::string error;
  } rows[] = {{R"({"step": 1.5})", step},
              {R"({"step": -1})", step},
              {R"({"step": 1e300})", step},
              {R"({"step": 10000001})", step},
              {R"({"step": "1"})", step},
              {R"({"step": [1]})", step},
              {R"({"step": null})", step},
              {R"({"step": 1, "dt": "NaN"})", dt},
              {R"({"step": 1, "dt": -0.1})", dt},
              {R"({"step": 1, "dt": "inf"})", dt},
              {R"({"step": 1, "dt": 1e300})", dt},
              {R"({"step": 1, "dt": null})", dt},
              {R"({"key": 65.5, "down": true})", key},
              {R"({"key": 1e10, "down": true})", key},
              {R"({"key": 65, "down": 1})", "\"down\" must be true or false"},
              {R"({"mouse": [1, 2], "gui": 1})", "\"gui\" must be true or false"},
              {R"({"eval": "1", "self": 100000.5})", "\"self\" must be a whole number from -2147483648 to 2147483647"}};
  const std::string hash = ask({{"hash", true}}).dump();
  for (const auto& row : rows) {
    const auto reply = nlohmann::json::parse(console->answer(row.line));
    EXPECT_EQ(reply.value("error", ""), row.error) << row.line;
  }
  EXPECT_TRUE(nlohmann::json::parse(console->answer(R"({"step": 1, "dt": 1e999})")).contains("error"));
  EXPECT_EQ(ask({{"hash", true}}).dump(), hash);
  EXPECT_EQ(ask({{"step", 2.0}, {"dt", 0.5}}).dump(), R"({"frame":2,"room":"rTest","ended":false})");
}

TEST_F(Console, DrawsAreThoseOfTheLastFrame) {
  const auto texts = [&] {
    std::string all;
    const auto reply = ask({{"draws", true}});
    for (const auto& call : reply["draws"]) {
      if (call["call"] == "draw_text")
        all += call["object"].get<std::string>() + " " + call["event"].get<std::string>() + call["args"].dump();
    }
    return all;
  };
  EXPECT_EQ(texts(), "");
  drawn("a = [1]; draw_text(1, 2, a)");
  eval("a[0] = 2");
  EXPECT_EQ(texts(), "oProbe Draw_64[1,2,[1]]") << "what was drawn then";
  const std::string last = "oProbe Draw_64[1,2,[1]]";
  for (const int frames : {1, 7}) {
    ask({{"step", frames}});
    EXPECT_EQ(texts(), last) << frames;
    EXPECT_EQ(texts(), last) << "asked again";
  }
  ask({{"step", 0}});
  EXPECT_EQ(texts(), last) << "no frame ran";
  ask({{"step", 1.5}});
  EXPECT_EQ(texts(), last) << "no frame ran";
  eval("variable_struct_set(global.hooks, \"Step_0\", game_end)");
  EXPECT_EQ(ask({{"step", 50}})["ended"], true);
  EXPECT_EQ(texts(), last) << "of the frame that ended the game, although more were wanted";
}

// Of the frames of one step nobody can ask about any but the last: the others make no list of their drawing calls.
TEST_F(Console, OnlyAFrameThatIsAskedAboutListsItsDraws) {
  if (!can_fail_allocations()) GTEST_SKIP() << "allocations cannot be counted here";
  game->set_listener(nullptr);  // a recording allocates, too
  for (int i = 0; i < 50; ++i) eval("instance_create_depth(0, 0, 0, oExplosion).lifetime = 1000");
  const auto allocations = [&](int frames, int steps) {
    const FailingMemory counting(std::numeric_limits<int>::max());
    for (int i = 0; i < steps; ++i) ask({{"step", frames}});
    return counting.asked();
  };
  allocations(1, 20);  // lists grow to their size
  const int listed = allocations(1, 20), unlisted = allocations(20, 1);
  EXPECT_LT(unlisted * 4, listed);
}

// Every handler of 300 instances fails in every frame: what is said about it stays small, and is still told.
TEST_F(Console, AFloodOfErrorsIsCounted) {
  ask({{"log", true}});
  eval("global.seen = []; global.hooks = {Step_0: method(undefined, fail_in_builtin)}");
  for (int i = 0; i < 300; ++i) eval("instance_create_depth(0, 0, 0, oProbe)");
  const auto reply = ask({{"step", 60}});
  EXPECT_EQ(reply["errors"].size(), 1000U);
  EXPECT_EQ(reply["more_errors"], 300 * 60 - 1000);
  log_message("something else");
  const auto log = ask({{"log", true}})["log"];
  ASSERT_EQ(log.size(), 12U) << log.dump(1);
  EXPECT_EQ(log[0].get<std::string>().find("ERROR: "), 0U);
  EXPECT_EQ(log[10], "(the last message came 17990 more times)");
  EXPECT_EQ(log[11], "something else");
  EXPECT_FALSE(ask({{"step", 0}}).contains("errors"));
  // Different ones are bounded, too: by their number, their length and all of them together.
  for (int i = 0; i < 20000; ++i) log_message(std::to_string(i));
  EXPECT_EQ(ask({{"log", true}})["log"].size(), 10000U);
  log_message(std::string(100000, 'x'));
  EXPECT_LT(ask({{"log", true}})["log"][0].get<std::string>().size(), 66000U);
  for (int i = 0; i < 300; ++i) log_message(std::to_string(i) + std::string(60000, 'x'));
  EXPECT_LT(ask({{"log", true}}).dump().size(), std::size_t{9} << 20);
}

TEST_F(Console, StepsTakeOthersAlongAndCanBeEnded) {
  int frames = 0;
  console.reset();  // one at a time
  console::Console with_hooks(*game, {[&] { ++frames; }, [&] { return frames == 5; }});
  EXPECT_EQ(with_hooks.answer(R"({"step": 3})"), R"({"frame":3,"room":"rTest","ended":false})");
  EXPECT_EQ(with_hooks.answer(R"({"step": 10000000})"), R"({"frame":5,"room":"rTest","ended":false})");
  EXPECT_EQ(frames, 5);
}

TEST_F(Console, RandomStatementsNeverTakeTheGameDown) {
  const char* pieces[] = {"oPlayer",
                          "global",
                          "self",
                          ".",
                          ".x",
                          "hp",
                          "[",
                          "]",
                          "(",
                          ")",
                          "1",
                          "-1",
                          "\"t\"",
                          "+",
                          "-",
                          "*",
                          "/",
                          "%",
                          "==",
                          "<",
                          "&&",
                          "=",
                          "+=",
                          ";",
                          ",",
                          "{",
                          "}",
                          "a",
                          ":",
                          "noone",
                          "undefined",
                          "string",
                          "array_push",
                          "new ",
                          "Weapon",
                          "with",
                          "instance_destroy",
                          "ref",
                          "unset()",
                          "oBullet",
                          "instance_create_depth(0,0,0,oBullet)",
                          "alarm",
                          "id",
                          "infinity",
                          "NaN",
                          "ds_list_create()",
                          "array_create",
                          "100000"};
  RandomGenerator random(99);
  for (int round = 0; round < 4000; ++round) {
    std::string statement;
    for (std::int64_t length = random.integer(1, 12); length > 0; --length) statement += pieces[random.integer(0, std::size(pieces) - 1)];
    const auto reply = ask({{"eval", statement}});
    ASSERT_TRUE(reply.contains("error") || reply.contains("kind")) << statement;
    ASSERT_EQ(broken_invariant().find("a dead instance") == std::string::npos ? broken_invariant() : "", "") << statement;
  }
  step(2);
}

TEST_F(Console, ValuesInJson) {
  const auto value = [&](const std::string& statement) { return ask({{"eval", statement}})["value"].dump(); };
  EXPECT_EQ(value("95"), "95");
  EXPECT_EQ(value("0.1"), "0.1");
  EXPECT_EQ(value("1 / 3"), "0.3333333333333333");
  EXPECT_EQ(value("NaN"), "\"NaN\"");
  EXPECT_EQ(value("-infinity"), "\"-inf\"");
  EXPECT_EQ(value("[int64(5), true, undefined, null]"), "[5,true,null,null]");
  EXPECT_EQ(value("{b: 1, a: [2]}"), "{\"b\":1,\"a\":[2]}");
  EXPECT_EQ(value("ref(3, 4)"), "{\"ref\":3,\"index\":4}");
  EXPECT_EQ(value("method(undefined, Approach)"), "\"[[Method]]\"");
  const std::string id = std::to_string(static_cast<int>(number("instance_create_depth(0, 0, 0, oBullet)")));
  EXPECT_EQ(value("with (oBullet) { self }"), "{\"instance\":" + id + ",\"object\":\"oBullet\"}");
  EXPECT_EQ(ask({{"eval", "damage"}, {"self", std::stoi(id)}})["value"], 1);
}

TEST_F(Console, TheHashIsOfTheWholeState) {
  const auto hash = [&] { return ask({{"hash", true}})["hash"].get<std::string>(); };
  const std::string before = hash();
  EXPECT_EQ(hash(), before);
  eval("global.something = 1");
  const std::string with_global = hash();
  EXPECT_NE(with_global, before);
  eval("global.something = 2");
  EXPECT_NE(hash(), with_global);
  eval("global.something = 1");
  EXPECT_EQ(hash(), with_global);
  eval("random(1)");
  EXPECT_NE(hash(), with_global);
}

// Two runs of the program, a seed and some keys: every hash must agree.
TEST(Replays, TheSameSeedAndInputsGiveTheSameStates) {
  const std::string script = temporary_path("replay-input");
  {
    std::ofstream stream(script);
    for (int frame = 0; frame < 240; ++frame) {
      if (frame % 20 == 0)
        stream << "{\"key\": " << (frame % 40 == 0 ? 68 : 87) << ", \"down\": " << (frame % 80 < 40 ? "true" : "false") << "}\n";
      if (frame == 60) stream << "{\"key\": 69, \"down\": true}\n{\"mouse\": [1800, 1500]}\n{\"button\": 1, \"down\": true}\n";
      stream << "{\"step\": 1}\n{\"hash\": true}\n";
    }
  }
  std::string outputs[2];
  for (std::string& output : outputs) {
    const std::string file = temporary_path("replay-output");
    ASSERT_EQ(std::system((ARENA_BINARY "/arena --headless --console --seed 5 <" + script + " >" + file + " 2>/dev/null").c_str()), 0);
    std::ifstream stream(file);
    output.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  EXPECT_GT(outputs[0].size(), 10000u);
  EXPECT_EQ(outputs[0].find("error"), std::string::npos);
  EXPECT_TRUE(outputs[0] == outputs[1]);
}

class ConsolePast : public ArenaGame {
 protected:
  // A frame of somebody without a plan, who also evaluates something; the state's hash behind it.
  std::string play(int frame) {
    const unsigned noise = static_cast<unsigned>(frame) * 2654435761u;
    key("WASDEQ "[noise >> 8 & 7], (noise >> 12 & 1) != 0);
    ask({{"button", 1}, {"down", (noise >> 5 & 3) != 0}});
    if (frame % 7 == 0) ask({{"mouse", {noise >> 16 & 2047, noise >> 20 & 1023}}});
    if (frame % 11 == 0) eval("oPlayer.x += 3; global.told = clipboard_get_text() + clipboard_get_text(); never_there()");
    if (frame % 50 == 3) eval("with (oEnemy) { takeDamage(500, 0, 0, 50) } 1");
    ask({{"step", 1}, {"dt", 0.01 + frame % 5 * 0.002}});
    return hash();
  }
  std::string hash() { return ask({{"hash", true}})["hash"]; }
  std::string problem(const nlohmann::ordered_json& request) {
    const auto reply = ask(request);
    return reply.contains("error") ? reply["error"].get<std::string>() : "";
  }
};

TEST_F(ConsolePast, SnapshotsHaveNames) {
  for (int frame = 0; frame < 100; ++frame) play(frame);
  const std::string there = hash();
  const auto taken = ask({{"snapshot", "there"}});
  EXPECT_EQ(taken["room"], "rArena");
  std::vector<std::string> hashes;
  for (int frame = 100; frame < 160; ++frame) hashes.push_back(play(frame));
  EXPECT_EQ(ask({{"restore", "there"}}), taken);
  EXPECT_EQ(hash(), there);
  for (int frame = 100; frame < 160; ++frame) ASSERT_EQ(play(frame), hashes[static_cast<std::size_t>(frame - 100)]) << frame;

  for (int i = 1; i < 16; ++i) EXPECT_EQ(problem({{"snapshot", "s" + std::to_string(i)}}), "");
  EXPECT_EQ(problem({{"snapshot", "one more"}}), "there are 16 snapshots already; one that has a name can be taken anew");
  EXPECT_EQ(problem({{"snapshot", "there"}}), "");
  EXPECT_EQ(problem({{"restore", "there"}}), "");
  EXPECT_EQ(hash(), hashes.back());
  EXPECT_EQ(problem({{"restore", "nowhere"}}), "there is no snapshot 'nowhere'");
  EXPECT_EQ(problem({{"snapshot", ""}}), "the name of a snapshot has 1 to 100 bytes");
  EXPECT_EQ(problem({{"snapshot", 5}}), "\"snapshot\" must be a text");
  EXPECT_EQ(problem({{"restore", nullptr}}), "\"restore\" must be a text");
}

// However far: the state behind that frame, from which the same leads to the same. What scripts heard from outside they hear again.
TEST_F(ConsolePast, FramesCanBeTakenBack) {
  int asked = 0;
  give_answers([&] { return "answer " + std::to_string(++asked); });
  EXPECT_EQ(problem({{"rewind", 1}}), "no frames are remembered; {\"rewind\": 0} begins with it");
  std::vector<std::string> hashes;  // behind frame i
  for (int frame = 0; frame <= 20; ++frame) hashes.push_back(play(frame));
  EXPECT_EQ(problem({{"rewind", 0}}), "");
  EXPECT_EQ(hash(), hashes.back());
  int behind = 20;
  const auto play_to = [&](int frame) {
    for (int next = behind + 1; next <= frame; ++next) {
      hashes.push_back(play(next));
    }
    behind = frame;
  };
  const auto rewind = [&](int frames) {
    const int before = asked;
    const auto reply = ask({{"rewind", frames}});
    ASSERT_EQ(reply.contains("error"), false) << reply.dump();
    behind -= frames;
    hashes.resize(static_cast<std::size_t>(behind) + 1);
    EXPECT_EQ(hash(), hashes.back()) << "behind frame " << behind;
    EXPECT_EQ(asked, before) << "the machine is not asked again";
  };
  play_to(50);
  EXPECT_EQ(problem({{"rewind", 31}}), "the last 30 frames are remembered, no more");
  for (const int frames : {0, 1, 5, 24}) rewind(frames);
  EXPECT_EQ(behind, 20);
  play_to(900);
  for (const int frames : {1, 59, 60, 61, 200, 20, 59}) rewind(frames);
  eval("oPlayer.x += 100");  // taken back, too
  rewind(0);
  play_to(behind + 5);
  rewind(2);
  play_to(1000);
  rewind(500);
  EXPECT_EQ(problem({{"rewind", 601}}), "\"rewind\" must be a whole number of frames from 0 to 600");
  EXPECT_EQ(problem({{"rewind", 1.5}}), "\"rewind\" must be a whole number of frames from 0 to 600");
  play_to(1700);
  rewind(600);

  // A snapshot that is restored is another past.
  ask({{"snapshot", "there"}});
  play_to(1110);
  ask({{"restore", "there"}});
  EXPECT_EQ(problem({{"rewind", 1}}), "the last 0 frames are remembered, no more");
}

// What is remembered of frames is all that led from one to the next, at the same clock.
TEST_F(ConsolePast, TheSameLeadsToTheSame) {
  give_answers([] { return "always the same"; });
  ask({{"rewind", 0}});
  std::vector<std::string> hashes;
  std::map<int, nlohmann::ordered_json> draws;
  for (int frame = 0; frame < 300; ++frame) {
    hashes.push_back(play(frame));
    draws[frame] = ask({{"draws", true}});
  }
  for (const int back : {10, 130, 299}) {
    ask({{"rewind", back}});
    EXPECT_EQ(ask({{"draws", true}}), draws[299 - back]) << back;
    for (int frame = 300 - back; frame < 300; ++frame) ASSERT_EQ(play(frame), hashes[static_cast<std::size_t>(frame)]) << frame;
  }
}

std::string repeated(const std::string& part, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

TEST_F(Console, NothingIsTooDeepOrTooLong) {
  constexpr int kMany = 100000;
  for (const char* const part : {"(", "[", "-", "!", "{a:", "with(all){", "1+", "a.b.", "f(1)(1)", "a[0]", "new X(", "\"", "0x"}) {
    EXPECT_TRUE(ask({{"eval", repeated(part, kMany) + "1"}}).contains("error")) << part;
  }
  EXPECT_EQ(eval(repeated("1 + ", 900) + "1"), "901") << "what a person may write is no trouble";
  for (const char* const part : {"[", "{\"a\":", "{\"eval\":\"", "\\", "a"}) {
    const std::string reply = console->answer(repeated(part, kMany));
    EXPECT_EQ(reply.find("{\"error\""), 0U) << part;
    EXPECT_LT(reply.size(), 2000U) << "it does not quote all of it";
  }
  EXPECT_NE(console->answer("{\"instances\": " + repeated("[", kMany) + repeated("]", kMany) + "}").find("at most 100 deep"),
            std::string::npos);
  EXPECT_NE(console->answer(std::string(17 << 20, ' ')).find("a request has at most 16777216 bytes"), std::string::npos);
  // Containers that stand in one another, far deeper than the native stack reaches.
  for (const char* const deeper : {"a = {n: a}; 0", "a = [a]; 0"}) {
    eval("a = 0");
    for (int i = 0; i < 30000; ++i) eval(deeper);
    EXPECT_LT(number("string_length(string(a))"), 2000) << "a part of it";
    EXPECT_TRUE(ask({{"eval", "a"}}).contains("value"));
    EXPECT_EQ(eval("b = struct_copy_deep(a); struct_merge({c: a}, {c: b}); 1"), "1");
    const std::string hash = ask({{"hash", true}}).dump();
    EXPECT_EQ(ask({{"hash", true}}).dump(), hash);
    eval("b = 0");
    EXPECT_NE(ask({{"hash", true}}).dump(), hash);
    step(3);
    eval("a = 0");
    step(3);
  }
  // Too much to show, or to hold.
  EXPECT_EQ(eval("a = string_repeat(\"x\", 60000); b = array_create(2000, a); string(b)"), "! a text cannot be longer than 67108864 bytes");
  EXPECT_EQ(eval("string_repeat(\"text\", 1000000000)"), "! a text cannot be longer than 67108864 bytes");
  check({{"array_create(1000000000)", "! index out of bounds request 1000000000 maximum size is 16777216"},
         {"c = []; c[20000000] = 1", "! index out of bounds request 20000000 maximum size is 16777216"},
         {"array_resize(c, 2000000000)", "! index out of bounds request 2000000000 maximum size is 16777216"},
         {"array_insert(c, 2000000000, 1)", "! index out of bounds request 2000000001 maximum size is 16777216"},
         {"array_length(c)", "0"},
         {"ds_grid_create(100000, 100000)", "! index out of bounds request 2147483647 maximum size is 16777216"}});
}

}  // namespace
}  // namespace arena::test
