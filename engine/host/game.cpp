#define ARENA_DEFINES_BUILTINS

#include "engine/host/game.h"

#include <filesystem>
#include <fstream>
#include <utility>

#include "arena_generated.h"
#include "engine/draw/draw_service.h"
#include "engine/files/game_files.h"
#include "engine/files/paths.h"
#include "engine/files/png.h"
#include "engine/files/save_folder.h"
#include "engine/gpu/backend.h"
#include "engine/gpu/recorder/recorder.h"
#include "engine/host/frame_pixels.h"
#include "engine/machine/machine.h"
#include "engine/platform/window.h"
#include "runtime/arrays_structs/holder.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/screen.h"
#include "runtime/input/input_state.h"
#include "runtime/input/outside.h"
#include "runtime/instances_loop/frame_loop.h"
#include "runtime/instances_loop/random.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/names.h"
#include "runtime/reports/log.h"
#include "runtime/session/session.h"

namespace arena::host {
namespace {

struct Screen {
  int width = 1280, height = 720;  // pixels of the drawing area
  bool shows_frames = true;        // false: only those of which a picture is taken
  bool is_seen = true;             // false: not even those
  bool is_heard = true;
  bool picture_wanted = false;           // of the next frame that goes to the graphics card, the current one included
  std::vector<std::uint8_t> picture;     // empty: none was taken
  bool run_began = false;                // in this frame, by a restart
  std::function<void()> draw_above;      // over the game's own picture
  const data::DataFile* data = nullptr;  // of the game

  void restart() { run_began = true; }
};
const Part<Screen> screen{PartLevel::kHost, "screen"};

void begin_world() {
  draw::begin_draw_pass();
  draw::Draw* service = draw::draw_service();
  if (service == nullptr) return;
  service->gpu().pass_frames(screen().is_seen && (screen().shows_frames || screen().picture_wanted));
  service->begin_world(screen().width, screen().height);
}
void begin_gui() {
  if (draw::draw_service() != nullptr) draw::draw_service()->begin_gui();
}
void end_frame() {
  draw::end_draw_pass();
  draw::Draw* service = draw::draw_service();
  if (service == nullptr) return;
  if (screen().picture_wanted && screen().is_seen) {
    screen().picture = service->gpu().read_pixels();
    screen().picture_wanted = screen().picture.empty();
  }
  if (screen().draw_above && service->gpu().passes_frame()) {
    screen().draw_above();
    service->serve_session();
  }
  service->end_frame();
}
void draw_background(const Layer& layer) {
  if (draw::draw_service() != nullptr) draw::draw_service()->background(layer);
}

void before_handler(const CInstance&, EventKey key) {
  if (key.kind == EventKind::kDraw) draw::save_draw_state();
}

void screen_save_numbered() {
  if (screen().is_seen) screen().picture_wanted = true;
}
// For tests of what happens when the graphics card goes away.
void gpu_debug_lose_device() {
  if (draw::draw_service() != nullptr) draw::draw_service()->gpu().lose_device();
}
// Without a window nobody sees it.
void window_set_icon(std::int32_t sprite, std::int32_t frame) {
  const SpriteInfo* const info = find_sprite(sprite);
  if (info == nullptr) {
    report_invalid_resource(1, "sprite", sprite, static_cast<std::int32_t>(sprite_infos().size()));
    return;
  }
  platform::Window* const window = platform::window_in_use();
  if (window == nullptr || screen().data == nullptr || info->frames < 1) return;
  const FramePixels pixels = pixels_of_frame(*screen().data, sprite, (frame % info->frames + info->frames) % info->frames);
  if (!pixels.rgba.empty()) window->set_icon(pixels.rgba, pixels.width, pixels.height);
}
constexpr Implementation kRows[] = {
    implement<script::window_set_icon, window_set_icon>,
    implement<script::screen_save_numbered, screen_save_numbered>,
    implement<script::gpu_debug_lose_device, gpu_debug_lose_device>,
};
const BuiltinTable table("Screen", "", kRows);

void load_clips(const data::File& content) {
  std::vector<audio::Clip>& clips = audio::audio().clips;
  clips.clear();
  for (const data::Sound* sound : *content.sounds()) {
    if (static_cast<std::size_t>(sound->index()) >= clips.size()) clips.resize(static_cast<std::size_t>(sound->index()) + 1);
    clips[static_cast<std::size_t>(sound->index())] = {
        sound->name()->str(), sound->rate(), {sound->samples()->begin(), sound->samples()->end()}};
  }
}

void pack_files(const data::File& content) {
  files::PackedFiles packed;
  if (content.files() != nullptr) {
    for (const data::PackedFile* file : *content.files())
      packed[file->name()->str()] = {reinterpret_cast<const char*>(file->bytes()->data()), file->bytes()->size()};
  }
  files::use_packed_files(std::move(packed));
}

std::int32_t find_room(const std::string& name) {
  if (name.empty()) return world().first_room;
  for (std::size_t i = 0; i < world().rooms.size(); ++i) {
    if (world().rooms[i].name == name) return static_cast<std::int32_t>(i);
  }
  return -1;
}

std::string in_one_message(const std::vector<std::string>& problems) {
  std::string text = "data and code do not fit together:";
  for (const std::string& problem : problems) text += "\n  " + problem;
  return text;
}

}  // namespace

Started Game::start(GameOptions options) {
  if (std::string missing = data::missing_in_build(*options.data); !missing.empty())
    return {nullptr, Started::Failure::kMissingInBuild, std::move(missing)};
  const LookupResult& lookup = look_up_names();
  std::vector<std::string> problems = lookup.problems;
  std::unique_ptr<Game> game(new Game);
  std::string report = lookup.report();
  report.pop_back();  // the log ends its lines itself
  log_note(report);
  const std::vector<std::string> data_problems = data::install_in_world(*options.data, options.extra_objects);
  problems.insert(problems.end(), data_problems.begin(), data_problems.end());
  if (!problems.empty()) return {nullptr, Started::Failure::kDataAndCodeDiffer, in_one_message(problems)};
  const std::int32_t room = find_room(options.room);
  if (room < 0) return {nullptr, Started::Failure::kUnknownRoom, "there is no room '" + files::on_one_line(options.room) + "'"};
  game->data_ = std::move(options.data);
  if (options.backend == nullptr) options.backend = std::make_unique<gpu::Recorder>();
  screen().shows_frames = options.shows_frames;
  game->gpu_ = std::make_unique<gpu::Gpu>(std::move(options.backend));
  game->draw_ = std::make_unique<draw::Draw>(*game->gpu_, *game->data_);
  game->audio_device_ = std::move(options.audio_device);
  game->screenshot_folder_ = std::move(options.screenshot_folder);
  draw::use_draw_service(game->draw_.get());
  set_draw_hooks({begin_world, draw_background, draw::draw_instance_default, begin_gui, end_frame, before_handler});
  screen().data = game->data_.get();
  load_clips(*game->data_->content);
  pack_files(*game->data_->content);
  files::use_save_folder(std::move(options.save_folder));
  if (game->audio_device_ != nullptr) game->audio_device_->load(audio::audio().clips);
  if (options.has_seed) fix_random_seed(options.seed);
  platform::use_window(options.window);
  machine::use_machine(options.machine);
  machine::set_arguments(std::move(options.arguments));
  if (options.first_input != nullptr) {
    replace_queued_input(*options.first_input);
  } else if (options.window != nullptr) {
    options.window->announce();
  }
  game->listener_ = options.listener;
  if (game->listener_ != nullptr) game->listener_->before_start();
  begin_input_frame();
  world().start_game(room);
  return {std::move(game), Started::Failure::kNone, ""};
}

Game::~Game() = default;

void Game::run_frame(std::int64_t microseconds) {
  const SessionScope scope(session_);
  screen().run_began = false;
  files::deliver_arrivals();
  files::end_delivery();
  if (listener_ != nullptr) listener_->before_frame(microseconds);
  arena::run_frame(microseconds);
  // What a new run plays from its start is heard from its first frame on, as after a first start.
  if (!screen().run_began) audio::audio().advance(static_cast<double>(microseconds) / 1e6);
  if (audio_device_ != nullptr && screen().is_heard) audio::audio().feed(*audio_device_);
  if (listener_ != nullptr) listener_->after_frame();
  if (!screen().picture.empty()) save_numbered(std::exchange(screen().picture, {}));
}

void Game::draw() {
  const SessionScope scope(session_);
  draw_frame();
}

// What sounded when nobody listened any more is long over.
void Game::be_watched(bool seen, bool heard) {
  const SessionScope scope(session_);
  if (heard && !screen().is_heard && audio_device_ != nullptr) audio_device_->forget();
  screen().is_seen = seen;
  screen().is_heard = heard;
}

void Game::take_snapshot(Snapshot& into, const Snapshot* earlier) {
  const SessionScope scope(session_);
  Holder::let_go_of_tool_values();
  into.take(session_, earlier);
}

// What hears and shows the game starts over from what it is now.
void Game::restore(const Snapshot& snapshot) {
  const SessionScope scope(session_);
  Holder::let_go_of_tool_values();
  snapshot.restore(session_);
  if (audio_device_ != nullptr) audio_device_->forget();
  platform::follow_window_state();
}

void Game::hand_over(platform::Window& window) {
  const SessionScope scope(session_);
  give_answers({});
  InputEvent focus;
  focus.type = InputEvent::Type::kFocus;
  replace_queued_input({});
  for (const int gained : {0, 1}) {
    focus.value = gained;
    push_input(focus);
  }
  platform::use_window(&window);
  window.announce();
}

void Game::set_picture_above(std::function<void()> draw) {
  const SessionScope scope(session_);
  screen().draw_above = std::move(draw);
}

void Game::take_screenshot() { screen().picture_wanted = true; }

void Game::save_numbered(const std::vector<std::uint8_t>& pixels) {
  const std::string path = free_screenshot_name(screenshot_folder_ ? screenshot_folder_() : "Screenshots");
  log_message(path + (save_png(path, pixels) ? "" : ": the picture cannot be written"));
}

void Game::set_target_size(int width, int height) {
  const SessionScope scope(session_);
  screen().width = width;
  screen().height = height;
}

// The first name that no file has.
std::string Game::free_screenshot_name(const std::string& folder) {
  for (int number = 1;; ++number) {
    char name[32];
    std::snprintf(name, sizeof name, "/screenshot-%03d.png", number);
    std::error_code ignored;
    if (!std::filesystem::exists(files::path_of(folder + name), ignored)) return folder + name;
  }
}

bool Game::save_screenshot(const std::string& path) {
  const SessionScope scope(session_);
  screen().picture_wanted = true;
  draw_frame();
  return save_png(path, std::exchange(screen().picture, {}));
}

bool Game::save_png(const std::string& path, std::vector<std::uint8_t> pixels) {
  for (std::size_t i = 3; i < pixels.size(); i += 4) pixels[i] = 255;
  const std::string encoded = files::png_of(gpu_->width(), gpu_->height(), pixels);
  if (encoded.empty()) return false;
  const std::filesystem::path file = files::path_of(path), fresh = files::path_of(path + ".new");
  std::error_code failure;
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), failure);
  std::ofstream stream(fresh, std::ios::binary);
  stream.write(encoded.data(), static_cast<std::streamsize>(encoded.size()));
  stream.close();
  const bool is_whole = !stream.fail();
  if (is_whole) std::filesystem::rename(fresh, file, failure);
  if (is_whole && !failure) return true;
  std::filesystem::remove(fresh, failure);
  return false;
}

}  // namespace arena::host
