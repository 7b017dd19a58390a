// Seeking: a frame is the same however it was reached, nobody sees or hears the way there, and no damage to a recording breaks it.
#include "engine/recording/timeline.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "engine/gpu/backend.h"
#include "engine/host/state_hash.h"
#include "runtime/instances_loop/moments.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/world.h"
#include "runtime/reports/report.h"
#include "tests/support/recorded_fight.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using recording::Recording;
using recording::Replay;
using recording::Timeline;
using recording::TimelineLimits;

const std::string& fight_bytes() {
  static const std::string bytes = [] {
    std::ifstream file(record_a_fight(), std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(file), {}};
  }();
  return bytes;
}
const Recording& fight() {
  static const Recording made = [] {
    Recording read;
    std::string problem;
    EXPECT_TRUE(recording::read_recording(fight_bytes(), read, problem)) << problem;
    return read;
  }();
  return made;
}

// A game that plays a recording, and its time line.
struct Played {
  Replay replay;
  std::unique_ptr<host::Game> game;
  std::unique_ptr<Timeline> line;

  explicit Played(const Recording& recorded, const TimelineLimits& limits = {}, host::GameOptions options = {}) : replay(recorded) {
    replay.prepare(options);
    game = start_recorded(std::move(options));
    line = std::make_unique<Timeline>(*game, replay, limits);
  }
  void build() {
    while (!line->build(5000)) {
    }
  }
  std::uint64_t hash() const {
    const SessionScope scope(game->session());
    return host::state_hash();
  }
};

// After every frame, of a game that runs through.
std::vector<std::uint64_t> straight_hashes(const Recording& recorded) {
  Replay replay(recorded);
  host::GameOptions options;
  replay.prepare(options);
  const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
  std::vector<std::uint64_t> hashes = {host::state_hash()};
  while (!replay.is_at_end()) {
    replay.step(*game);
    hashes.push_back(host::state_hash());
  }
  return hashes;
}

TEST(Timelines, ReachEveryFrameAsAStraightPassDoes) {
  const std::vector<std::uint64_t> straight = straight_hashes(fight());
  ASSERT_EQ(straight.size(), 601u);
  // Plenty of memory and next to none; a snapshot at every frame and hardly any.
  for (const TimelineLimits limits : {TimelineLimits{64u << 20, 0}, {64u << 20, 3000}, {6u << 20, 0}, {1, 0}, {64u << 20, 1 << 30}}) {
    Played played(fight(), limits);
    Timeline& line = *played.line;
    RandomGenerator chance(7);
    const auto seek = [&](std::size_t frame) {
      line.seek(frame);
      ASSERT_EQ(played.replay.frame(), std::min(frame, line.frames()));
      EXPECT_EQ(played.hash(), straight[played.replay.frame()]) << "frame " << frame << " of " << line.frames();
      const SessionScope scope(played.game->session());
      EXPECT_EQ(played.replay.differences(), std::vector<std::string>());
    };
    while (!line.build(2000)) {
      EXPECT_LE(line.progress(), 1);
      if (line.snapshots() > 1) {
        EXPECT_LE(line.bytes(), limits.memory);
      }
      if (chance.integer(0, 3) == 0) seek(static_cast<std::size_t>(chance.integer(0, 700)));
    }
    EXPECT_EQ(line.frames(), 600u);
    EXPECT_EQ(line.progress(), 1);
    EXPECT_EQ(line.error(), "");
    EXPECT_EQ(line.another_run(), "");
    for (const std::size_t frame : {0, 600, 0, 1, 599, 100000}) seek(frame);
    for (int i = 0; i < 12; ++i) seek(static_cast<std::size_t>(chance.integer(0, 600)));
    // It goes on from there.
    line.seek(300);
    played.replay.step(*played.game);
    EXPECT_EQ(played.hash(), straight[301]);
    seek(301);
  }
}

// What entered is changed in one place, and the hashes are still those of the run as it was.
TEST(Timelines, TellWhereARunBecomesAnotherOne) {
  Recording changed = fight();
  changed.frames[200].microseconds += 7;
  Played played(changed);
  played.build();
  EXPECT_EQ(played.line->frames(), 600u) << "it is played all the same";
  std::size_t seconds = 0;
  while (changed.checkpoints.at(seconds).frames <= 200) ++seconds;
  const std::string where =
      "from second " + std::to_string(seconds + 1) + " on (by frame " + std::to_string(changed.checkpoints[seconds].frames) + "), in ";
  EXPECT_EQ(played.line->another_run().find(where), 0U) << played.line->another_run() << " instead of " << where;
  EXPECT_NE(played.line->another_run().find("clock"), std::string::npos) << played.line->another_run();
}

TEST(Timelines, KeepMoreSnapshotsWhereMemoryAllows) {
  const auto snapshots = [](const TimelineLimits& limits) {
    Played played(fight(), limits);
    played.build();
    return played.line->snapshots();
  };
  EXPECT_EQ(snapshots({64u << 20, 0}), 601u) << "one each frame, which share what stays";
  EXPECT_EQ(snapshots({64u << 20, 1 << 30}), 1u);
  EXPECT_EQ(snapshots({1, 0}), 1u) << "the beginning stays";
  const std::size_t some = snapshots({6u << 20, 0});
  EXPECT_GT(some, 4u);
  EXPECT_LT(some, 300u);
}

// What goes to the card, and what is heard.
struct Seen {
  int frames = 0, drawn = 0, heard = 0, silenced = 0;
};
class Card final : public gpu::Backend {
 public:
  explicit Card(Seen& seen) : seen_(seen) {}
  std::uint32_t create_texture(int, int, const std::uint8_t*) override { return 1; }
  void destroy_texture(std::uint32_t) override {}
  std::uint32_t create_mesh(const gpu::Vertex*, std::size_t) override { return 1; }
  void destroy_mesh(std::uint32_t) override {}
  void draw_mesh(std::uint32_t, const gpu::State&, std::uint32_t, const gpu::Transform&) override { ++seen_.drawn; }
  void begin_frame(int, int, std::uint32_t) override { ++seen_.frames; }
  void draw(std::uint32_t, const gpu::State&, const gpu::Vertex*, std::size_t) override { ++seen_.drawn; }
  void end_frame() override {}
  std::vector<std::uint8_t> read_pixels(int width, int height) override {
    return std::vector<std::uint8_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  }

 private:
  Seen& seen_;
};
class Loudspeaker final : public audio::Device {
 public:
  explicit Loudspeaker(Seen& seen) : seen_(seen) {}
  void load(const std::vector<audio::Clip>&) override {}
  void forget() override { ++seen_.silenced; }
  void follow(const std::vector<audio::Voice>&, const Listener&, audio::Falloff, double) override { ++seen_.heard; }

 private:
  Seen& seen_;
};

TEST(Timelines, ShowOnlyTheFrameThatWasSought) {
  Seen seen;
  host::GameOptions options;
  options.backend = std::make_unique<Card>(seen);
  options.audio_device = std::make_unique<Loudspeaker>(seen);
  Played played(fight(), {64u << 20, 3000}, std::move(options));
  played.build();
  EXPECT_EQ(seen.frames + seen.drawn + seen.heard, 0);
  for (int i = 0; i < 3; ++i) {
    seen = {};
    played.line->seek(200 + static_cast<std::size_t>(i) * 50);
    EXPECT_EQ(seen.frames, 1);
    EXPECT_GT(seen.drawn, 0);
    EXPECT_EQ(seen.heard, 0);
    EXPECT_GT(seen.silenced, 0) << "what sounded before";
  }
  played.replay.step(*played.game);
  EXPECT_EQ(seen.frames, 2) << "and played on it is seen and heard";
  EXPECT_EQ(seen.heard, 1);
}

TEST(Timelines, TakeNoScreenshotsOnTheWay) {
  const std::string folder = temporary_path("sought");
  host::GameOptions options;
  options.screenshot_folder = [&] { return folder; };
  Seen seen;
  options.backend = std::make_unique<Card>(seen);
  const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
  console::Console console(*game);
  const auto ask_for_one = [&](bool is_watched) {
    game->be_watched(is_watched, true);
    console.answer(R"x({"eval": "screen_save_numbered()"})x");
    game->run_frame(16667);
    game->be_watched(true, true);
    game->run_frame(16667);
    return std::filesystem::exists(folder + "/screenshot-001.png");
  };
  EXPECT_FALSE(ask_for_one(false));
  EXPECT_TRUE(ask_for_one(true));
  std::filesystem::remove_all(folder);
}

TEST(Timelines, NoteMarksOnceAndNotWithoutEnd) {
  Played played(fight());
  Timeline& line = *played.line;
  line.build(0);
  line.seek(0);
  line.build(0);
  const SessionScope scope(played.game->session());
  mark_moment(std::string(62, 'x') + "\xE2\x82\xAC");  // a sign of three bytes, cut off as a whole
  played.build();
  ASSERT_EQ(line.marks().size(), 2u);
  EXPECT_EQ(line.marks()[0].frame, 2u);
  EXPECT_EQ(line.marks()[0].text, std::string(62, 'x'));
  EXPECT_EQ(line.marks()[1].text, "wave 1");
  // It is there where the mark says, and not a frame before.
  const auto enemies_at = [&](std::size_t frame) {
    line.seek(frame);
    return object_types().at(object_types().find("oEnemy")).live_count;
  };
  EXPECT_EQ(enemies_at(line.marks()[1].frame - 1), 0);
  EXPECT_GT(enemies_at(line.marks()[1].frame), 0);
  mark_moment("later");
  played.replay.step(*played.game);
  EXPECT_EQ(line.marks().size(), 2u);

  Played other(fight());
  for (int i = 0; i < 3000; ++i) mark_moment(std::to_string(i));
  EXPECT_EQ(other.line->marks().size(), recording::kMostMarks);
  EXPECT_EQ(other.line->marks().back().text, "999");
}

TEST(Timelines, GoThroughRecordingsThatEndAnywhere) {
  const std::vector<std::uint64_t> straight = straight_hashes(fight());
  const std::string& bytes = fight_bytes();
  RandomGenerator chance(23);
  Recording read;
  std::string problem;
  int sought = 0;
  for (int round = 0; round < 12; ++round) {
    std::string cut = bytes.substr(0, static_cast<std::size_t>(chance.integer(1, static_cast<std::int64_t>(bytes.size()))));
    if (round % 3 == 0) cut.back() = static_cast<char>(cut.back() ^ 0x55);
    if (!recording::read_recording(cut, read, problem)) continue;
    Played played(read, {64u << 20, 2000});
    played.build();
    ASSERT_EQ(played.line->frames(), read.frames.size());
    // The last frame may have lost an answer or, where its bytes were changed, be another one.
    for (std::size_t frame = 0; frame + 1 < read.frames.size(); frame += 1 + read.frames.size() / 4) {
      played.line->seek(frame);
      EXPECT_EQ(played.hash(), straight[frame]) << "round " << round << " frame " << frame;
      ++sought;
    }
    played.line->seek(read.frames.size());
  }
  EXPECT_GT(sought, 20);
}

constexpr std::size_t kFaulty = 301;
const Replay* faulty = nullptr;
void fail_in_one_frame(const BuiltinEntry&, std::int32_t, const RValue*) {
  if (faulty->frame() == kFaulty) throw WBKSLException("broken", "the report");
}

// The recording of a run that a script error ended: it can be sought up to there.
TEST(Timelines, EndBeforeTheFrameThatFails) {
  const std::vector<std::uint64_t> straight = straight_hashes(fight());
  Played played(fight(), {64u << 20, 2000});
  faulty = &played.replay;
  played.game->session().builtin_observer = fail_in_one_frame;
  played.build();
  const std::size_t end = played.line->frames();
  EXPECT_EQ(played.line->error(), "the report");
  ASSERT_EQ(end, kFaulty - 1);
  EXPECT_EQ(played.replay.frame(), end);
  EXPECT_EQ(played.hash(), straight[end]);
  for (const std::size_t frame : {std::size_t{5}, end, end / 2, std::size_t{600}}) {
    played.line->seek(frame);
    EXPECT_EQ(played.hash(), straight[std::min(frame, end)]) << frame;
  }
}

}  // namespace
}  // namespace arena::test
