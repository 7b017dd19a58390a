// The program from outside: its command line, its exit statuses, and where it leaves files.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#ifdef _WIN32
#include <windows.h>
#endif

#include "apps/options.h"
#include "apps/user_files.h"
#include "engine/files/paths.h"
#include "runtime/reports/log.h"
#include "tests/support/environment.h"
#include "tests/support/test_game.h"

namespace arena::test {
namespace {

using apps::Options;

std::string problem_of(const std::vector<std::string>& arguments) {
  Options options;
  std::string problem;
  return apps::parse_options(arguments, options, problem) ? "" : problem;
}

TEST(CommandLine, EveryMistakeGetsOneLine) {
  const struct {
    std::vector<std::string> arguments;
    const char* problem;
  } rows[] = {{{"--wrong"}, "unknown option '--wrong'; --help lists them"},
              {{"arena.dat"}, "unknown option 'arena.dat'; --help lists them"},
              {{""}, "unknown option ''; --help lists them"},
              {{"--seed"}, "option '--seed' needs a value"},
              {{"--seed", "x"}, "option '--seed' cannot take 'x'"},
              {{"--seed", "-1"}, "option '--seed' cannot take '-1'"},
              {{"--seed", "5x"}, "option '--seed' cannot take '5x'"},
              {{"--seed", "99999999999999999999"}, "option '--seed' cannot take '99999999999999999999'"},
              {{"--frames", "-3"}, "option '--frames' cannot take '-3'"},
              {{"--frames", "1e3"}, "option '--frames' cannot take '1e3'"},
              {{"--frames", "99999999999999999999"}, "option '--frames' cannot take '99999999999999999999'"},
              {{"--frames", ""}, "option '--frames' cannot take ''"},
              {{"--seed", ""}, "option '--seed' cannot take ''"},
              {{"--data", ""}, "option '--data' cannot take ''"},
              {{"--room", ""}, "option '--room' cannot take ''"},
              {{"--screenshot", ""}, "option '--screenshot' cannot take ''"},
              {{"--hashes", ""}, "option '--hashes' cannot take ''"},
              {{"--seed", "1\n2"}, "option '--seed' cannot take '1?2'"},
              {{"\x1b[2J\n"}, "unknown option '?[2J?'; --help lists them"},
              {{"--hashes", "x"}, "--hashes goes with --headless"},
              {{"--verify"}, "--verify goes with --replay"},
              {{"--describe"}, "--describe goes with --replay"},
              {{"--compare", "x"}, "--compare goes with --replay"},
              {{"--take-over", "5"}, "--take-over goes with --replay"},
              {{"--take-over", "-1", "--replay", "x"}, "option '--take-over' cannot take '-1'"},
              {{"--replay", "x", "--record", "y"}, "--record does not go with --replay"},
              {{"--replay", "x", "--seed", "1"}, "--seed does not go with --replay"},
              {{"--replay", "x", "--saves", "y"}, "--saves does not go with --replay"},
              {{"--before-fault"}, "--before-fault goes with --replay"}};
  for (const auto& row : rows) EXPECT_EQ(problem_of(row.arguments), row.problem);
}

TEST(CommandLine, TakesWhatHelpPromises) {
  Options options;
  std::string problem;
  ASSERT_TRUE(apps::parse_options({"--data", "Игра/x.dat", "--seed", "18446744073709551615", "--frames", "0", "--headless", "--console",
                                   "--hashes", "h", "--demo", "--mute", "--no-vsync", "--fullscreen", "--room", "rTest"},
                                  options, problem))
      << problem;
  EXPECT_EQ(options.data, "Игра/x.dat");
  EXPECT_EQ(options.seed, ~std::uint64_t{0});
  EXPECT_EQ(options.frames, 0);
  EXPECT_TRUE(options.headless && options.console && options.demo && options.mute && !options.vsync && options.fullscreen);
  const std::string help = apps::help_text();
  for (const char* name : {"--data", "--room", "--seed", "--fullscreen", "--no-vsync", "--mute", "--headless", "--console", "--demo",
                           "--frames", "--screenshot", "--hashes", "--builtins", "--version", "--help"}) {
    EXPECT_NE(help.find(name), std::string::npos) << name;
  }
}

TEST(Program, EndsWithTheStatusOfWhatHappened) {
  EXPECT_EQ(run_program("--headless --frames 3"), 0);
  EXPECT_EQ(run_program("--headless --frames 3 --room rNowhere"), 2);
  EXPECT_EQ(run_program("--headless --frames 600 --demo --hashes /nowhere/at/all"), 1);
  EXPECT_EQ(run_program("--headless --frames 3 --data " ARENA_SOURCE "/README.md"), 1);
}

// Runs that go on until they are told to end.
constexpr struct {
  const char *arguments, *input;
} kEndedRuns[] = {{"--headless --demo --hashes hashes", ""},
                  {"--headless --console", R"({"step": 1})"},
                  {"--headless --console", "{\"step\": 1}\n{\"step\": 10000000}"}};

#ifndef _WIN32
std::string text_of_file(const std::string& path) {
  std::ifstream stream(files::path_of(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

constexpr const char* kArena = ARENA_BINARY "/arena ";

int run_shell(const std::string& line) { return WEXITSTATUS(std::system(line.c_str())); }

// Whatever cannot be read or written: one line, status 1, no waiting, and nothing is left behind.
TEST(Program, WhatCannotBeReadOrWrittenIsOneLine) {
  const std::string folder = temporary_path("hostile"), errors = temporary_path("errors");
  std::filesystem::create_directories(folder + "/taken.png");
  ASSERT_EQ(run_shell("mkfifo " + folder + "/fifo"), 0);
  const struct {
    std::string line, error;
  } rows[] = {
      {"arena --headless --data " + folder, folder + ": the data file cannot be read: this is a folder"},
      {"arena --headless --data /dev/zero", "/dev/zero: the data file cannot be read: this is no ordinary file"},
      {"arena --headless --data " + folder + "/fifo", folder + "/fifo: the data file cannot be read: this is no ordinary file"},
      {"arena --headless --hashes " + folder, folder + ": the hashes cannot be written"},
      {"arena --headless --hashes /dev/full", "/dev/full: the hashes cannot be written"},
      {"arena --headless --screenshot " + folder + "/taken.png", folder + "/taken.png: the picture cannot be written"},
      {"arena --headless --console <" + folder, "standard input cannot be read"},
      {"arena --headless --console <&-", "standard input cannot be read"},
      {"echo '{\"step\":1}' | arena --headless --console >/dev/full", "the reply cannot be written"},
      {"echo '{\"step\":1}' | arena --headless --console >&-", "the reply cannot be written"},
      {"{ yes '{\"step\":1}' | { arena --headless --console; echo $? >" + folder + "/status; } | head -1; } >/dev/null; exit $(cat " +
           folder + "/status)",
       "the reply cannot be written"},
      {"arena --help >/dev/full", "the text cannot be written"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(run_shell("arena() { timeout 60 " + std::string(kArena) + " \"$@\" 2>" + errors + "; }; " + row.line), 1) << row.line;
    EXPECT_EQ(text_of_file(errors), "arena: " + row.error + "\n") << row.line;
  }
  std::filesystem::remove_all(folder);
}

// However little memory there is, from what the start needs upwards: it is enough, or one line says that it is not.
// A line, or where a script was running its report.
TEST(Program, MemoryThatRunsOutIsSaid) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers take memory of their own";
#endif
  const std::string errors = temporary_path("errors");
  int too_little = 0;
  for (int kilobytes = 90000; kilobytes > 10000; kilobytes -= 2500) {
    const std::string home = temporary_path("home");
    const int status = run_shell("export HOME=" + home + " XDG_DATA_HOME=" + home + "; ulimit -c 0; ulimit -v " +
                                 std::to_string(kilobytes) + "; timeout 60 " + kArena + "--headless --demo --frames 30 2>" + errors);
    const std::string told = text_of_file(errors);
    if (status == 127 || told.find("shared librar") != std::string::npos) break;  // the system cannot load the program
    if (status == 3) {
      EXPECT_NE(told.find("\nout of memory\n"), std::string::npos) << kilobytes << told;
    } else {
      EXPECT_EQ(told, status == 0 ? "" : "arena: the memory has run out\n") << kilobytes;
      EXPECT_LE(status, 1) << kilobytes;
    }
    too_little += status != 0;
  }
  EXPECT_GT(too_little, 0);
}

// As one who may not read it, and from a disk that fails in the middle of it.
TEST(Program, AnUnreadableDataFileIsOneLine) {
  const std::string folder = temporary_path("unreadable"), data = folder + "/arena.dat", errors = temporary_path("errors");
  std::filesystem::create_directories(folder);
  std::filesystem::copy_file(ARENA_DATA_FILE, data, std::filesystem::copy_options::overwrite_existing);
  const std::string start = "timeout 60 " + std::string(kArena) + "--headless --frames 1 --data " + data + " 2>" + errors;
#ifdef ARENA_FAILING_READS
  EXPECT_EQ(run_shell("LD_PRELOAD=" ARENA_FAILING_READS " " + start), 1);
  EXPECT_EQ(text_of_file(errors), "arena: " + data + ": the data file cannot be read to its end\n");
#endif
  std::filesystem::permissions(data, std::filesystem::perms::none);
  const std::string nobody = run_shell("[ $(id -u) = 0 ]") == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
  if (run_shell(nobody + kArena + "--version >/dev/null 2>&1") != 0) GTEST_SKIP() << "nobody else may run the program here";
  EXPECT_EQ(run_shell(nobody + start), 1);
  EXPECT_EQ(text_of_file(errors), "arena: " + data + ": the data file cannot be opened\n");
  std::filesystem::remove_all(folder);
}

// The program, its input held open, gets a signal once it has begun.
int status_after(const std::string& signal, const std::string& arguments, const std::string& input) {
  const std::string folder = temporary_path("signals");
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  std::ofstream(folder + "/input") << input << "\n";
  return run_shell(
      "cd " + folder + "; mkfifo held; exec 3<>held; cat input >&3; " + kArena + arguments +
      " <held >output 2>errors & for i in $(seq 600); do [ -s output ] || [ -s hashes ] && break; sleep 0.05; done; sleep 0.1; kill -" +
      signal + " $!; wait $!");
}

TEST(Program, EndRequestsEndEveryMode) {
  for (const auto& run : kEndedRuns) {
    EXPECT_EQ(status_after("TERM", run.arguments, run.input), 143) << run.arguments << run.input;
    EXPECT_EQ(status_after("INT", run.arguments, run.input), 130) << run.arguments << run.input;
  }
}

TEST(Program, TheAutoplayerPlaysInTheFramesOfTheConsole) {
  const std::string input = temporary_path("demo-input"), output = temporary_path("demo-output");
  std::ofstream(input) << "{\"step\": 400}\n{\"log\": true}\n";
  EXPECT_EQ(run_shell(kArena + std::string("--headless --demo --console <") + input + " >" + output + " 2>" + output + ".errors"), 0);
  const std::string replies = text_of_file(output);
  EXPECT_NE(replies.find("\"room\":\"rArena\""), std::string::npos) << replies << "the autoplayer leaves the first room";
  EXPECT_NE(replies.find("{\"log\":[\"WBC lookup took "), std::string::npos) << replies;
  EXPECT_EQ(text_of_file(output + ".errors"), "") << "notes are for the log only";
}

// Nobody sees the frames of such a run but the one that is saved, and the game is the same.
TEST(Program, APictureOfAHeadlessRunCostsOneFrame) {
  const std::string picture = temporary_path("run.png"), hashes = temporary_path("run-hashes");
  if (run_program("--headless --frames 1 --screenshot " + picture) != 0) GTEST_SKIP() << "no off-screen graphics here";
  EXPECT_EQ(run_program("--headless --demo --seed 3 --frames 1200 --hashes " + hashes + "-0"), 0);
  EXPECT_EQ(run_program("--headless --demo --seed 3 --frames 1200 --hashes " + hashes + "-1 --screenshot " + picture), 0);
  EXPECT_EQ(text_of_file(hashes + "-0"), text_of_file(hashes + "-1"));
  // On a full disk, or where nobody may write, nothing stays behind.
  std::filesystem::remove(picture);
  EXPECT_EQ(run_shell("ulimit -f 8; " + std::string(kArena) + "--headless --frames 1 --screenshot " + picture + " 2>/dev/null"), 1);
  EXPECT_FALSE(std::filesystem::exists(picture));
  EXPECT_FALSE(std::filesystem::exists(picture + ".new"));
}
#else
// The program, its input held open, gets a Ctrl+C from the console once it has begun.
int status_after_control_c(const std::string& arguments, const std::string& input) {
  const std::filesystem::path folder = files::path_of(temporary_path("interrupted"));
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE there = nullptr, here = nullptr;
  if (CreatePipe(&there, &here, &inherited, 0) == 0) return -1;
  SetHandleInformation(here, HANDLE_FLAG_INHERIT, 0);
  DWORD written = 0;
  WriteFile(here, (input + "\n").data(), static_cast<DWORD>(input.size() + 1), &written, nullptr);
  STARTUPINFOW how = {};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdInput = there;
  how.hStdOutput = how.hStdError =
      CreateFileW((folder / "output").c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
  PROCESS_INFORMATION program = {};
  std::wstring line = files::path_of("\"" ARENA_BINARY "/arena.exe\" " + arguments).wstring();
  const BOOL is_started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &how, &program);
  CloseHandle(there);
  CloseHandle(how.hStdOutput);
  const auto has_begun = [&] {
    std::error_code ignored;
    for (const char* name : {"output", "hashes"}) {
      if (std::filesystem::exists(folder / name, ignored) && std::filesystem::file_size(folder / name, ignored) > 0) return true;
    }
    return false;
  };
  DWORD status = 0;
  if (is_started != 0) {
    for (int round = 0; round < 600 && !has_begun(); ++round) Sleep(50);
    Sleep(100);
    GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    if (WaitForSingleObject(program.hProcess, 3000) != WAIT_OBJECT_0) TerminateProcess(program.hProcess, 99);
    GetExitCodeProcess(program.hProcess, &status);
    CloseHandle(program.hProcess);
    CloseHandle(program.hThread);
  }
  CloseHandle(here);
  return static_cast<int>(status);
}

// In a process with a console of its own, for the events meet all who share one.
[[noreturn]] void interrupt_every_mode() {
  FreeConsole();
  int wrong = AllocConsole() == 0;
  SetConsoleCtrlHandler([](DWORD) { return TRUE; }, TRUE);
  for (const auto& run : kEndedRuns) {
    const int status = status_after_control_c(run.arguments, run.input);
    std::cerr << run.arguments << run.input << " ended with " << status << "\n";
    wrong += status != 130;
  }
  std::exit(wrong);
}

TEST(ProgramDeathTest, EndRequestsEndEveryMode) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(interrupt_every_mode(), ::testing::ExitedWithCode(0), "");
}
#endif

TEST(Paths, AnyNameWorks) {
#ifdef _WIN32
  constexpr int kLevels[] = {0};  // beyond 260 characters the program's manifest asks for long paths; the tests have none
#else
  constexpr int kLevels[] = {0, 12};
#endif
  for (const int levels : kLevels) {
    const std::string outermost = temporary_path("Игра & play é ünï");
    std::string folder = outermost;
    for (int i = 0; i < levels; ++i) folder += "/Довольно длинное имя папки";
    const std::filesystem::path named = files::path_of(folder + "/x/наконец.png");
    EXPECT_EQ(files::path_of(files::utf8_of(named)), named);
    EXPECT_TRUE(files::can_write_in(files::path_of(folder) / "x"));
    EXPECT_TRUE(std::filesystem::is_empty(files::path_of(folder) / "x")) << "it leaves nothing there";
    // The data file is found in such a folder, too, and a picture can be written there.
    const std::filesystem::path copy = files::path_of(folder) / files::path_of("данные.dat");
    std::filesystem::copy_file(data_file_path(), copy);
    std::string problem;
    EXPECT_NE(data::open_data_file(files::utf8_of(copy), problem), nullptr) << problem;
    std::ofstream(files::path_of(folder) / "file") << "in the way";
    EXPECT_FALSE(files::can_write_in(files::path_of(folder) / "file"));
    std::filesystem::remove_all(files::path_of(outermost));
  }
}

#ifndef _WIN32
TEST(Paths, TheUsersFoldersAreThoseOfTheEnvironment) {
  const std::string folder = temporary_path("home");
  const Variable home("HOME", folder);
  {
    const Variable data("XDG_DATA_HOME", folder + "/data"), pictures("XDG_PICTURES_DIR", folder + "/pictures");
    EXPECT_EQ(files::user_data_folder("arena"), folder + "/data/arena");
    EXPECT_TRUE(std::filesystem::is_directory(folder + "/data/arena"));
    EXPECT_EQ(files::pictures_folder(), folder + "/pictures");
    EXPECT_EQ(apps::next_crash_folder("").crashes, folder + "/data/arena/crashes");
    // Where no folder of that name can be, the user's pictures take the screenshots.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::create_directories(folder + "/game");
    std::filesystem::current_path(folder + "/game");
    EXPECT_EQ(apps::screenshot_folder(), "Screenshots");
    std::filesystem::remove_all("Screenshots");
    std::ofstream("Screenshots") << "in the way";
    EXPECT_EQ(apps::screenshot_folder(), folder + "/pictures/arena");
    std::filesystem::current_path(before);
  }
  const Variable data("XDG_DATA_HOME", "relative/means/unset"), pictures("XDG_PICTURES_DIR", "");
  EXPECT_EQ(files::user_data_folder("arena"), folder + "/.local/share/arena");
  EXPECT_EQ(files::pictures_folder(), folder + "/Pictures");
  const Variable config("XDG_CONFIG_HOME", folder + "/settings");
  std::filesystem::create_directories(folder + "/settings");
  const auto set_up = [&](const char* line) {
    std::ofstream(folder + "/settings/user-dirs.dirs") << "# folders\nXDG_MUSIC_DIR=\"/m\"\n" << line;
  };
  const struct {
    const char* line;
    std::string pictures;
  } rows[] = {{"XDG_PICTURES_DIR=\"$HOME/Bilder & Fotos\"\n", folder + "/Bilder & Fotos"},
              {"XDG_PICTURES_DIR=\"/srv/pictures\"\n", "/srv/pictures"},
              {"XDG_PICTURES_DIR=\"", folder + "/Pictures"},
              {"XDG_PICTURES_DIR=\"Bilder\"", folder + "/Pictures"}};
  for (const auto& row : rows) {
    set_up(row.line);
    EXPECT_EQ(files::pictures_folder(), row.pictures) << row.line;
  }
  std::ofstream(folder + "/file") << "in the way";
  const Variable blocked("XDG_DATA_HOME", folder + "/file");
  EXPECT_EQ(files::user_data_folder("arena"), "") << "no folder, no log, no crash";
  EXPECT_EQ(apps::next_crash_folder("").crashes, "");
  EXPECT_EQ(apps::next_crash_folder("").trouble, "arena: there is no place for what is left of a crash");
  std::filesystem::remove_all(folder);
}

TEST(Log, IsBoundedAndKeepsOneOlderFile) {
  const std::string folder = temporary_path("log-home");
  const Variable data("XDG_DATA_HOME", folder);
  const auto written = [&](const char* name) { return text_of_file(folder + "/arena/" + name); };
  ::testing::internal::CaptureStderr();
  apps::start_log();
  log_note("a note");
  for (int i = 0; i < 300; ++i) log_message("again");
  for (int i = 0; i < 50; ++i) log_message(i % 2 == 0 ? "again" : "and again");
  log_message("other");
  apps::end_log();
  EXPECT_EQ(written("arena.log"),
            "a note\nagain\n(the last message came 300 more times)\nand again\n"
            "(the last message came 24 more times)\n(came 24 more times: again)\nother\n");
  EXPECT_EQ(::testing::internal::GetCapturedStderr().find("a note"), std::string::npos);
  ::testing::internal::CaptureStderr();
  apps::start_log();
  EXPECT_EQ(written("arena-1.log").find("a note"), 0U) << "the run before";
  for (int i = 0; i < 3000; ++i) log_message(std::to_string(i) + std::string(10000, 'x'));
  apps::end_log();
  ::testing::internal::GetCapturedStderr();
  EXPECT_LE(written("arena.log").size(), std::size_t{8} << 20);
  EXPECT_LE(written("arena-1.log").size(), std::size_t{8} << 20);
  EXPECT_GT(written("arena-1.log").size() + written("arena.log").size(), std::size_t{8} << 20);
  EXPECT_NE(written("arena.log").find("2999x"), std::string::npos);
  std::filesystem::remove_all(folder);
}
#endif

}  // namespace
}  // namespace arena::test
