// What is left of crashes, and that each can be played up to its fault and through it. A program of the tests crashes on purpose, by a key
// that is pressed in the middle of a fight (tests/faults).
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "apps/user_files.h"
#include "arena_generated.h"
#include "engine/data/data_file.h"
#include "engine/files/paths.h"
#include "engine/platform/crash_reports.h"
#include "engine/recording/recording.h"
#include "runtime/program/names.h"
#include "runtime/reports/frame.h"
#include "runtime/session/session.h"
#include "tests/support/environment.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using std::filesystem::path;

#ifdef _WIN32
constexpr const char* kFault = "access violation";
#else
constexpr const char* kFault = "bad access to memory";
#endif

std::string text_of(const path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string after(const std::string& text, const std::string& what) {
  const std::size_t at = text.find(what);
  return at == std::string::npos ? "" : text.substr(at + what.size(), text.find('\n', at) - at - what.size());
}

std::vector<std::string> names_in(const path& folder) {
  std::vector<std::string> names;
  std::error_code ignored;
  for (const auto& each : std::filesystem::directory_iterator(folder, ignored)) names.push_back(files::utf8_of(each.path().filename()));
  std::sort(names.begin(), names.end());
  return names;
}

class Crashes : public ::testing::Test {
 protected:
  struct Ran {
    int status;
    std::string output, errors;
  };
  Crashes() {
    std::filesystem::create_directories(home_);
    std::filesystem::remove_all(crashes());
    std::string problem;
    const std::unique_ptr<data::DataFile> good = data::open_data_file(data_file_path(), problem);
    std::unique_ptr<data::FileT> file(good->content->UnPack());
    for (auto& object : file->objects) {
      if (object->name != "oPlayer") continue;
      for (int key = 49; key <= 55; ++key) object->events.push_back("KeyPress_" + std::to_string(key));
    }
    flatbuffers::FlatBufferBuilder builder;
    builder.Finish(data::File::Pack(builder, file.get()));
    std::ofstream stream(files::path_of(data_), std::ios::binary);
    for (const std::uint8_t byte : data::header_for(builder.GetBufferPointer(), builder.GetSize())) stream.put(static_cast<char>(byte));
    stream.write(reinterpret_cast<const char*>(builder.GetBufferPointer()), static_cast<std::streamsize>(builder.GetSize()));
  }
  ~Crashes() override { std::filesystem::remove_all(crashes()); }

  static path crashes() { return files::user_data_folder("arena_faults") / "crashes"; }
  // A line of the shell.
  Ran run(const std::string& line) {
    const std::string output = temporary_path("crash-output"), errors = temporary_path("crash-errors");
#ifdef _WIN32
    const int status = std::system(("\"" + line + " >\"" + output + "\" 2>\"" + errors + "\"\"").c_str());
#else
    const int status =
        WEXITSTATUS(std::system(("ulimit -c 0; timeout 120 " + line + " >" + output + " 2>" + errors + "; exit $?").c_str()));
#endif
    Ran ran = {status, text_of(output), text_of(errors)};
    for (std::string* each : {&ran.output, &ran.errors}) std::erase(*each, '\r');
    return ran;
  }
  std::string program() const { return "\"" ARENA_FAULTS "\" --data " + files::shell_word(data_) + " --headless"; }
  Ran crash(int key, const std::string& options) {
    const Variable wanted("ARENA_FAULT", std::to_string(key));
    return run(program() + " --demo --seed 11 --frames 20000 " + options);
  }

  const std::string home_ = temporary_path("Дом & é"), data_ = temporary_path("faults.dat");
  const Variable data_home_{"XDG_DATA_HOME", home_};
};

struct Fault {
  int key, status;  // as Linux tells it
  const char* told;
};
void PrintTo(const Fault& fault, std::ostream* out) { *out << "key " << fault.key; }
constexpr Fault kFaults[] = {{49, 3, "ERROR in action number 1\nof Key Press Event for 49 for object oPlayer:"},
                             {50, 139, kFault},
                             {51, 134, "\naborted\n"},
                             {52, 134, "\naborted: no way on\n"},
#ifndef _WIN32
                             {53, 139, kFault},
                             {54, 136, "\narithmetic fault\n"},
#endif
                             {55, 132, "\nillegal instruction\n"}};

class EachCrash : public Crashes, public ::testing::WithParamInterface<Fault> {};
INSTANTIATE_TEST_SUITE_P(InAFight, EachCrash, ::testing::ValuesIn(kFaults));

TEST_P(EachCrash, CanBePlayedUpToTheFaultAndThroughIt) {
  const std::string file = temporary_path("crash 1.rec");
  const Ran crashed = crash(GetParam().key, "--record " + files::shell_word(file));
  ASSERT_NE(crashed.status, 0) << "no fight, no fault";
#ifndef _WIN32
  EXPECT_EQ(crashed.status, GetParam().status) << crashed.errors;
#endif
  const path folder = crashes() / "crash-1";
  ASSERT_EQ(names_in(folder), (std::vector<std::string>{"log.txt", "report.txt", "run.rec"})) << crashed.errors;
  const std::string report = text_of(folder / "report.txt");
  EXPECT_NE(report.find(GetParam().told), std::string::npos) << report;
  EXPECT_NE(report.find("ksl_Object_oPlayer_KeyPress_" + std::to_string(GetParam().key)), std::string::npos) << report;
  EXPECT_EQ(crashed.errors.find(report), 0U) << crashed.errors;
  EXPECT_EQ(after(crashed.errors, "This report, the end of the log and the recording lie in "), files::utf8_of(folder));
  EXPECT_EQ(text_of(folder / "log.txt").find("WBC lookup took "), 0U);

  recording::Recording recorded;
  std::string problem;
  ASSERT_TRUE(recording::open_recording(files::utf8_of(folder / "run.rec"), recorded, problem)) << problem;
  EXPECT_EQ(text_of(folder / "run.rec"), text_of(files::path_of(file)));
  EXPECT_TRUE(recorded.breaks_off());
  const std::size_t frame = recorded.frames.size();
  EXPECT_GE(frame, 450U);

  // The command that is printed, with --verify so that it tells what it plays.
  const std::string command = after(report, "To play it up to there: ");
  const Ran before = run(command + " --verify");
  EXPECT_EQ(before.status, 0) << command << "\n" << before.errors;
  EXPECT_EQ(after(before.output, "the run broke off in frame "), std::to_string(frame) + ": the replay stops before it");
  EXPECT_EQ(after(before.output, "the same run: "),
            std::to_string(frame - 1) + " frames, " + std::to_string(recorded.checkpoints.size()) + " hashes");

  // One frame more, and the same fault comes again. It leaves no second folder.
  const Ran again = run(program() + " --replay " + files::shell_word(files::utf8_of(folder / "run.rec")) + " --verify");
  EXPECT_EQ(again.status, crashed.status);
  EXPECT_NE(again.errors.find(GetParam().told), std::string::npos) << again.errors;
  EXPECT_EQ(names_in(crashes()), std::vector<std::string>{"crash-1"});
}

TEST_F(Crashes, LeaveWhatThereIs) {
  const path folder = crashes() / "crash-1";
  const std::vector<std::string> without_a_recording = {"log.txt", "report.txt"};
  for (const int key : {49, 50}) {
    const Ran crashed = crash(key, "");
    EXPECT_EQ(names_in(folder), without_a_recording) << crashed.errors;
    EXPECT_EQ(text_of(folder / "report.txt").find("To play it"), std::string::npos);
    EXPECT_EQ(after(crashed.errors, "This report and the end of the log lie in "), files::utf8_of(folder)) << crashed.errors;
    // Where no folder can be made, one line says so.
    std::filesystem::remove_all(crashes());
    std::ofstream(crashes()) << "in the way";
    const Ran again = crash(key, "");
    EXPECT_EQ(again.status, crashed.status);
    EXPECT_NE(again.errors.find("ksl_Object_oPlayer_KeyPress_"), std::string::npos) << again.errors;
    const std::string said =
        "arena_faults: " + files::on_one_line(files::utf8_of(crashes())) + ": what is left of a crash cannot be written";
    EXPECT_EQ(again.errors.find(said), again.errors.rfind(said)) << again.errors;
    EXPECT_NE(again.errors.find(said), std::string::npos) << again.errors;
    std::filesystem::remove(crashes());
  }
}

TEST_F(Crashes, OfTheLastTenAreKept) {
  for (int number : {2, 4, 7, 8, 9, 10, 11, 12, 13, 14, 15, 100}) {
    std::filesystem::create_directories(crashes() / ("crash-" + std::to_string(number)));
    std::ofstream(crashes() / ("crash-" + std::to_string(number)) / "report.txt") << "of old\n";
  }
  std::filesystem::create_directories(crashes() / "crash-x");  // the user's
  std::filesystem::create_directories(crashes() / "crash-");
  crash(49, "");
  EXPECT_EQ(names_in(crashes()), (std::vector<std::string>{"crash-", "crash-10", "crash-100", "crash-101", "crash-11", "crash-12",
                                                           "crash-13", "crash-14", "crash-15", "crash-8", "crash-9", "crash-x"}));
  EXPECT_EQ(names_in(crashes() / "crash-101"), (std::vector<std::string>{"log.txt", "report.txt"}));
}

TEST_F(Crashes, AReplayTellsWhereTheRunBrokeOff) {
  const std::string file = temporary_path("short.rec");
  ASSERT_EQ(run(program() + " --frames 90 --record " + files::shell_word(file)).status, 0);
  const std::string whole = text_of(files::path_of(file));
  const auto replay = [&](std::size_t bytes, const std::string& options) {
    std::ofstream(files::path_of(file), std::ios::binary) << whole.substr(0, bytes);
    const Ran ran = run(program() + " --before-fault --replay " + files::shell_word(file) + options);
    EXPECT_EQ(ran.status, 0) << bytes << ran.errors;
    return ran.output;
  };
  recording::Recording read;
  std::string problem;
  std::size_t in_the_start = whole.size(), in_the_first = 0;
  const auto frames_of = [&] { return recording::read_recording(whole.substr(0, in_the_start), read, problem) ? read.frames.size() : 0; };
  for (; frames_of() > 0; --in_the_start) {
    if (read.frames.size() == 1) in_the_first = std::max(in_the_first, in_the_start);
  }
  EXPECT_EQ(
      replay(whole.size(), " --verify").find("every frame of the run ended: there is no fault to stop before\nthe same run: 90 frames"),
      0U);
  EXPECT_EQ(replay(in_the_start, " --verify"), "the run broke off in its start: there is no frame before the fault\n");
  EXPECT_EQ(replay(in_the_first, " --verify"),
            "the run broke off in frame 1: the replay stops before it\nthe same run: 0 frames, 0 hashes\n");
  EXPECT_EQ(replay(in_the_first, " --frames 5"), "the run broke off in frame 1: the replay stops before it\n");
}

// Of a log of any length: whole lines, the newest ones.
TEST(CrashFolder, HoldsTheEndOfTheLog) {
  const path crashes = files::path_of(temporary_path("crashes"));
  std::filesystem::remove_all(crashes);
  platform::CrashFolder how;
  how.crashes = crashes;
  how.number = 7;
  platform::prepare_crash_folder(how);
  std::string whole;
  std::size_t number = 7;
  for (const int lines : {1, 500, 9000, 3}) {
    for (int i = 0; i < lines; ++i) {
      const std::string line = "line " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 7), '.');
      platform::keep_for_crash(line);
      whole += line + "\n";
    }
    platform::leave_crash("report\n");
    const std::string kept = text_of(crashes / ("crash-" + std::to_string(number++)) / "log.txt");
    const std::size_t start = whole.size() - kept.size();
    EXPECT_EQ(kept, whole.substr(start)) << lines;
    EXPECT_TRUE(start == 0 || whole[start - 1] == '\n') << lines << kept.substr(0, 20);
    EXPECT_GT(kept.size() + 30, std::min(whole.size(), std::size_t{65536})) << lines;
    EXPECT_LE(kept.size(), 65536U) << lines;
  }
  platform::keep_for_crash(std::string(100000, 'x'));
  platform::leave_crash("report\n");
  EXPECT_EQ(text_of(crashes / "crash-11/log.txt").find_first_not_of("x\n"), std::string::npos) << "one line, cut";
  platform::prepare_crash_folder({});
  std::filesystem::remove_all(crashes);
}

[[gnu::noinline]] __attribute__((no_sanitize("address", "undefined"))) void write_nowhere() { *static_cast<volatile int*>(nullptr) = 1; }
[[gnu::noinline]] void fail() { throw std::runtime_error("no room left"); }

#ifndef _WIN32
volatile int sink = 0;
[[gnu::noinline]] int descend(int depth) {
  volatile char row[1024];
  row[depth % 1024] = 1;
  return depth < 0 ? 0 : descend(depth + 1) + row[0];
}
#endif

TEST(CrashReportsDeathTest, TellWhatHappenedAndWhichScriptsRan) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");                  // a new process, which the system's handlers watch from its start
  const path crashes = files::path_of(ARENA_BINARY "/crashes é");  // the same in the child
  const auto crash = [&](void (*what)()) {
    look_up_names();
    Session session;  // the listener that makes one for each test rests in the child
    platform::CrashFolder folder;
    folder.crashes = crashes;
    platform::report_crashes(folder, "arena crashed", "");
    const FrameScope outer("ksl_Object_oGun_Step_0", nullptr, nullptr);
    FrameScope inner("ksl_Script_Fire", nullptr, nullptr);
    inner.line = 42;
    what();
  };
  const struct {
    void (*what)();
    const char* told;
  } rows[] = {{write_nowhere, kFault},
              {[] { std::abort(); }, "aborted\n"},
#ifndef _WIN32  // Wine ends a program whose stack is full at once
              {[] { sink = descend(0); }, kFault},
#endif
              {[]() noexcept { fail(); }, "aborted: no room left\n"}};
  for (const auto& row : rows) {
    EXPECT_DEATH(crash(row.what), "");
    const std::string report = text_of(crashes / "crash-1/report.txt");
    EXPECT_EQ(report.find("arena crashed\n"), 0U) << report;
    EXPECT_NE(report.find(row.told), std::string::npos) << report;
    EXPECT_NE(report.find("\n  program+0x"), std::string::npos) << report;
    EXPECT_NE(report.find("scripts:\n  ksl_Script_Fire (line 42)\n  ksl_Object_oGun_Step_0 (line 0)\n"), std::string::npos) << report;
    std::filesystem::remove_all(crashes);
  }
}

}  // namespace
}  // namespace arena::test
