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
  std::string hashes;      // gets a line every 600 frames, of a replay every frame; "-": standard output
  std::string record;      // where the run is recorded; "": among the last runs, where somebody plays
  std::string replay;      // a recording to play
  std::string saves;       // where scripts save; "": the user's folder, or memory when headless
  bool has_seed = false;
  std::uint64_t seed = 0;
  std::int64_t frames = -1;  // ends after so many; -1: never
  bool fullscreen = false, vsync = true, mute = false, headless = false, console = false, demo = false;
  // Of a replay
  bool verify = false, before_fault = false, describe = false;
  std::string compare;                 // another build of the program
  std::int64_t take_over = -1;         // behind so many frames; -1: when the player wants to
  std::vector<std::string> arguments;  // behind --: for the game's scripts
  bool shows_help = false, shows_version = false, shows_builtins = false;
};

// False with one line in `problem` for a wrong option.
bool parse_options(const std::vector<std::string>& arguments, Options& options, std::string& problem);
std::string help_text();

}  // namespace arena::apps
