#include "apps/options.h"

#include <charconv>
#include <functional>
#include <map>
#include <utility>

#include "apps/game_description.h"
#include "engine/files/paths.h"

namespace arena::apps {
namespace {

template <class Number>
bool read_number(const std::string& text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

bool take_text(const std::string& value, std::string& text) {
  text = value;
  return !value.empty();
}

std::string quoted(const std::string& argument) { return "'" + files::on_one_line(argument) + "'"; }

// Options that ask for others, or stand in each other's way.
std::string what_does_not_fit(const Options& options) {
  const bool replays = !options.replay.empty();
  const struct {
    bool is_given;
    const char* name;
    bool has_partner;
    const char* partner;
  } pairs[] = {
      {!options.hashes.empty(), "--hashes", options.headless, "--headless"}, {options.verify, "--verify", replays, "--replay"},
      {options.before_fault, "--before-fault", replays, "--replay"},         {options.describe, "--describe", replays, "--replay"},
      {!options.compare.empty(), "--compare", replays, "--replay"},          {options.take_over >= 0, "--take-over", replays, "--replay"}};
  for (const auto& each : pairs) {
    if (each.is_given && !each.has_partner) return std::string(each.name) + " goes with " + each.partner;
  }
  // The recording says how the run began and what was pressed.
  const std::pair<bool, const char*> strangers[] = {{!options.record.empty() && options.take_over < 0, "--record"},
                                                    {options.demo, "--demo"},
                                                    {options.console, "--console"},
                                                    {options.has_seed, "--seed"},
                                                    {!options.saves.empty(), "--saves"},
                                                    {!options.room.empty(), "--room"}};
  for (const auto& [is_given, name] : strangers) {
    if (replays && is_given) return std::string(name) + " does not go with --replay";
  }
  return "";
}

}  // namespace

bool parse_options(const std::vector<std::string>& arguments, Options& options, std::string& problem) {
  const std::map<std::string, std::function<void()>> switches = {{"--fullscreen", [&] { options.fullscreen = true; }},
                                                                 {"--no-vsync", [&] { options.vsync = false; }},
                                                                 {"--mute", [&] { options.mute = true; }},
                                                                 {"--headless", [&] { options.headless = true; }},
                                                                 {"--console", [&] { options.console = true; }},
                                                                 {"--demo", [&] { options.demo = true; }},
                                                                 {"--verify", [&] { options.verify = true; }},
                                                                 {"--before-fault", [&] { options.before_fault = true; }},
                                                                 {"--describe", [&] { options.describe = true; }},
                                                                 {"--builtins", [&] { options.shows_builtins = true; }},
                                                                 {"--help", [&] { options.shows_help = true; }},
                                                                 {"--version", [&] { options.shows_version = true; }}};
  const std::map<std::string, std::function<bool(const std::string&)>> settings = {
      {"--data", [&](const std::string& value) { return take_text(value, options.data); }},
      {"--room", [&](const std::string& value) { return take_text(value, options.room); }},
      {"--record", [&](const std::string& value) { return take_text(value, options.record); }},
      {"--replay", [&](const std::string& value) { return take_text(value, options.replay); }},
      {"--saves", [&](const std::string& value) { return take_text(value, options.saves); }},
      {"--compare", [&](const std::string& value) { return take_text(value, options.compare); }},
      {"--take-over", [&](const std::string& value) { return read_number(value, options.take_over) && options.take_over >= 0; }},
      {"--hashes", [&](const std::string& value) { return take_text(value, options.hashes); }},
      {"--screenshot", [&](const std::string& value) { return take_text(value, options.screenshot); }},
      {"--seed", [&](const std::string& value) { return options.has_seed = true, read_number(value, options.seed); }},
      {"--frames", [&](const std::string& value) { return read_number(value, options.frames) && options.frames >= 0; }}};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--") {
      options.arguments.assign(arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1, arguments.end());
      break;
    }
    if (const auto found = switches.find(name); found != switches.end()) {
      found->second();
      continue;
    }
    const auto found = settings.find(name);
    if (found == settings.end()) {
      problem = "unknown option " + quoted(name) + "; --help lists them";
      return false;
    }
    if (i + 1 >= arguments.size()) {
      problem = "option '" + name + "' needs a value";
      return false;
    }
    if (!found->second(arguments[++i])) {
      problem = "option '" + name + "' cannot take " + quoted(arguments[i]);
      return false;
    }
  }
  problem = what_does_not_fit(options);
  if (!problem.empty()) return false;
  options.headless = options.headless || options.verify || options.describe || !options.compare.empty();
  if (options.demo && game_description().make_autoplayer == nullptr) {
    problem = "this game cannot play itself";
    return false;
  }
  return true;
}

std::string help_text() {
  const std::string name = game_description().name;
  const bool plays_itself = game_description().make_autoplayer != nullptr;
  return "usage: " + name +
         " [options]\n"
         "  --data FILE        the data file (" +
         name +
         ".dat beside the program)\n"
         "  --room NAME        starts in this room\n"
         "  --seed N           the seed of all randomness\n"
         "  --fullscreen       without window borders\n"
         "  --no-vsync         draws as fast as it can\n"
         "  --mute             without sound\n"
         "  --headless         without window and sound\n"
         "  --console          JSON requests on standard input, replies on standard output; with --headless frames run only when "
         "stepped\n" +
         (plays_itself ? "  --demo             the game plays itself\n" : "") +
         "  --frames N         ends after N frames\n"
         "  --saves FOLDER     scripts save there; without it in the user's folder, and when headless nowhere but in memory\n"
         "  --record FILE      records the run there; without it a run that somebody sees is kept among the last twenty\n"
         "  --replay FILE      plays a recording\n"
         "  --verify           with --replay: as fast as it goes, without window; status 5 when it is not the same run\n"
         "  --before-fault     with --replay: stops before the frame in which the run broke off\n"
         "  --compare PROGRAM  with --replay: plays it in another build of the game, too; status 5 when that differs, and in what\n"
         "  --take-over FRAME  with --replay: plays on from there yourself, as a new run\n"
         "  --describe         with --replay: writes the whole state at the end to standard output, a value a line\n"
         "  --screenshot FILE  writes a PNG at the end\n"
         "  --hashes FILE      with --headless: writes a hash of the whole game every 600 frames, of a replay every frame; -: standard "
         "output\n"
         "  --builtins         writes docs/builtins.md to standard output\n"
         "  --version, --help\n"
         "  --                 what follows is for the game\n";
}

}  // namespace arena::apps
