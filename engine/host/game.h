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
#include "engine/gpu/backend.h"
#include "runtime/instances_loop/object_type.h"

namespace arena::host {

struct GameOptions {
  std::unique_ptr<data::DataFile> data;
  std::unique_ptr<gpu::Backend> backend;        // null: the recorder
  std::unique_ptr<audio::Device> audio_device;  // null: silence
  std::string room;                             // "": the first room of the data
  std::vector<ObjectDefinition> extra_objects;  // object types behind those of the data: probes of tests
  bool has_seed = false;
  std::uint64_t seed = 0;
  // Where numbered screenshots go, asked when one is taken; none: Screenshots in the current folder.
  std::function<std::string()> screenshot_folder;
};

class Game {
 public:
  // Null and a sentence in `problem` when data and code do not fit together or the room does not exist. `notes` gets the lines of the
  // start-up lookup.
  static std::unique_ptr<Game> start(GameOptions options, std::string& notes, std::string& problem);
  ~Game();
  Game(const Game&) = delete;
  Game& operator=(const Game&) = delete;

  // One frame: world, sound, drawing.
  void run_frame(std::int64_t microseconds);
  // Pixels of the drawing area; follows the window.
  void set_target_size(int width, int height);
  gpu::Gpu& gpu() { return *gpu_; }
  // Writes the last frame as a PNG, whole or not at all; false when that fails.
  bool save_screenshot(const std::string& path);
  // The same under the first free number, in the folder for screenshots; a failure is logged.
  void take_screenshot();
  static std::string free_screenshot_name(const std::string& folder);

 private:
  Game() = default;
  std::unique_ptr<data::DataFile> data_;
  std::unique_ptr<gpu::Gpu> gpu_;
  std::unique_ptr<draw::Draw> draw_;
  std::unique_ptr<audio::Device> audio_device_;
  std::function<std::string()> screenshot_folder_;
};

}  // namespace arena::host
