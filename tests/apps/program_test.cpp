// The program from outside: its command line, its exit statuses, and where it leaves files.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "apps/options.h"
#include "apps/user_files.h"
#include "engine/files/paths.h"
#include "engine/platform/crash_reports.h"
#include "runtime/variables_calls/frame.h"
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
              {{"--console"}, "--console goes with --headless"},
              {{"--hashes", "x"}, "--hashes goes with --headless"}};
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
                           "--frames", "--screenshot", "--hashes", "--version", "--help"}) {
    EXPECT_NE(help.find(name), std::string::npos) << name;
  }
}

TEST(Program, EndsWithTheStatusOfWhatHappened) {
  EXPECT_EQ(run_program("--headless --frames 3"), 0);
  EXPECT_EQ(run_program("--headless --frames 3 --room rNowhere"), 2);
  EXPECT_EQ(run_program("--headless --frames 600 --demo --hashes /nowhere/at/all"), 1);
  EXPECT_EQ(run_program("--headless --frames 3 --data " ARENA_SOURCE "/README.md"), 1);
}

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

#ifdef _WIN32
constexpr const char* kFault = "access violation";
#else
constexpr const char* kFault = "bad access to memory";
// Sets a variable of the environment for a while.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name), had_(std::getenv(name) != nullptr) {
    if (had_) before_ = std::getenv(name);
    setenv(name, value.c_str(), 1);
  }
  ~Variable() { had_ ? setenv(name_, before_.c_str(), 1) : unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  bool had_;
  std::string before_;
};

TEST(Paths, TheUsersFoldersAreThoseOfTheEnvironment) {
  const std::string folder = temporary_path("home");
  const Variable home("HOME", folder);
  {
    const Variable data("XDG_DATA_HOME", folder + "/data"), pictures("XDG_PICTURES_DIR", folder + "/pictures");
    EXPECT_EQ(files::user_data_folder(), folder + "/data/arena");
    EXPECT_TRUE(std::filesystem::is_directory(folder + "/data/arena"));
    EXPECT_EQ(files::pictures_folder(), folder + "/pictures");
    const std::string report = apps::write_crash_report("what went wrong\n");
    EXPECT_EQ(report, folder + "/data/arena/crash-report.txt");
    std::ifstream stream(report);
    std::string line;
    std::getline(stream, line);
    EXPECT_EQ(line, "what went wrong");
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
  EXPECT_EQ(files::user_data_folder(), folder + "/.local/share/arena");
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
  EXPECT_EQ(files::user_data_folder(), "") << "no folder, no log, no crash";
  EXPECT_EQ(apps::write_crash_report("x"), "");
  std::filesystem::remove_all(folder);
}
#endif

// What a crashed child process leaves behind.
std::string report_of(const std::string& file) {
  std::ifstream stream(files::path_of(file));
  return {std::istreambuf_iterator<char>(stream), {}};
}

[[gnu::noinline, gnu::no_sanitize("address", "undefined")]] void write_nowhere() { *static_cast<volatile int*>(nullptr) = 1; }
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
  GTEST_FLAG_SET(death_test_style, "threadsafe");        // a new process, which the system's handlers watch from its start
  const std::string file = ARENA_BINARY "/crash é.txt";  // the same in the child
  const auto crash = [&](void (*what)()) {
    platform::report_crashes(files::path_of(file), "arena crashed", false);
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
    const std::string report = report_of(file);
    EXPECT_EQ(report.find("arena crashed\n"), 0U) << report;
    EXPECT_NE(report.find(row.told), std::string::npos) << report;
    EXPECT_NE(report.find("\n  arena+0x"), std::string::npos) << report;
    EXPECT_NE(report.find("scripts:\n  ksl_Script_Fire (line 42)\n  ksl_Object_oGun_Step_0 (line 0)\n"), std::string::npos) << report;
    std::filesystem::remove(files::path_of(file));
  }
}

}  // namespace
}  // namespace arena::test
