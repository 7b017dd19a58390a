// Replays as the program plays them: two builds beside each other, the state as text.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "engine/host/state_hash.h"
#include "engine/platform/child_output.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

TEST(Descriptions, NameTheFirstThingThatDiffers) {
  const std::string state =
      "-- globals\nglobals #0\nin globals #0\nkills: 3\n-- oEnemy\ninstance 0\nx: 1\nhp: 10\ninstance 4\nx: 2\nhp: 10\nin oEnemy #1\nname: "
      "string a\n";
  const auto with = [&](const std::string& line, const std::string& other, std::size_t from = 0) {
    std::string changed = state;
    return changed.replace(changed.find(line, from), line.size(), other);
  };
  EXPECT_EQ(host::first_difference(state, state), "");
  EXPECT_EQ(host::first_difference(state, with("kills: 3", "kills: 4")), "globals, in globals #0: kills: 3 here, kills: 4 there");
  EXPECT_EQ(host::first_difference(state, with("hp: 10", "hp: 9", state.find("instance 4"))),
            "oEnemy, instance 4: hp: 10 here, hp: 9 there");
  EXPECT_EQ(host::first_difference(state, with("string a", "string b")), "oEnemy, in oEnemy #1: name: string a here, name: string b there");
  EXPECT_EQ(host::first_difference(state, state + "more\n"), "oEnemy, in oEnemy #1:  here, more there");
}

#ifndef _WIN32
class ComparedBuilds : public ::testing::Test {
 protected:
  const std::string program_ = ARENA_BINARY "/arena", recording_ = temporary_path("compared.rec");
  void SetUp() override { ASSERT_EQ(run_program("--headless --demo --seed 3 --room rArena --frames 400 --record " + recording_), 0); }

  // Another build, which is this one but for what a line of the shell does to its output.
  struct Said {
    int status;
    std::string output, errors;
  };
  Said compare(const std::string& filter) {
    const std::string other = temporary_path("other"), output = temporary_path("output"), errors = temporary_path("errors");
    std::ofstream(other) << "#!/bin/sh\n" << filter << "\n";
    std::filesystem::permissions(other, std::filesystem::perms::owner_all);
    const int status = run_program("--replay " + recording_ + " --compare " + other + " >" + output, errors);
    return {status, text_of(output), text_of(errors)};
  }
  static std::string text_of(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
};

TEST_F(ComparedBuilds, SayWhereTheyDiffer) {
  const std::string same = program_ + " \"$@\"";
  Said said = compare("exec " + same);
  EXPECT_EQ(said.status, 0);
  EXPECT_EQ(said.output, "the same run in both builds: 400 frames\n");
  // A shot that is a little faster, say: another hash from frame 250 on, and a player with less life.
  said = compare("case \"$*\" in\n*--describe*) " + same + " | sed '/^-- oPlayer/,/^-- /s/^hp: .*/hp: 0.5/' ;;\n*) " + same +
                 " | sed 's/^250 .*/250 1/' ;;\nesac");
  EXPECT_EQ(said.status, 5);
  EXPECT_NE(said.errors.find("the builds differ from frame 250 on, in oPlayer, instance "), std::string::npos) << said.errors;
  EXPECT_NE(said.errors.find("hp: 0.5 there"), std::string::npos) << said.errors;
  EXPECT_EQ(std::count(said.errors.begin(), said.errors.end(), '\n'), 1) << said.errors;
  // One that ends early, fails, or is none.
  said = compare(same + " | head -n 100; exit 7");
  EXPECT_EQ(said.status, 5);
  EXPECT_NE(said.errors.find("the other build ended with status 7 behind frame 100"), std::string::npos) << said.errors;
  EXPECT_EQ(run_program("--replay " + recording_ + " --compare /nowhere/at/all"), 5);
}

TEST(ChildOutputs, AreReadToTheirEnds) {
  using platform::ChildOutput;
  std::string line;
  std::unique_ptr<ChildOutput> child = ChildOutput::start("/bin/sh", {"-c", "printf 'one\\n\\nlast'; exit 3"});
  ASSERT_NE(child, nullptr);
  for (const char* expected : {"one", "", "last"}) {
    ASSERT_TRUE(child->next(line));
    EXPECT_EQ(line, expected);
  }
  EXPECT_FALSE(child->next(line));
  EXPECT_EQ(child->wait(), 3);
  child = ChildOutput::start("/bin/sh", {"-c", "echo first; yes | head -c 300000"});
  ASSERT_TRUE(child->next(line));
  EXPECT_EQ(child->rest().size(), 300000u);
  child = ChildOutput::start("/bin/sh", {"-c", "while true; do echo on and on; done"});
  ASSERT_TRUE(child->next(line));
  child.reset();  // ends it: else this never does
  EXPECT_EQ(ChildOutput::start("/nowhere/at/all", {}), nullptr);
}
#endif

}  // namespace
}  // namespace arena::test
