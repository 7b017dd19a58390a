// A game that is put back to what it was goes on as it did.
#include "runtime/session/snapshot.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "engine/host/state_hash.h"
#include "game/autoplayer/autoplayer.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/frame_loop.h"
#include "runtime/instances_loop/random.h"
#include "runtime/session/state_visitor.h"
#include "tests/support/long_runs.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

class Snapshots : public ArenaGame {
 protected:
  void perform(const std::string& statements) { ASSERT_NE(eval(statements)[0], '!') << statements; }
  // Something of everything that a game can hold.
  void fill_all_parts() {
    perform("global.list = ds_list_create(); ds_list_add(global.list, 1, \"two\", [3]); global.map = ds_map_create()");
    perform("ds_map_set(global.map, \"key\", {a: 1}); ds_map_set(global.map, 2, 3); global.grid = ds_grid_create(3, 2)");
    perform("ds_grid_set(global.grid, 1, 1, [1, [2, \"three\"]]); global.many = {}; i = 0");
    perform("global.bound = method({hidden: 5}, abs); exception_unhandled_handler(show_debug_message)");
    perform("global.long = array_create(5000, \"text\"); global.made_up_just_now = string_repeat(\"long \", 1000)");
    perform("global.sparks = part_type_create(); part_type_set(global.sparks, {sprite: sprPlayer, life: 5, speed: [10, 20]})");
    perform("global.system = part_system_create(); part_emit(global.system, global.sparks, 20, 1, 0, 0, 100, 100)");
    perform("global.stickers = stickers_create(100); stickers_add(global.stickers, sprPlayer, 0, 5, 5, 1, 1, 0, 255, 1)");
    perform("h = audio_play_sound(1, 1, true); audio_sound_gain(h, 0.5, 5000); window_set_cursor(-1); clipboard_set_text(\"mine\")");
    perform("global.timer = timer_create_seconds(9, show_debug_message, 3); room_set_persistent(rPrepare, true); date_zone_offset(0)");
    perform("window_set_caption(\"mine\"); game_set_speed(50); instance_sleep(instance_create_depth(5, 5, 0, oFader))");
    perform("draw_set_alpha(0.25); keyboard_string = \"typed\"; layer_create(5, \"mine\")");
  }
};

// What somebody without a plan might press, by the number of the frame.
void press_something(int frame) {
  const unsigned noise = static_cast<unsigned>(frame) * 2654435761u;
  const char keys[] = "WASDEQ ";
  push_key(keys[noise >> 8 & 7], (noise >> 12 & 1) != 0);
  if (frame % 7 == 0) push_pointer(PointerSpace::kRoom, noise >> 16 & 2047, noise >> 20 & 1023);
  push_button(1, (noise >> 5 & 3) != 0);
}

// Frame by frame the fight goes on from its copy as it goes on by itself, and as it goes where nobody makes copies.
TEST_F(Snapshots, EveryFrameCanBeRunAgain) {
  const int frames = std::min(2000 * longer(), 20000);
  autoplayer::ArenaPlayer player;
  Snapshot snapshot;
  for (int frame = 0; frame < frames; ++frame) {
    player.play();
    game->take_snapshot(snapshot);
    game->run_frame(16667);
    const std::uint64_t once = host::state_hash();
    game->restore(snapshot);
    game->run_frame(16667);
    ASSERT_EQ(host::state_hash(), once) << "frame " << frame;
    ASSERT_EQ(broken_invariant(), "") << "frame " << frame;
  }
}

// Over collections, deaths, a change of rooms and a new game; forwards and back.
TEST_F(Snapshots, ARunCanBeTakenUpAnywhere) {
  fill_all_parts();
  constexpr int kEvery = 150;
  std::map<int, Snapshot> snapshots;
  std::map<int, std::uint64_t> hashes;
  const auto run = [&](int from, int to) {
    for (int frame = from; frame < to; ++frame) {
      press_something(frame);
      if (frame == 700) eval("game_restart()");
      if (frame == 1000) eval("with (oEnemy) { takeDamage(500, 0, 0, 50) } 1");
      game->run_frame(16667);
      const auto [known, is_new] = hashes.emplace(frame, host::state_hash());
      ASSERT_EQ(known->second, host::state_hash()) << "from " << from << " on, at " << frame;
    }
  };
  for (int frame = 0; frame < 1500; frame += kEvery) {
    game->take_snapshot(snapshots[frame]);
    run(frame, frame + kEvery);
  }
  for (const int from : {1350, 0, 600, 450, 1050, 0, 900}) {
    game->restore(snapshots.at(from));
    run(from, std::min(from + 400, 1500));
  }
}

// Each shares with the one before: all are put back as if they stood alone, in any order, whoever of them is gone or taken anew.
TEST_F(Snapshots, ShareWhatHasNotChanged) {
  struct Kept {
    std::unique_ptr<Snapshot> snapshot = std::make_unique<Snapshot>();
    std::uint64_t hash = 0;
  };
  std::vector<Kept> all;
  const auto together = [&] {
    std::vector<const Snapshot*> pointers;
    for (const Kept& each : all) pointers.push_back(each.snapshot.get());
    return Snapshot::bytes_of(pointers);
  };
  RandomGenerator chance(5);
  const auto any = [&] { return static_cast<std::size_t>(chance.integer(0, static_cast<std::int64_t>(all.size()) - 1)); };
  const auto expect_all_there = [&](const std::string& when) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      const Kept& each = all[(i * 5 + 3) % all.size()];
      game->restore(*each.snapshot);
      ASSERT_EQ(host::state_hash(), each.hash) << when;
      ASSERT_EQ(broken_invariant(), "") << when;
    }
  };
  fill_all_parts();
  for (int i = 0; i < 2000; ++i) {
    perform("stickers_add(global.stickers, sprPlayer, 0, " + std::to_string(i) + ", " + std::to_string(i * 7 % 3000) +
            ", 1, 1, 0, 255, 1)");
  }
  std::size_t bytes = 0;
  autoplayer::ArenaPlayer player;
  for (int round = 0; round < 11; ++round) {
    for (int frame = 0; frame < 60; ++frame) {
      player.play();
      game->run_frame(16667);
    }
    // Large blocks come, change, and go; stickers, too.
    perform("global.long = array_create(" + std::to_string(3000 + round % 4 * 500) +
            ", \"text\"); global.stays_long = array_create(4000, 1)");
    perform("global.long[" + std::to_string(round * 100) +
            "] = \"changed\"; stickers_add(global.stickers, sprPlayer, 0, 5, 5, 1, 1, 0, 255, 1)");
    if (round == 8) perform("stickers_clear(global.stickers)");
    Kept next;
    game->take_snapshot(*next.snapshot, all.empty() ? nullptr : all.back().snapshot.get());
    next.hash = host::state_hash();
    bytes += next.snapshot->bytes();
    all.push_back(std::move(next));
    EXPECT_EQ(bytes, together()) << "what a snapshot adds is its own";
  }
  Snapshot alone;
  game->take_snapshot(alone);
  // Where every growth moves memory, less stays as it was.
  EXPECT_LT(bytes, all.size() * alone.bytes() * (kStressBuild ? 3 : 2) / 4) << "of " << alone.bytes();
  expect_all_there("all");
  for (int i = 0; i < 4; ++i) {
    const std::size_t gone = any();
    bytes -= all[gone].snapshot->bytes();
    all.erase(all.begin() + static_cast<std::ptrdiff_t>(gone));
    ASSERT_EQ(bytes, together());
    expect_all_there(std::to_string(i) + " without");
  }
  // Taken anew, into memory that others share.
  for (int i = 0; i < 4; ++i) {
    const std::size_t anew = any();
    step(20);
    game->take_snapshot(*all[anew].snapshot, i % 2 == 0 ? nullptr : all[(anew + 1) % all.size()].snapshot.get());
    all[anew].hash = host::state_hash();
    expect_all_there(std::to_string(i) + " anew");
  }
  Snapshot again;
  game->restore(*all[0].snapshot);
  game->take_snapshot(again, all[0].snapshot.get());
  EXPECT_LT(again.bytes(), alone.bytes() / 8) << "the same moment twice";
}

TEST_F(Snapshots, DrawingChangesNothing) {
  autoplayer::ArenaPlayer player;
  for (int frame = 0; frame < 900; ++frame) {
    player.play();
    game->run_frame(16667);
    const std::uint64_t before = host::state_hash();
    draw_frame();
    ASSERT_EQ(host::state_hash(), before) << "frame " << frame;
  }
}

// Changes one thing among all that it is shown: one field of one group, the first time that it meets it, or the length of that list.
class Probe final : public StateVisitor {
 public:
  using Place = std::pair<std::string, std::string>;
  Probe(Place at, bool of_length) : at_(std::move(at)), of_length_(of_length) {}
  void group(std::string_view name) override { group_ = name; }
  void name(std::string_view name) override { name_ = name; }
  void number(std::uint64_t& bits) override {
    if (is_met()) bits ^= 1;
  }
  void count(std::uint64_t) override {}
  void real(double& value) override {
    if (is_met()) value = value == 5 ? 6 : 5;
  }
  void text(std::string_view) override {}
  void own_text(std::string& mine) override {
    if (is_met()) mine += "!";
  }
  void clock(std::int64_t& microseconds) override {
    if (is_met()) ++microseconds;
  }
  void instance_id(std::int32_t) override {}
  void value(RValue& value) override {
    if (value.is_numeric()) real(value.real);
  }
  void object(WBObjectBase*) override {}
  void variables(WBObjectBase&) override {}
  void begin_key() override { is_in_key_ = true; }
  void end_key() override { is_in_key_ = false; }
  bool adds_element() override {
    lists.insert(here());
    return of_length_ && !is_done_ && here() == at_ ? (is_done_ = true) : false;
  }

  std::set<Place> scalars, lists;  // all that was met
  bool is_done() const { return is_done_; }

 private:
  Place here() const { return {group_, name_}; }
  bool is_met() {
    if (is_in_key_) return false;
    scalars.insert(here());
    return !of_length_ && !is_done_ && here() == at_ ? (is_done_ = true) : false;
  }
  Place at_;
  bool of_length_, is_done_ = false, is_in_key_ = false;
  std::string group_, name_;
};

// Each field of each part, changed, shows in the hash of its group, and is what it was after a restore.
TEST_F(Snapshots, NoFieldIsForgotten) {
  fill_all_parts();
  step(100);
  fill_all_parts();
  Snapshot snapshot;
  game->take_snapshot(snapshot);
  const std::uint64_t before = host::state_hash();
  Probe all({}, false);
  session().visit(all);
  EXPECT_GT(all.scalars.size(), 150u);
  EXPECT_GT(all.lists.size(), 5u);
  const auto probe = [&](const Probe::Place& place, bool of_length) {
    Probe one(place, of_length);
    session().visit(one);
    ASSERT_TRUE(one.is_done());
    EXPECT_NE(host::state_hash(), before) << place.first << "." << place.second << " does not show";
    game->restore(snapshot);
    EXPECT_EQ(host::state_hash(), before) << place.first << "." << place.second << " does not come back";
  };
  for (const Probe::Place& place : all.scalars) probe(place, false);
  for (const Probe::Place& place : all.lists) probe(place, true);
}

}  // namespace
}  // namespace arena::test
