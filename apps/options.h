#pragma once
// The command line.
#include <cstdint>
#include <string>
#include <vector>

namespace arena::apps {

struct Options {
  std::string data;  // "": the one of the game, beside the executable or installed
  std::string room;
  std::string screenshot;  // written when the program ends
  std::string hashes;      // gets a line every 600 frames
  std::string record;      // where the run is recorded; "": among the last runs, where somebody plays
  std::string replay;      // a recording to play
  bool has_seed = false;
  std::uint64_t seed = 0;
  std::int64_t frames = -1;  // ends after so many; -1: never
  bool fullscreen = false, vsync = true, mute = false, headless = false, console = false, demo = false;
  bool verify = false, before_fault = false;  // of a replay
  bool shows_help = false, shows_version = false, shows_builtins = false;
};

// False with one line in `problem` for a wrong option.
bool parse_options(const std::vector<std::string>& arguments, Options& options, std::string& problem);
std::string help_text();

}  // namespace arena::apps
