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
                                                                 {"--builtins", [&] { options.shows_builtins = true; }},
                                                                 {"--help", [&] { options.shows_help = true; }},
                                                                 {"--version", [&] { options.shows_version = true; }}};
  const std::map<std::string, std::function<bool(const std::string&)>> settings = {
      {"--data", [&](const std::string& value) { return take_text(value, options.data); }},
      {"--room", [&](const std::string& value) { return take_text(value, options.room); }},
      {"--record", [&](const std::string& value) { return take_text(value, options.record); }},
      {"--replay", [&](const std::string& value) { return take_text(value, options.replay); }},
      {"--hashes", [&](const std::string& value) { return take_text(value, options.hashes); }},
      {"--screenshot", [&](const std::string& value) { return take_text(value, options.screenshot); }},
      {"--seed", [&](const std::string& value) { return options.has_seed = true, read_number(value, options.seed); }},
      {"--frames", [&](const std::string& value) { return read_number(value, options.frames) && options.frames >= 0; }}};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
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
  if ((options.console || !options.hashes.empty()) && !options.headless) {
    problem = std::string(options.console ? "--console" : "--hashes") + " goes with --headless";
    return false;
  }
  if ((options.verify || options.before_fault) && options.replay.empty()) {
    problem = std::string(options.verify ? "--verify" : "--before-fault") + " goes with --replay";
    return false;
  }
  if (!options.replay.empty()) {
    // The recording says how the run began and what was pressed.
    const std::pair<bool, const char*> others[] = {{!options.record.empty(), "--record"},
                                                   {options.demo, "--demo"},
                                                   {options.console, "--console"},
                                                   {options.has_seed, "--seed"},
                                                   {!options.room.empty(), "--room"}};
    for (const auto& [is_given, name] : others) {
      if (!is_given) continue;
      problem = std::string(name) + " does not go with --replay";
      return false;
    }
    options.headless = options.headless || options.verify;
  }
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
         "  --console          with --headless: JSON requests on standard input, replies on standard output\n" +
         (plays_itself ? "  --demo             the game plays itself\n" : "") +
         "  --frames N         ends after N frames\n"
         "  --record FILE      records the run there; without it a run that somebody sees is kept among the last twenty\n"
         "  --replay FILE      plays a recording\n"
         "  --verify           with --replay: as fast as it goes, without window; status 5 when it is not the same run\n"
         "  --before-fault     with --replay: stops before the frame in which the run broke off\n"
         "  --screenshot FILE  writes a PNG at the end\n"
         "  --hashes FILE      with --headless: writes a hash of the whole game every 600 frames\n"
         "  --builtins         writes docs/builtins.md to standard output\n"
         "  --version, --help\n";
}

}  // namespace arena::apps
