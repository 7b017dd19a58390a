// A session beside a game: it sees the game, is seen over it, and changes nothing in it.
#include "engine/host/companion.h"

#include "engine/host/state_hash.h"
#include "game/autoplayer/autoplayer.h"
#include "runtime/reports/log.h"
#include "runtime/script.h"
#include "runtime/script/native.h"
#include "runtime/script/watched.h"
#include "runtime/values/strings.h"
#include ARENA_ASSETS
#include "tests/support/test_game.h"

namespace game {
namespace {

const arena::ToolObject watcher{"oOnlooker", {"Create_0", "Step_0", "Draw_0", "Draw_64"}};

const Variable enemies_seen{"enemies_seen"}, life_seen{"life_seen"}, wave_seen{"wave_seen"}, name_seen{"name_seen"},
    inventory_seen{"inventory_seen"}, time_seen{"time_seen"}, fails{"fails"}, ends{"ends"}, wave_count{"wave_count"}, hp{"hp"},
    told{"told"}, some_name{"some_name"}, some_struct{"some_struct"}, dust{"dust"}, own_seconds{"own_seconds"};

}  // namespace
}  // namespace game

EVENT(oOnlooker, Create_0) {
  global[dust] = array_create(0);
  global[own_seconds] = 0;
  global[fails] = false;
  global[ends] = false;
}

// As busy as can be: heap, generators, instances, input, sounds of its own.
EVENT(oOnlooker, Step_0) {
  global[enemies_seen] = 0;
  for (const WatchedInstance& enemy : watched.all(oParentEnemy)) {
    global[enemies_seen] += 1;
    global[life_seen] = enemy[hp];
    array_push(global[dust], struct_of({{hp, Value(enemy[x] + random(5))}}));
  }
  if (array_length(global[dust]) > 500) global[dust] = array_create(0);
  for (const WatchedInstance& level : watched.all(oLevel1)) global[wave_seen] = level[wave_count];
  global[name_seen] = watched[some_name];
  global[inventory_seen] = watched[some_struct];
  global[time_seen] = watched.seconds();
  global[own_seconds] += delta_time / 1e6;
  if (global[fails]) global[dust] = Value(global[told]) + Value(global[some_struct]);
  if (global[ends]) game_end();
}
EVENT(oOnlooker, Draw_0) { draw_circle(100, 100, 10, false); }
EVENT(oOnlooker, Draw_64) {
  draw_set_colour(255);
  draw_rectangle(0, 0, 50, 50, false);
}

namespace arena::test {
namespace {

class Companions : public ArenaGame {
 protected:
  static constexpr std::int64_t kFrame = 16667;
  autoplayer::ArenaPlayer player_;
  std::size_t vertices() const {
    std::size_t all = 0;
    for (const gpu::RecordedDraw& draw : recorder->draws) all += draw.vertex_count;
    return all;
  }
  std::uint64_t play(host::Companion* beside) {
    player_.play();
    if (beside != nullptr) beside->advance(kFrame);
    game->run_frame(kFrame);
    return host::state_hash();
  }
};

// The same fight twice; the second time somebody watches.
TEST_F(Companions, ChangeNothingInTheGame) {
  Snapshot start;
  for (int i = 0; i < 60; ++i) play(nullptr);
  game->take_snapshot(start);
  const autoplayer::ArenaPlayer player = player_;
  std::vector<std::uint64_t> alone;
  for (int i = 0; i < 900; ++i) alone.push_back(play(nullptr));
  const std::size_t drawn = vertices();
  game->restore(start);
  player_ = player;
  host::Companion watcher(*game, "oOnlooker", nullptr);
  ASSERT_TRUE(watcher.is_there());
  double most = 0;
  for (int i = 0; i < 900; ++i) {
    ASSERT_EQ(play(&watcher), alone[static_cast<std::size_t>(i)]) << i;
    ASSERT_EQ(watcher.hear("enemies_seen"), number("instance_number(oParentEnemy)")) << i;
    most = std::max(most, watcher.hear("enemies_seen"));
  }
  EXPECT_GT(most, 3);
  EXPECT_GT(watcher.hear("life_seen"), 0);
  EXPECT_GT(vertices(), drawn) << "it is seen over the game";
}

TEST_F(Companions, GetPlainValuesOnly) {
  eval("global.some_name = \"a text\"; global.some_struct = {a: 1}; oLevel1.wave_count = 7");
  host::Companion watcher(*game, "oOnlooker", nullptr);
  play(&watcher);
  const SessionScope scope(watcher.session());
  const auto seen = [](const char* name) { return RValue(*global_object()->find_variable(variable_id(name))); };
  EXPECT_EQ(to_text(seen("name_seen")), "a text");
  EXPECT_TRUE(seen("inventory_seen").is_undefined());
  EXPECT_EQ(to_real(seen("wave_seen")), 7);
  EXPECT_GT(to_real(seen("time_seen")), 0);
}

TEST_F(Companions, LiveByTheirOwnClockAndGlobals) {
  host::Companion watcher(*game, "oOnlooker", nullptr);
  watcher.tell("told", 12.5);
  watcher.tell_text("name_of_it", "x");
  EXPECT_EQ(watcher.hear("told"), 12.5);
  EXPECT_EQ(watcher.hear("name_of_it"), 0) << "no number";
  EXPECT_EQ(watcher.hear("nobody_said_so"), 0);
  EXPECT_EQ(eval("variable_global_exists(\"told\")"), "false");
  play(&watcher);
  const std::uint64_t before = host::state_hash();
  const double seconds = watcher.hear("time_seen");
  for (int i = 0; i < 5; ++i) {
    watcher.advance(kFrame);
    game->draw();  // a game that stands still
  }
  EXPECT_EQ(host::state_hash(), before);
  EXPECT_EQ(watcher.hear("time_seen"), seconds);
  EXPECT_NEAR(watcher.hear("own_seconds"), 6 * kFrame / 1e6, 1e-9);
}

TEST_F(Companions, ThatFailOrEndAreGoneAndTheGameGoesOn) {
  std::string log;
  set_log_sink([&](std::string_view line, bool) { (log += line) += "\n"; });
  for (const char* wish : {"fails", "ends"}) {
    host::Companion watcher(*game, "oOnlooker", nullptr);
    play(&watcher);
    ASSERT_TRUE(watcher.is_there());
    watcher.tell(wish, 1.0);
    play(&watcher);
    EXPECT_FALSE(watcher.is_there()) << wish;
    play(&watcher);
    EXPECT_FALSE(world().ended);
  }
  set_log_sink({});
  EXPECT_NE(log.find("oOnlooker"), std::string::npos) << log;
  EXPECT_EQ(eval("instance_exists(oPlayer)"), "true");
  host::Companion nobody(*game, "oNobody", nullptr);
  EXPECT_FALSE(nobody.is_there());
  play(&nobody);
}

}  // namespace
}  // namespace arena::test
