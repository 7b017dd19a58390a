// Start-up and shut-down.
#include <iostream>
#include <new>

#include "apps/command_line.h"
#include "apps/game_description.h"
#include "apps/modes.h"
#include "apps/options.h"
#include "apps/user_files.h"
#include "engine/audio/openal/openal.h"
#include "engine/console/console.h"
#include "engine/files/paths.h"
#include "engine/files/storage.h"
#include "engine/gpu/backend.h"
#include "engine/gpu/recorder/recorder.h"
#include "engine/host/game.h"
#include "engine/licence/licence.h"
#include "engine/platform/crash_reports.h"
#include "engine/platform/end_requests.h"
#include "engine/platform/single_instance.h"
#include "engine/platform/standard_streams.h"
#include "engine/platform/system_machine.h"
#include "engine/platform/window.h"
#include "engine/recording/recorder.h"
#include "engine/recording/replay.h"
#include "runtime/builtins/describe.h"
#include "runtime/reports/log.h"
#include "runtime/reports/report.h"

namespace arena::apps {
namespace {

enum ExitStatus { kFine = 0, kFailed = 1, kBadOption = 2, kScriptError = 3, kAnotherRun = 5 };

// Beside the program, or where an installation puts it: PREFIX/bin/arena and PREFIX/share/arena/arena.dat.
std::string data_path(const Options& options) {
  if (!options.data.empty()) return options.data;
  const std::string name = game_description().name, file = name + ".dat";
  const std::filesystem::path here = files::program_file().parent_path(), installed = here.parent_path() / "share" / name / file;
  std::error_code ignored;
  const bool is_installed = !std::filesystem::exists(here / file, ignored) && std::filesystem::exists(installed, ignored);
  return files::utf8_of(is_installed ? installed : here / file);
}

std::string name_and_version() { return std::string(game_description().name) + " " + game_description().version; }

void show_dialog(const std::string& text) {
  if (!platform::has_display() || platform::end_request() != 0) return;
  platform::stop_watching_end_requests();  // nothing sees them while the dialog waits
  platform::show_error_dialog(game_description().title, text);
}

int fail(const std::string& problem, bool in_dialog, int status) {
  std::cerr << game_description().name << ": " << problem << "\n";
  if (in_dialog) show_dialog(problem);
  return status;
}

std::string unwritable_picture(const Options& options) {
  return files::on_one_line(options.screenshot) + ": the picture cannot be written";
}

// A recording that is played, and the game's part in it.
struct Played {
  recording::Recording recording;
  std::unique_ptr<recording::Replay> replay;  // null: nothing is
  std::string ending;                         // a sentence about what comes behind its last frame; "": nothing does
};

std::unique_ptr<Mode> mode_for(host::Game& game, platform::Window* window, Played& played, const Options& options) {
  const bool is_seen = !options.headless && platform::has_display();
  if (played.replay != nullptr && !options.compare.empty()) return compare_mode(game, *played.replay, options);
  if (played.replay != nullptr)
    return is_seen ? viewer_mode(game, *window, *played.replay, played.recording, played.ending, options)
                   : replay_mode(game, *played.replay, options);
  if (options.console && !is_seen) return console_mode(game, options);
  if (options.headless) return headless_mode(game, options);
  return is_seen ? window_mode(game, *window, options) : show_mode(game, options);
}

int run_mode(host::Game& game, platform::Window* window, Played& played, const Options& options) {
  const std::unique_ptr<Mode> mode = mode_for(game, window, played, options);
  platform::run_main_loop([&] { return mode->tick(); });
  if (!mode->problem().empty() && platform::end_request() == 0)
    return fail(mode->problem(), false, played.replay != nullptr ? kAnotherRun : kFailed);
  if (!options.screenshot.empty() && !game.save_screenshot(options.screenshot)) return fail(unwritable_picture(options), false, kFailed);
  return kFine;
}

recording::Beginning beginning_of(const Options& options, const data::DataFile& data) {
  return {game_description().name, game_description().version, data.hash(), options.room, options.has_seed, options.seed, options.console};
}

// A recording that ends early is verified up to there, and says so.
int tell_verdict(const recording::Replay& replay, const recording::Recording& recorded) {
  std::cout << recording::same_run(replay) << std::endl;
  return recorded.damage.empty() ? kFine : fail(recorded.damage, false, kFailed);
}

// Takes the frame that failed off the recording, and says so; false when nothing is left to be played.
bool stop_before_fault(Played& played) {
  recording::Recording& recorded = played.recording;
  if (!recorded.damage.empty()) return true;
  if (!recorded.breaks_off()) {
    std::cout << "every frame of the run ended: there is no fault to stop before" << std::endl;
    return true;
  }
  if (recorded.frames.empty()) {
    std::cout << "the run broke off in its start: there is no frame before the fault" << std::endl;
    return false;
  }
  std::cout << "the run broke off in frame " << recorded.frames.size() << ": the replay stops before it" << std::endl;
  recorded.frames.pop_back();
  played.ending = "The fault is in the frame behind the last one.";
  return true;
}

// The window that it was recorded in had this size.
void take_size(const recording::Recording& recorded, platform::WindowOptions& options) {
  for (const InputEvent& event : recorded.start.input) {
    if (event.type != InputEvent::Type::kWindowSize || event.code <= 0 || event.value <= 0) continue;
    options.width = event.code;
    options.height = event.value;
  }
}

// Window, drawing and sound, as far as they are wanted; false with a problem.
bool open_screen(const Options& options, const recording::Recording& recorded, host::GameOptions& game_options,
                 std::unique_ptr<platform::Window>& window, std::string& problem) {
  const bool wants_window = !options.headless, shows_offscreen = wants_window && !platform::has_display();
  const bool draws_offscreen = shows_offscreen || (options.headless && !options.screenshot.empty());
  game_options.shows_frames = !draws_offscreen;
  if (shows_offscreen) {
    const char* const how = game_description().make_autoplayer != nullptr ? "plays itself" : "runs";
    std::cerr << game_description().name << ": there is no display; the game " << how
              << " off-screen and leaves pictures in Screenshots/\n";
  }
  if (wants_window || draws_offscreen) {
    platform::WindowOptions window_options;
    window_options.title = game_description().title;
    window_options.fullscreen = options.fullscreen;
    window_options.vsync = options.vsync && !draws_offscreen;
    window_options.offscreen = draws_offscreen;
    take_size(recorded, window_options);
    window = platform::open_window(window_options, problem);
    if (window != nullptr) game_options.backend = window->create_backend(problem);
    if (game_options.backend == nullptr) return false;
    if (options.replay.empty()) game_options.window = window.get();  // a replay sees none
  }
  if (wants_window && !options.mute && !shows_offscreen) {
    std::string no_sound;
    game_options.audio_device = audio::open_openal(no_sound);
    if (game_options.audio_device == nullptr) log_message(no_sound);
  }
  return true;
}

// False with a problem.
bool open_replay(const Options& options, const recording::Beginning& here, Played& played, std::string& problem) {
  if (!recording::open_recording(options.replay, played.recording, problem)) return false;
  problem = recording::misfit(played.recording.beginning, here);
  if (!problem.empty()) problem = files::on_one_line(options.replay + ": " + problem);
  played.ending = played.recording.damage;
  played.replay = std::make_unique<recording::Replay>(played.recording);
  return problem.empty();
}

// Looks on where the recording is one to be read, and no graphics card draws; else null.
std::unique_ptr<recording::Witness> make_witness(const Options& options, const recording::Recording& replayed,
                                                 host::GameOptions& game_options) {
  const bool is_wanted = options.replay.empty() ? recording::is_text_file(files::path_of(options.record))
                                                : options.verify && replayed.figure_bits == recording::kFigureBitsOfText;
  if (!is_wanted || game_options.backend != nullptr) return nullptr;
  auto backend = std::make_unique<gpu::Recorder>();
  auto witness = std::make_unique<recording::Witness>(*backend);
  game_options.backend = std::move(backend);
  return witness;
}

// What performs the requests of a run that a console drove; null for others.
std::unique_ptr<console::Console> make_console(host::Game& game, Played& played) {
  if (played.replay == nullptr || !played.recording.beginning.has_console) return nullptr;
  auto made = std::make_unique<console::Console>(game);
  played.replay->set_console([console = made.get()](const std::string& request) { console->answer(request); });
  return made;
}

// Null when the run is not recorded.
std::unique_ptr<recording::Recorder> make_recorder(const Options& options, const recording::Beginning& beginning,
                                                   recording::Witness* witness) {
  const bool is_wanted = !options.record.empty() || !options.headless;
  if (!is_wanted || !options.replay.empty()) return nullptr;
  const std::filesystem::path file = options.record.empty() ? new_recording_file() : files::path_of(options.record);
  if (file.empty()) return nullptr;
  std::error_code ignored;
  platform::record_for_crash(std::filesystem::absolute(file, ignored));
  return std::make_unique<recording::Recorder>(file, beginning, witness);
}

// Nobody's files are touched by a replay, or where nobody plays; null: in memory.
std::unique_ptr<files::Storage> save_storage(const Options& options) {
  if (!options.saves.empty()) return files::folder_storage(options.saves);
  return options.headless || !options.replay.empty() ? nullptr : files::folder_storage(save_folder());
}

int run(const Options& options) {
  std::string problem;
  // Known before the game is played, not after.
  std::error_code ignored;
  if (std::filesystem::is_directory(files::path_of(options.screenshot), ignored))
    return fail(unwritable_picture(options), !options.headless, kFailed);
  const platform::SingleInstance instance(
      game_description().is_single && !options.headless && options.replay.empty() ? game_description().name : "");
  if (!instance.is_first()) return fail("the game runs already", true, kFailed);
  host::GameOptions game_options;
  game_options.data = data::open_data_file(data_path(options), problem);
  if (game_options.data == nullptr) return fail(problem, !options.headless, kFailed);
  game_options.room = options.room;
  game_options.has_seed = options.has_seed;
  game_options.seed = options.seed;
  game_options.screenshot_folder = screenshot_folder;
  game_options.save_folder = save_storage(options);
  game_options.arguments = options.arguments;
  if (!options.headless) game_options.machine = &platform::system_machine();

  // All of these outlive the game.
  Played played;
  std::unique_ptr<platform::Window> window;
  const recording::Beginning beginning = beginning_of(options, *game_options.data);
  if (!options.replay.empty()) {
    if (!open_replay(options, beginning, played, problem)) return fail(problem, !options.headless, kFailed);
    if (options.before_fault && !stop_before_fault(played)) return kFine;
    played.replay->prepare(game_options);
  }
  if (!open_screen(options, played.recording, game_options, window, problem)) return fail(problem, !options.headless, kFailed);
  const std::unique_ptr<recording::Witness> witness = make_witness(options, played.recording, game_options);
  if (played.replay != nullptr) played.replay->set_witness(witness.get());
  const std::unique_ptr<recording::Recorder> recorder = make_recorder(options, beginning, witness.get());
  if (recorder != nullptr) game_options.listener = recorder.get();

  host::Started started = host::Game::start(std::move(game_options));
  if (started.game == nullptr)
    return fail(started.problem, !options.headless, started.failure == host::Started::Failure::kUnknownRoom ? kBadOption : kFailed);
  const std::unique_ptr<console::Console> console = make_console(*started.game, played);
  const int status = run_mode(*started.game, window.get(), played, options);
  if (recorder != nullptr) recorder->end();
  if (played.replay != nullptr && status == kFine && options.verify) return tell_verdict(*played.replay, played.recording);
  return status;
}

int tell(const std::string& text) { return (std::cout << text << std::flush) ? kFine : fail("the text cannot be written", false, kFailed); }

int start(int argc, char** argv) {
  Options options;
  std::string problem;
  if (!parse_options(command_line(argc, argv), options, problem)) return fail(problem, false, kBadOption);
  if (options.shows_help) return tell(help_text());
  if (options.shows_builtins) return tell(builtins_document());
  if (options.shows_version) return tell(name_and_version() + " (" + licence::in_words() + ")\n");
  start_log();
  const bool has_dialogs = !options.headless && platform::has_display();
  // Of a replay everything is there already but the report, which standard error and the dialog show; whoever takes over sees to it.
  const platform::CrashFolder folder = options.replay.empty() ? next_crash_folder(options.data) : platform::CrashFolder();
  platform::report_crashes(folder, name_and_version() + " crashed", has_dialogs ? game_description().title : "");
  try {
    return run(options);
  } catch (const WBKSLException& error) {
    const std::string report = platform::leave_crash(error.report());
    std::cerr << report;
    if (!options.headless) show_dialog(report);
    return kScriptError;
  }
}

}  // namespace
}  // namespace arena::apps

int main(int argc, char** argv) {
  using namespace arena;
  platform::hold_standard_streams();
  platform::watch_end_requests();
  int status = 0;
  try {
    status = apps::start(argc, argv);
  } catch (const std::bad_alloc&) {
    status = apps::fail("the memory has run out", false, apps::kFailed);
  }
  apps::end_log();
  return status == apps::kFine ? platform::end_request() : status;
}
