// Recordings: what is written is read again, a cut or changed file never passes for another run, and a replay is the same run.
#include "engine/recording/recording.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <filesystem>
#include <limits>

#ifndef _WIN32
#include <sys/resource.h>
#endif

#include "engine/console/console.h"
#include "engine/recording/bytes.h"
#include "engine/recording/recorder.h"
#include "engine/recording/recording_text.h"
#include "engine/recording/replay.h"
#include "game/autoplayer/autoplayer.h"
#include "runtime/instances_loop/random.h"
#include "tests/support/long_runs.h"
#include "tests/support/recorded_fight.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using recording::Recording;

InputEvent event(InputEvent::Type type, std::int32_t code, std::int32_t value, const std::string& text = "") {
  InputEvent made;
  made.type = type;
  made.code = code;
  made.value = value;
  made.text = text;
  return made;
}

InputEvent pointer(PointerSpace space, double x, double y) {
  InputEvent made;
  made.type = InputEvent::Type::kPointer;
  made.space = space;
  made.x = x;
  made.y = y;
  return made;
}

InputEvent newer(InputEvent::Type type, std::int32_t code, std::int32_t value, double x = 0, double y = 0, const char* text = "") {
  InputEvent made = event(type, code, value, text);
  made.x = x;
  made.y = y;
  return made;
}

std::vector<InputEvent> all_kinds() {
  using Type = InputEvent::Type;
  const double huge = 1e300, nowhere = std::numeric_limits<double>::quiet_NaN();
  return {event(Type::kKey, 'W', 1),
          event(Type::kKey, -5, 0),
          event(Type::kButton, 3, 1),
          event(Type::kFocus, 0, 1),
          event(Type::kFocus, 0, 0),
          event(Type::kText, 0, 0, "Ü😀"),
          event(Type::kText, 0, 0, std::string(300, 'x')),
          event(Type::kKeyLabel, 'Q', 0, "Й"),
          event(Type::kWindowSize, INT32_MAX, INT32_MIN),
          event(Type::kWheel, -3, 0),
          event(Type::kAsync, INT32_MAX, 2, std::string("D\0\xFF bytes", 9)),
          pointer(PointerSpace::kWindow, 640, 360),
          pointer(PointerSpace::kRoom, -1, 0.1 + 0.2),
          pointer(PointerSpace::kGui, huge, -huge),
          pointer(PointerSpace::kGui, 5, nowhere),
          pointer(PointerSpace::kWindow, -0.0, 1e9),
          pointer(PointerSpace::kWindow, 0.0, 1e9 + 7),
          newer(Type::kPad, 7, 1, 0, 0, "guid\nA pad"),
          newer(Type::kPadButton, 7, 31, 1),
          newer(Type::kPadAxis, 2147483647, 5, -12345 / 32768.0),
          newer(Type::kPadAxis, 0, 0, -0.0),
          newer(Type::kPadAxis, 0, 1, nowhere),
          newer(Type::kPadSensor, 3, 5, 0.1, -1e-300),
          newer(Type::kMotion, kMotionPointer, 0, -3, 1e17),
          newer(Type::kComposition, 2, 0, 0, 0, "にほ"),
          newer(Type::kTouch, 9, 1, 0.1 + 0.2, -12345678),
          newer(Type::kPointerInside, 0, 1)};
}

// A run of some seconds that nobody played, and its bytes.
struct Written {
  Recording recording;
  std::string bytes;
  std::vector<std::size_t> checkpoint_ends;  // in the bytes

  explicit Written(int seconds) {
    recording::Writer writer;
    write(seconds, writer);
  }
  Written(int seconds, recording::Form& writer) { write(seconds, writer); }

  void write(int seconds, recording::Form& writer) {
    RandomGenerator chance(3);
    recording.beginning = {"arena", "1.2.3", 0xFEDCBA98, "rArena", true, UINT64_MAX, true};
    recording.start.input = all_kinds();
    bytes = writer.beginning(recording.beginning) + writer.start(recording.start.input);
    answer(writer, recording.start, "seed");
    for (int frame = 1; frame <= seconds * 60; ++frame) {
      recording::Frame& next = recording.frames.emplace_back();
      next.microseconds = frame == 50 ? 1000000 : chance.integer(1, 40000);
      if (frame % 7 == 0) next.input = {pointer(PointerSpace::kWindow, static_cast<double>(chance.integer(0, 1280)), 9)};
      if (frame % 31 == 0) next.input = all_kinds();
      if (frame % 50 == 0) {
        next.requests = {R"({"eval":"x = \"ü\"; 1"})", R"({"eval":"2"})"};
        for (const std::string& request : next.requests) bytes += writer.request(request);
      }
      bytes += writer.frame(next.microseconds, next.input);
      if (frame % 40 == 0) answer(writer, next, std::string(static_cast<std::size_t>(frame), 'c') + std::string("\x9C\0\xFF\\\n\x7F", 6));
      if (frame % 60 != 0) continue;
      recording::Checkpoint checkpoint = {
          recording.frames.size(), chance.next(), {{"world", 1}}, 0, recording::Witnessed{1, 2, 0xFFFFFFFF}};
      if (frame % 120 == 0) checkpoint.figures.push_back({"oEnemy", recording::short_figure(chance.next(), writer.figure_bits())});
      bytes += writer.checkpoint(checkpoint);
      recording.checkpoints.push_back(checkpoint);
      checkpoint_ends.push_back(bytes.size());
    }
  }
  void answer(recording::Form& writer, recording::Frame& of, const std::string& text) {
    bytes += writer.answer(text);
    of.answers.push_back(text);
  }
};

std::string shown(const InputEvent& input) {
  std::string text = std::to_string(static_cast<int>(input.type)) + " " + std::to_string(input.code) + " " + std::to_string(input.value) +
                     " " + std::to_string(static_cast<int>(input.space)) + " " + input.text;
  for (const double coordinate : {input.x, input.y}) text += " " + std::to_string(std::bit_cast<std::uint64_t>(coordinate));
  return text;
}

std::string shown(const recording::Frame& frame) {
  std::string text = std::to_string(frame.microseconds);
  for (const InputEvent& each : frame.input) text += "\n  " + shown(each);
  for (const std::string& each : frame.requests) text += "\n  request " + each;
  for (const std::string& each : frame.answers) text += "\n  answer " + each;
  return text;
}

// Whether all that was read is what was written, up to where the reading ended. The last frame may have lost its answers.
void expect_a_beginning_of(const Recording& read, const Recording& written, const std::string& label) {
  ASSERT_LE(read.frames.size(), written.frames.size()) << label;
  ASSERT_LE(read.checkpoints.size(), written.checkpoints.size()) << label;
  for (std::size_t i = 0; i + 1 < read.frames.size(); ++i) {
    if (shown(read.frames[i]) == shown(written.frames[i])) continue;
    ADD_FAILURE() << label << ": frame " << i;
    return;
  }
  for (std::size_t i = 0; i < read.checkpoints.size(); ++i) {
    EXPECT_EQ(read.checkpoints[i].hash, written.checkpoints[i].hash) << label;
    EXPECT_EQ(read.checkpoints[i].frames, written.checkpoints[i].frames) << label;
    EXPECT_EQ(read.checkpoints[i].figures, written.checkpoints[i].figures) << label;
  }
}

TEST(Recordings, HoldEverythingThatEnters) {
  const Written written(5);
  Recording read;
  std::string problem;
  ASSERT_TRUE(recording::read_recording(written.bytes, read, problem)) << problem;
  EXPECT_EQ(read.damage, "");
  EXPECT_EQ(read.beginning.game + read.beginning.version + read.beginning.room, "arena1.2.3rArena");
  EXPECT_EQ(read.beginning.data_hash, 0xFEDCBA98);
  EXPECT_TRUE(read.beginning.has_seed);
  EXPECT_EQ(read.beginning.seed, UINT64_MAX);
  EXPECT_EQ(shown(read.start), shown(written.recording.start));
  ASSERT_EQ(read.frames.size(), written.recording.frames.size());
  ASSERT_EQ(read.checkpoints.size(), written.recording.checkpoints.size());
  EXPECT_EQ(shown(read.frames.back()), shown(written.recording.frames.back()));
  expect_a_beginning_of(read, written.recording, "whole");
}

TEST(TextRecordings, HoldEverythingThatEnters) {
  recording::TextWriter writer;
  const Written written(5, writer);
  Recording read;
  std::string problem;
  ASSERT_TRUE(recording::read_recording(written.bytes, read, problem)) << problem;
  EXPECT_EQ(read.damage, "");
  EXPECT_EQ(read.beginning.game + read.beginning.version + read.beginning.room, "arena1.2.3rArena");
  EXPECT_EQ(read.beginning.data_hash, 0xFEDCBA98);
  EXPECT_EQ(read.beginning.seed, UINT64_MAX);
  EXPECT_TRUE(read.beginning.has_seed && read.beginning.has_console);
  EXPECT_EQ(shown(read.start), shown(written.recording.start));
  ASSERT_EQ(read.frames.size(), written.recording.frames.size());
  ASSERT_EQ(read.checkpoints.size(), written.recording.checkpoints.size());
  EXPECT_EQ(shown(read.frames.back()), shown(written.recording.frames.back()));
  expect_a_beginning_of(read, written.recording, "whole");
  ASSERT_TRUE(read.checkpoints.back().shown.has_value());
  EXPECT_EQ(read.checkpoints.back().shown->replies, 0xFFFFFFFFu);
}

// Cut anywhere it is the run up to there; a line that is none is named, and what stands before it is the run.
TEST(TextRecordings, ThatEndEarlyOrAreDamagedAreTheRunUpToThere) {
  recording::TextWriter writer;
  const Written written(2, writer);
  Recording read;
  std::string problem;
  std::size_t frames = 0;
  for (std::size_t end = 0; end <= written.bytes.size(); ++end) {
    if (!recording::read_recording(written.bytes.substr(0, end), read, problem)) {
      EXPECT_EQ(frames, 0u) << end;
      continue;
    }
    EXPECT_EQ(read.damage, "") << end;
    EXPECT_GE(read.frames.size(), frames) << end;
    frames = read.frames.size();
    expect_a_beginning_of(read, written.recording, std::to_string(end));
  }
  EXPECT_EQ(frames, 120u);
  const std::string before = "recording of arena\nbegin\nlength 16667\nframes 3\n";
  for (const char* line : {"frames",
                           "frames 0",
                           "frames 3000001",
                           "frames 99999999999999999999",
                           "frames 1 2",
                           "frames -1",
                           "go 1",
                           "go 1 x",
                           "key 65",
                           "key 65 1 1",
                           "length -1",
                           "length 3600000001",
                           "is",
                           "is 12 - - - 01",
                           "is x - - - ",
                           "text \\x",
                           "wheel 1.5",
                           "event 99 0 0 window 0 0 ",
                           "pointer nowhere 1 1",
                           "begin",
                           "room rArena",
                           "nothing"}) {
    ASSERT_TRUE(recording::read_recording(before + line + "\nframes 1\n", read, problem)) << line << problem;
    EXPECT_EQ(read.damage, "line 5 of the recording cannot be read") << line;
    EXPECT_EQ(read.frames.size(), 3u) << line;
  }
  for (const char* beginning : {"recording of \nbegin\n", "recording of arena\nframes 1\nbegin\n", "recording of arena\nseed\nbegin\n",
                                "recording of arena\ndata 123456789\nbegin\n", "recording of arena\n"})
    EXPECT_FALSE(recording::read_recording(beginning, read, problem)) << beginning;
}

// The first version of the format had fewer types of events.
TEST(Recordings, OfTheFirstVersionAreRead) {
  recording::Writer writer;
  std::string bytes = writer.beginning({"arena", "1", 5, "", false, 0});
  const auto retitle = [&](char version) {
    bytes[7] = version;
    const std::size_t checked = bytes.size() - 4;
    std::string sum;
    recording::put_fixed(sum, crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), checked), 4);
    return bytes.substr(0, checked) + sum;
  };
  std::vector<InputEvent> known = all_kinds();
  std::erase_if(known, [](const InputEvent& each) { return each.type > InputEvent::Type::kKeyLabel; });
  const std::string rest = writer.start(known);
  Recording read;
  std::string problem;
  ASSERT_TRUE(recording::read_recording(retitle(1) + rest, read, problem)) << problem;
  EXPECT_EQ(read.start.input.size(), known.size());
  EXPECT_FALSE(recording::read_recording(retitle(3) + rest, read, problem));
  EXPECT_EQ(problem, "the recording is of another version of the format");
}

TEST(Recordings, ThatEndAnywhereAreTheRunUpToThere) {
  const Written written(3);
  Recording read;
  std::string problem;
  std::size_t frames = 0, readable = 0;
  for (std::size_t end = 0; end <= written.bytes.size(); ++end) {
    if (!recording::read_recording(written.bytes.substr(0, end), read, problem)) {
      EXPECT_TRUE(problem == "this is no recording" || problem == "the recording is cut off inside its beginning") << end << problem;
      EXPECT_EQ(readable, 0u) << end;
      continue;
    }
    ++readable;
    EXPECT_EQ(read.damage, "") << end;
    EXPECT_GE(read.frames.size(), frames) << end;
    frames = read.frames.size();
    expect_a_beginning_of(read, written.recording, std::to_string(end));
  }
  EXPECT_EQ(frames, 180u);
}

// Which frame failed follows from what stands behind it.
TEST(Recordings, TellWhereTheRunBrokeOff) {
  recording::Writer writer;
  std::string bytes = writer.beginning({"arena", "1", 5, "", false, 0});
  const auto expect = [&](bool breaks_off, std::size_t frames, const char* label) {
    Recording read;
    std::string problem;
    ASSERT_TRUE(recording::read_recording(bytes, read, problem)) << label << problem;
    EXPECT_EQ(read.breaks_off(), breaks_off) << label;
    EXPECT_EQ(read.frames.size(), frames) << label;
  };
  expect(true, 0, "nothing but a beginning");
  bytes += writer.start({});
  bytes += writer.answer("seed");
  expect(true, 0, "in the start");
  bytes += writer.frame(16667, {});
  expect(true, 1, "in the first frame");
  bytes += writer.frame(16667, all_kinds());
  bytes += writer.answer("clipboard");
  expect(true, 2, "in a frame that asked");
  bytes += writer.checkpoint({2, 7, {{"world", 1}}});
  expect(false, 2, "at the end");
  const std::string ended = bytes;
  bytes += writer.frame(16667, {});
  expect(true, 3, "behind a checkpoint");
  bytes = ended + "\x03";
  expect(false, 2, "nowhere: it is damaged");
}

// 100,000 files with a few bytes changed, taken out or put in: none passes for another run behind its last good second, none takes memory
// or time without end.
TEST(Recordings, DamageIsNeverAnotherRun) {
  const Written written(3);
  RandomGenerator chance(17);
  const auto any = [&](std::size_t below) { return static_cast<std::size_t>(chance.integer(0, static_cast<std::int64_t>(below) - 1)); };
  Recording read;
  std::string problem;
  int noticed = 0, cut = 0;
  for (int round = 0; round < 100000; ++round) {
    std::string bytes = written.bytes;
    for (std::size_t changes = any(3) + 1; changes > 0; --changes) {
      const std::size_t at = any(bytes.size());
      switch (any(4)) {
        case 0: bytes[at] = static_cast<char>(bytes[at] ^ 1 << any(8)); break;
        case 1: bytes[at] = static_cast<char>(any(256)); break;
        case 2: bytes.erase(at, any(9) + 1); break;
        default: bytes.insert(at, any(9) + 1, static_cast<char>(any(256))); break;
      }
    }
    if (!recording::read_recording(bytes, read, problem)) {
      EXPECT_FALSE(problem.empty());
      ++noticed;
      continue;
    }
    // The seconds before the first byte that is another one are there, and no more: the checksums vouch for none behind it.
    const auto [changed, original] = std::mismatch(bytes.begin(), bytes.end(), written.bytes.begin(), written.bytes.end());
    const std::size_t same = static_cast<std::size_t>(changed - bytes.begin());
    std::size_t good = 0;
    while (good < written.checkpoint_ends.size() && written.checkpoint_ends[good] <= same) ++good;
    ASSERT_EQ(read.checkpoints.size(), good) << round;
    read.damage.empty() ? ++cut : ++noticed;
    read.frames.resize(std::min(read.frames.size(), good * 60));
    expect_a_beginning_of(read, written.recording, "round " + std::to_string(round));
    if (HasFailure()) return;
  }
  EXPECT_GT(noticed, 80000) << cut;
}

// KB that the process ever had; 0 where the system does not say.
long most_memory() {
#ifdef _WIN32
  return 0;
#else
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  return used.ru_maxrss;
#endif
}

// The frame at which a replay is another run, and in what; "none".
std::string first_difference(const Recording& recorded) {
  recording::Replay replay(recorded);
  host::GameOptions options;
  replay.prepare(options);
  const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
  std::unique_ptr<console::Console> console;
  if (recorded.beginning.has_console) console = std::make_unique<console::Console>(*game);
  replay.set_console([&](const std::string& request) { console->answer(request); });
  while (!replay.is_at_end() || replay.finish()) {
    if (!replay.is_at_end()) replay.step(*game);
    const std::vector<std::string> parts = replay.differences();
    if (!parts.empty()) return std::to_string(replay.frame()) + ": " + testing::PrintToString(parts);
  }
  EXPECT_EQ(replay.checkpoints_passed(), recorded.checkpoints.size());
  return "none";
}

void expect_the_same_run(const Recording& recorded) { EXPECT_EQ(first_difference(recorded), "none"); }

TEST(PlayedRecordings, AreTheSameRun) {
  const Recording recorded = read_fight(record_a_fight());
  ASSERT_EQ(recorded.frames.size(), 600u);
  ASSERT_GE(recorded.checkpoints.size(), 8u);
  EXPECT_GT(recorded.checkpoints.back().figures.size(), 15u);
  expect_the_same_run(recorded);
}

// One press that is left out, one microsecond: the hashes say so, and in which parts.
TEST(PlayedRecordings, AnotherRunIsNoticed) {
  const Recording recorded = read_fight(record_a_fight());
  EXPECT_EQ(first_difference(recorded), "none");
  Recording changed = recorded;
  const auto is_press = [](const InputEvent& each) { return each.type == InputEvent::Type::kButton && each.value != 0; };
  for (recording::Frame& frame : changed.frames) {
    if (std::erase_if(frame.input, is_press) > 0) break;
  }
  EXPECT_NE(first_difference(changed), "none");
  changed = recorded;
  ++changed.frames[3].microseconds;
  EXPECT_NE(first_difference(changed).find("clock"), std::string::npos) << first_difference(changed);
}

TEST(Recordings, OfOtherGamesVersionsAndDataDoNotFit) {
  const recording::Beginning here = {"arena", "1.0", 5, "", false, 0};
  recording::Beginning other = {"arena", "1.0", 5, "rArena", true, 9};
  EXPECT_EQ(recording::misfit(other, here), "");
  other.data_hash = 6;
  EXPECT_EQ(recording::misfit(other, here), "the recording was made with another data file");
  other.version = "0.9";
  EXPECT_EQ(recording::misfit(other, here), "the recording was made by version 0.9 of the game, this is version 1.0");
  other.game = "samples";
  EXPECT_EQ(recording::misfit(other, here), "the recording is of 'samples', this is 'arena'");
}

// What a console evaluates enters, too: statements, those that fail, errors of handlers, what was asked behind the last frame.
TEST(PlayedRecordings, OfAConsoleAreTheSameRun) {
  for (const char* name : {"console.rec", "console.txt"}) {
    const std::string path = temporary_path(name);
    recording::Recorder recorder(path, {"arena", "1", 5, "rArena", true, 1, true});
    host::GameOptions options;
    options.listener = &recorder;
    options.room = "rArena";
    options.has_seed = true;
    options.seed = 1;
    const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
    {
      console::Console console(*game);
      for (const char* request :
           {"{'step': 70}", "{'eval': 'oPlayer.hp = 50; global.text = clipboard_get_text()'}", "{'step': 5}", "{'eval': '1 + {}'}",
            "{'eval': 'oPlayer.h_speed = []'}", "{'step': 90}", "{'eval': 'oPlayer.hp = 49'}"}) {
        std::string line = request;
        std::replace(line.begin(), line.end(), '\'', '"');
        console.answer(line);
      }
      recorder.end();
    }
    const Recording recorded = read_fight(path);
    EXPECT_EQ(recorded.frames.size(), 165u);
    EXPECT_EQ(recorded.frames[70].answers.size(), 1u);
    EXPECT_EQ(recorded.last_requests.size(), 1u);
    EXPECT_FALSE(recorded.breaks_off());
    expect_the_same_run(recorded);
    // The hash is of the state before the last request, or behind it.
    Recording changed = recorded;
    changed.frames[75].requests.clear();
    EXPECT_NE(first_difference(changed), "none") << name;
    changed = recorded;
    changed.last_requests.clear();
    changed.checkpoints.back().requests = 0;
    EXPECT_EQ(first_difference(changed), "165: { \"oPlayer\" }") << name;
  }
}

// Ten minutes of the autoplayer, or hours where tests are to go on for longer: recorded as they happen, the same run again, and after the
// first tenth the process has all the memory that it needs.
TEST(PlayedRecordings, OfManyMinutesAreTheSameRun) {
  const int frames = (kStressBuild ? 1800 : 36000) * longer();
  const std::string path = temporary_path("minutes.rec");
  {
    recording::Recorder recorder(path, {"arena", "1", 5, "", true, 11});
    host::GameOptions options;
    options.listener = &recorder;
    options.has_seed = true;
    options.seed = 11;
    const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
    autoplayer::ArenaPlayer player;
    long after_a_tenth = 0;
    for (int frame = 0; frame < frames; ++frame) {
      if (frame == frames / 10) after_a_tenth = most_memory();
      player.play();
      game->run_frame(16667);
    }
    recorder.end();
    if (longer() >= 60) {
      EXPECT_LE(most_memory() - after_a_tenth, 1024);
    }
  }
  const Recording recorded = read_fight(path);
  ASSERT_EQ(recorded.frames.size(), static_cast<std::size_t>(frames));
  EXPECT_LT(std::filesystem::file_size(path), static_cast<std::size_t>(frames) * 10);  // 1 MB for half an hour
  expect_the_same_run(recorded);
}

// Somebody plays on from the middle of a recording: the new one is a run of its own, from its start.
TEST(PlayedRecordings, CanBeGoneOnWith) {
  const Recording recorded = read_fight(record_a_fight());
  for (const std::size_t from : {std::size_t{0}, std::size_t{77}, std::size_t{600}}) {
    const std::string path = temporary_path("taken-over.rec");
    recording::Replay replay(recorded);
    host::GameOptions options;
    replay.prepare(options);
    const std::unique_ptr<host::Game> game = start_recorded(std::move(options));
    while (replay.frame() < from) replay.step(*game);
    recording::Recorder recorder(path, recorded, from);
    game->set_listener(&recorder);
    push_key('A', true);
    for (int frame = 0; frame < 150; ++frame) {
      if (frame == 40) push_button(1, true);
      game->run_frame(20000);
    }
    recorder.end();
    const Recording played_on = read_fight(path);
    EXPECT_EQ(played_on.frames.size(), from + 150);
    EXPECT_FALSE(played_on.breaks_off());
    if (from > 0) {
      EXPECT_EQ(shown(played_on.frames[from - 1]), shown(recorded.frames[from - 1]));
    }
    expect_the_same_run(played_on);
  }
}

}  // namespace
}  // namespace arena::test
