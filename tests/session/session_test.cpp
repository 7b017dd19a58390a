// Sessions beside each other: each game is what it is alone.
#include "runtime/session/session.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <thread>

#include "engine/host/state_hash.h"
#include "game/autoplayer/autoplayer.h"
#include "runtime/program/names.h"
#include "tests/support/long_runs.h"
#include "tests/support/probes.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

struct Start {
  const char* room;
  std::uint64_t seed;
  bool knows_more;  // has an object type that the other game does not have
};
constexpr Start kFight{"rArena", 5, false}, kFromTheStart{"", 9, true};
constexpr int kFrames = 900, kHashEvery = 30;

// A game that plays itself and writes down its hash.
class PlayedGame {
 public:
  explicit PlayedGame(const Start& how) {
    std::string problem;
    host::GameOptions options;
    options.data = data::open_data_file(data_file_path(), problem);
    options.room = how.room;
    options.has_seed = true;
    options.seed = how.seed;
    options.extra_objects = probe_objects();
    if (how.knows_more) {
      ObjectDefinition stone;
      stone.name = "oStone";
      options.extra_objects.push_back(stone);
    }
    game_ = host::Game::start(std::move(options)).game;
  }
  void step() {
    const SessionScope scope(game_->session());
    player_.play();
    game_->run_frame(16667);
    if (++frames_ % kHashEvery == 0) hashes_.push_back(host::state_hash());
  }
  const std::vector<std::uint64_t>& hashes() const { return hashes_; }

 private:
  std::unique_ptr<host::Game> game_;
  autoplayer::ArenaPlayer player_;
  int frames_ = 0;
  std::vector<std::uint64_t> hashes_;
};

std::vector<std::uint64_t> hashes_of(const Start& how) {
  PlayedGame game(how);
  for (int frame = 0; frame < kFrames; ++frame) game.step();
  return game.hashes();
}

TEST(Sessions, TwoGamesTakeTurnsAndEachIsWhatItIsAlone) {
  const std::vector<std::uint64_t> fight = hashes_of(kFight), start = hashes_of(kFromTheStart);
  ASSERT_NE(fight, start);
  PlayedGame first(kFight), second(kFromTheStart);
  for (int frame = 0; frame < kFrames; ++frame) {
    first.step();
    second.step();
  }
  EXPECT_EQ(first.hashes(), fight);
  EXPECT_EQ(second.hashes(), start);
}

#ifndef _WIN32  // there, games of one process take turns
TEST(Sessions, TwoGamesRunOnTwoThreads) {
  const std::vector<std::uint64_t> fight = hashes_of(kFight), start = hashes_of(kFromTheStart);
  std::vector<std::uint64_t> beside;
  std::thread other([&] { beside = hashes_of(kFromTheStart); });
  const std::vector<std::uint64_t> here = hashes_of(kFight);
  other.join();
  EXPECT_EQ(here, fight);
  EXPECT_EQ(beside, start);
}

TEST(Sessions, GamesThatEndedLeaveNoMemoryBehind) {
  const auto play = [](int games) {
    for (int i = 0; i < games; ++i) {
      PlayedGame game(kFight);
      for (int frame = 0; frame < 3; ++frame) game.step();
    }
    return static_cast<std::int64_t>(mallinfo2().uordblks);
  };
  const std::int64_t before = play(10);
  EXPECT_LT(play(std::min(40 * longer(), 1000)) - before, 20000);  // bytes
}
#endif

// What one game makes up as it goes is unknown to the next.
TEST(Sessions, ForgetTheNamesThatOneGameMade) {
  const auto knows = [](const char* name) { return find_variable_id(name) >= 0; };
  {
    Session first;
    variable_id("a name that only this game has");
    EXPECT_TRUE(knows("a name that only this game has"));
  }
  Session second;
  EXPECT_FALSE(knows("a name that only this game has"));
  EXPECT_TRUE(knows("hp"));
}

}  // namespace
}  // namespace arena::test
