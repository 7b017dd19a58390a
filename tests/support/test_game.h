#pragma once
// A headless game for tests, driven as the console drives it.
#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "engine/console/console.h"
#include "engine/gpu/recorder/recorder.h"
#include "engine/host/game.h"
#include "engine/recording/recorder.h"
#include "runtime/memory/block_pool.h"

namespace arena::test {

// One row: what is evaluated, and the text of its value; "! message" for an error's message.
struct Row {
  const char* statement;
  const char* expected;
};

// What is played is recorded: of a test that fails the recording is kept (the output says where), and with `plays_again` one that passes
// is played again and must be the same run.
class TestGame : public ::testing::Test {
  const std::string run_file_;
  std::unique_ptr<recording::Recorder> run_;  // outlives the game
  const bool plays_again_;

 protected:
  explicit TestGame(const char* room = "rTest", bool plays_again = false);
  ~TestGame() override;
  void TearDown() override;
  nlohmann::ordered_json ask(const nlohmann::ordered_json& request);
  // The text of the value, or "! " and the message.
  std::string eval(const std::string& statement);
  double number(const std::string& statement);
  void step(int frames = 1, double seconds = 1.0 / 60);
  // The console's reply, with the errors of scripts that step() would not let pass.
  nlohmann::ordered_json step_once(double seconds = 1.0 / 60);
  void key(int code, bool down);
  // Checks every row; all are tried, and a failing one shows its label and both texts.
  void check(const std::vector<Row>& rows);

  // What a statement draws in a Draw GUI event, with its state and texture at each vertex.
  struct Drawn : gpu::Vertex {
    std::uint32_t texture;
    gpu::State state;
  };
  std::vector<Drawn> drawn(const std::string& statement);

  gpu::Recorder* recorder = nullptr;  // the game's backend
  std::unique_ptr<host::Game> game;
  std::unique_ptr<console::Console> console;
};

class ArenaGame : public TestGame {
 protected:
  ArenaGame() : TestGame("rArena") {}
};

// For tests of play: all that happens comes through the console.
class PlayedGame : public TestGame {
 protected:
  explicit PlayedGame(const char* room = "rTest") : TestGame(room, !kStressBuild) {}
};

// The packed data file of this build.
std::string data_file_path();
// A path for a temporary file that no other test run uses; gone when the tests end.
std::string temporary_path(const std::string& name);
// Runs the program itself to its end; its exit status. What it writes to standard error goes to a file, or nowhere.
int run_program(const std::string& arguments, const std::string& errors_to = "");
// What must hold after every frame of every game; "" when it does.
std::string broken_invariant();

}  // namespace arena::test
