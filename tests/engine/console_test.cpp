// The console takes any line, and the game goes on.
#include <cstdlib>
#include <fstream>

#include "runtime/instances_loop/random.h"
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

}  // namespace
}  // namespace arena::test
