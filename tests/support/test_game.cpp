#include "tests/support/test_game.h"

#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>

#include "engine/console/evaluator.h"
#include "runtime/input/input_state.h"
#include "runtime/program/functions.h"
#include "runtime/script.h"
#include "tests/support/golden.h"
#include "tests/support/probes.h"

namespace arena::test {
std::string statement_to_draw;
}  // namespace arena::test
namespace game {
extern const Script<Value()> draw_the_statement;
}

SCRIPT(draw_the_statement) {
  arena::console::evaluate(arena::test::statement_to_draw, nullptr, nullptr);
  return undefined;
}

namespace arena::test {

std::string data_file_path() { return ARENA_DATA_FILE; }
std::string temporary_path(const std::string& name) {
  struct Folder {
    std::string path = ::testing::TempDir() + "arena-test-" + std::to_string(getpid());
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
  };
  static const Folder folder;
  return folder.path + "/" + name;
}

int run_program(const std::string& arguments, const std::string& errors_to) {
#ifdef _WIN32
  const std::string errors = errors_to.empty() ? "NUL" : errors_to;
  return std::system(("\"\"" ARENA_BINARY "/arena.exe\" " + arguments + " 2>\"" + errors + "\"\"").c_str());
#else
  const std::string errors = errors_to.empty() ? "/dev/null" : errors_to;
  return WEXITSTATUS(std::system(("cd / && " ARENA_BINARY "/arena " + arguments + " 2>" + errors).c_str()));
#endif
}

namespace {
// One game may stand beside another.
std::string new_run_file() {
  static int games = 0;
  return temporary_path("played-" + std::to_string(++games % 8) + ".txt");
}
}  // namespace

TestGame::TestGame(const char* room, bool plays_again) : run_file_(new_run_file()), plays_again_(plays_again) {
  std::string problem;
  host::GameOptions options;
  options.data = data::open_data_file(data_file_path(), problem);
  if (options.data != nullptr) {
    auto backend = std::make_unique<gpu::Recorder>();
    recorder = backend.get();
    options.backend = std::move(backend);
    options.room = room;
    options.extra_objects = probe_objects();
    options.has_seed = true;
    options.seed = 1;
    run_ = std::make_unique<recording::Recorder>(run_file_, recording::Beginning{"arena", "", 0, room, true, 1, true});
    options.listener = run_.get();
    host::Started started = host::Game::start(std::move(options));
    game = std::move(started.game);
    problem = started.problem;
  }
  if (game == nullptr) {
    std::fprintf(stderr, "the test game does not start: %s\n", problem.c_str());
    std::abort();
  }
  console = std::make_unique<console::Console>(*game);
}

TestGame::~TestGame() = default;

void TestGame::TearDown() {
  {
    const SessionScope scope(game->session());
    run_->end();
    game->set_listener(nullptr);
  }
  const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = std::string(test.test_suite_name()) + "." + test.name();
  if (HasFailure()) {
    const std::string folder = ARENA_BINARY "/failed";
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    const std::string kept = folder + "/" + std::regex_replace(name, std::regex("[^A-Za-z0-9_.]"), "-") + ".txt";
    std::filesystem::copy_file(run_file_, kept, std::filesystem::copy_options::overwrite_existing, ignored);
    std::fprintf(stderr, "what was played: %s\n", kept.c_str());
  } else if (plays_again_) {
    console.reset();
    game.reset();
    recording::Recording recorded;
    std::string problem;
    ASSERT_TRUE(recording::open_recording(run_file_, recorded, problem)) << problem;
    expect_the_same_run(recorded, name);
  }
}

nlohmann::ordered_json TestGame::ask(const nlohmann::ordered_json& request) {
  return nlohmann::ordered_json::parse(console->answer(request.dump()));
}

std::string TestGame::eval(const std::string& statement) {
  const auto reply = ask({{"eval", statement}});
  return reply.contains("error") ? "! " + reply["error"].get<std::string>() : reply["text"].get<std::string>();
}

double TestGame::number(const std::string& statement) {
  const auto reply = ask({{"eval", statement}});
  EXPECT_TRUE(reply.contains("value") && reply["value"].is_number()) << statement << " gives " << reply.dump();
  return reply.contains("value") && reply["value"].is_number() ? reply["value"].get<double>() : NAN;
}

void TestGame::step(int frames, double seconds) {
  for (int i = 0; i < frames && !HasFatalFailure(); ++i) {
    const auto reply = step_once(seconds);
    ASSERT_FALSE(reply.contains("errors")) << reply.dump(1);
  }
}

nlohmann::ordered_json TestGame::step_once(double seconds) {
  auto reply = ask({{"step", 1}, {"dt", seconds}});
  [] { ASSERT_EQ(broken_invariant(), ""); }();
  return reply;
}

std::vector<TestGame::Drawn> TestGame::drawn(const std::string& statement) {
  if (eval("instance_exists(oProbe)") == "false") {
    eval("global.seen = []; global.hooks = {Draw_64: method(undefined, draw_the_statement)}; instance_create_depth(0, 0, 0, oProbe)");
  }
  recorder->keeps_vertices = true;
  std::vector<Drawn> before, now;
  for (std::vector<Drawn>* const into : {&before, &now}) {
    statement_to_draw = into == &now ? statement : "0";
    step();
    for (const gpu::RecordedDraw& draw : recorder->draws) {
      for (const gpu::Vertex& vertex : draw.vertices) into->push_back({vertex, draw.texture, draw.state});
    }
  }
  recorder->keeps_vertices = false;
  now.erase(now.begin(), now.begin() + static_cast<std::ptrdiff_t>(before.size()));  // the GUI is drawn last
  return now;
}

void TestGame::key(int code, bool down) { ask({{"key", code}, {"down", down}}); }

void TestGame::check(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(eval(row.statement), row.expected) << "in: " << row.statement;
}

}  // namespace arena::test
