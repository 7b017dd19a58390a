#pragma once
// A game that runs: data file, world, drawing and sound, put together. What the program, the tests and the benches start from.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/audio/audio.h"
#include "engine/data/data_file.h"
#include "engine/draw/draw.h"
#include "engine/files/storage.h"
#include "engine/gpu/backend.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/object_type.h"
#include "runtime/session/snapshot.h"

namespace arena::machine {
class Machine;
}
namespace arena::platform {
class Window;
}

namespace arena::host {

// Stands beside every frame; the game's session is the current one.
class FrameListener {
 public:
  virtual ~FrameListener() = default;
  // The session is there, what enters at the start is in the queue, and nothing of the game has run.
  virtual void before_start() {}
  virtual void before_frame(std::int64_t /*microseconds*/) {}
  // Not called for a frame that a script error ended.
  virtual void after_frame() {}
  // Between two frames a console performs a request, one line of JSON, that may change the game.
  virtual void before_request(const std::string& /*request*/) {}
  // What came of it: the value's text, or "! " and the message of an error; of errors in frames, too.
  virtual void console_says(const std::string& /*text*/) {}
};

struct GameOptions {
  std::unique_ptr<data::DataFile> data;
  std::unique_ptr<gpu::Backend> backend;        // null: the recorder
  std::unique_ptr<audio::Device> audio_device;  // null: silence
  platform::Window* window = nullptr;           // not owned; null: none
  const machine::Machine* machine = nullptr;    // not owned; null: its silent form
  std::vector<std::string> arguments;           // for scripts
  std::string room;                             // "": the first room of the data
  std::vector<ObjectDefinition> extra_objects;  // object types behind those of the data: probes of tests
  bool has_seed = false;
  std::uint64_t seed = 0;
  // In place of what the window announces: of a replay.
  const std::vector<InputEvent>* first_input = nullptr;
  FrameListener* listener = nullptr;  // not owned
  // False: nobody sees the frames; they are drawn all the same, but only those of which a picture is taken go to the graphics card.
  bool shows_frames = true;
  // Where scripts save; null: in memory, gone with the game.
  std::unique_ptr<files::Storage> save_folder;
  // Where numbered screenshots go, asked when one is taken; none: Screenshots in the current folder.
  std::function<std::string()> screenshot_folder;
};

class Game;

// What came of a start: the game, or why there is none, in a sentence and by kind.
struct Started {
  enum class Failure : std::uint8_t { kNone, kDataAndCodeDiffer, kUnknownRoom, kMissingInBuild };
  std::unique_ptr<Game> game;
  Failure failure = Failure::kNone;
  std::string problem;
};

class Game {
 public:
  // The new game's session is the current one from here on.
  static Started start(GameOptions options);
  ~Game();
  Game(const Game&) = delete;
  Game& operator=(const Game&) = delete;

  Session& session() { return session_; }
  // One frame: world, sound, drawing.
  void run_frame(std::int64_t microseconds);
  // Draws the world as it stands once more. Where no frame was drawn before, what draws may change what it lays out.
  void draw();
  // Frames run as ever, seen and heard or not. Of those that are not seen nothing goes to the graphics card, and no script gets a
  // screenshot.
  void be_watched(bool seen, bool heard);
  // The whole game as it stands, between two frames; put back, it goes on from there. A snapshot belongs to the game it was taken of, and
  // shares with an earlier one of that game what has not changed since.
  void take_snapshot(Snapshot& into, const Snapshot* earlier = nullptr);
  void restore(const Snapshot& snapshot);
  // From the next frame on; null: nobody. Not owned.
  void set_listener(FrameListener* listener) { listener_ = listener; }
  FrameListener* listener() const { return listener_; }
  // From here on scripts reach this window and it tells the game what happens in it; keys and buttons that are down go up first.
  void hand_over(platform::Window& window);
  // Pixels of the drawing area; follows the window.
  void set_target_size(int width, int height);
  gpu::Gpu& gpu() { return *gpu_; }
  draw::Draw& drawing() { return *draw_; }
  const data::DataFile& data() const { return *data_; }
  // Draws over each frame before it is shown; pictures that are taken of the game are without it. Empty: nothing does.
  void set_picture_above(std::function<void()> draw);
  // Draws the world as it stands once more and writes that as a PNG, whole or not at all; false when that fails.
  bool save_screenshot(const std::string& path);
  // The next frame is written under the first free number, in the folder for screenshots; a failure is logged.
  void take_screenshot();
  static std::string free_screenshot_name(const std::string& folder);

 private:
  Game() = default;
  void save_numbered(const std::vector<std::uint8_t>& pixels);
  bool save_png(const std::string& path, std::vector<std::uint8_t> pixels);
  std::unique_ptr<data::DataFile> data_;
  std::unique_ptr<gpu::Gpu> gpu_;
  std::unique_ptr<draw::Draw> draw_;
  std::unique_ptr<audio::Device> audio_device_;
  std::function<std::string()> screenshot_folder_;
  FrameListener* listener_ = nullptr;
  Session session_;  // ends before the services that its parts use
};

}  // namespace arena::host
