#include "engine/host/companion.h"

#include <utility>

#include "engine/data/data_file.h"
#include "engine/draw/draw_service.h"
#include "engine/platform/window.h"
#include "runtime/arrays_structs/struct.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/frame_loop.h"
#include "runtime/instances_loop/world.h"
#include "runtime/program/names.h"
#include "runtime/reports/log.h"
#include "runtime/reports/report.h"
#include "runtime/script/watched.h"
#include "runtime/values/strings.h"
#include "runtime/variables_calls/access.h"

namespace arena::host {
namespace {

void begin_world() {
  draw::begin_draw_pass();
  draw::draw_service()->begin_world_above();
}
void draw_background(const Layer& layer) { draw::draw_service()->background(layer); }
void begin_gui() { draw::draw_service()->begin_gui(); }
void before_handler(const CInstance&, EventKey key) {
  if (key.kind == EventKind::kDraw) draw::save_draw_state();
}

}  // namespace

Companion::Companion(Game& game, std::string_view object, platform::Window* window) : game_(game) {
  {
    const SessionScope scope(session_);
    begin(object, window);
  }
  detail::current_session = &game.session();
  game_.set_picture_above([this] { draw_above(); });
}

Companion::~Companion() { game_.set_picture_above({}); }

void Companion::begin(std::string_view object, platform::Window* window) {
  data::install_in_world(game_.data(), ToolObject::all());
  const std::int32_t type = object_types().find(object);
  if (type < 0) return;
  script::watch(&game_.session());
  draw::use_draw_service(&game_.drawing());
  set_draw_hooks({begin_world, draw_background, draw::draw_instance_default, begin_gui, draw::end_draw_pass, before_handler});
  platform::use_window(window);
  if (window != nullptr) window->announce();
  RoomDefinition alone;
  alone.width = alone.view_width = 1280;
  alone.height = alone.view_height = 720;
  alone.layers.emplace_back();
  alone.instances.push_back({type, 0, 0, 0, 0, 1, 1});
  world().rooms.push_back(std::move(alone));
  begin_input_frame();
  run_guarded([] { world().start_game(static_cast<std::int32_t>(world().rooms.size()) - 1); });
}

void Companion::tell(std::string_view name, const RValue& value) {
  const SessionScope scope(session_);
  var_set(RValue::of_object(global_object()), variable_id(name), kNoIndex, value);
}

void Companion::tell_text(std::string_view name, std::string_view text) {
  const SessionScope scope(session_);
  tell(name, make_string(text));
}

double Companion::hear(std::string_view name) {
  const SessionScope scope(session_);
  const RValue* const found = global_object()->find_variable(variable_id(name));
  return found != nullptr && (found->is_number() || found->kind() == kBool) ? found->real : 0;
}

void Companion::draw_above() {
  if (!is_there_) return;
  const SessionScope scope(session_);
  game_.drawing().serve_session();
  run_guarded([&] { run_frame(std::exchange(microseconds_, 0)); });
}

// What goes wrong here is not the game's affair.
template <class Work>
void Companion::run_guarded(Work work) {
  try {
    work();
    is_there_ = !world().ended;
  } catch (const WBKSLException& error) {
    is_there_ = false;
    log_warning(error.report());
  }
}

}  // namespace arena::host
