#include "runtime/instances_loop/frame_loop.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "runtime/arrays_structs/collector.h"
#include "runtime/checks/assert.h"
#include "runtime/input/gamepads.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/async_results.h"
#include "runtime/instances_loop/cameras.h"
#include "runtime/instances_loop/clock.h"
#include "runtime/instances_loop/collisions.h"
#include "runtime/instances_loop/crossings.h"
#include "runtime/instances_loop/motion.h"
#include "runtime/instances_loop/sprites.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/instances_loop/timers.h"
#include "runtime/reports/report.h"
#include "runtime/session/session.h"
#include "runtime/values/compare.h"
#include "runtime/values/number_text.h"

namespace arena {
namespace {

// What a pass over the world draws, kept between frames for its memory.
struct DrawList {
  std::vector<Layer> backgrounds;  // copies: a handler may make layers
  std::vector<CInstance*> instances;

  void gather() {
    backgrounds.clear();
    instances.clear();
    for (const Layer& layer : world().layers) {
      if (layer.visible && layer.background_sprite >= 0) backgrounds.push_back(layer);
    }
    std::stable_sort(backgrounds.begin(), backgrounds.end(), [](const Layer& a, const Layer& b) { return sorts_before(b.depth, a.depth); });
    for (const auto& [depth, bucket] : world().by_depth()) {
      for (CInstance* instance : bucket) {
        const Layer* layer = instance->layer >= 0 ? world().find_layer(saturate_int32(instance->layer)) : nullptr;
        if (layer == nullptr || layer->visible) instances.push_back(instance);
      }
    }
  }
};

struct FrameLoop {
  DrawHooks hooks;
  DrawList draw_list;
};
const Part<FrameLoop> loop{PartLevel::kWorld, "frame loop"};

// The instances of a long pass lie all over the memory: those that come next are fetched while this one runs (a quarter of a crowd's
// step was waiting).
void fetch_ahead(const EventList& list, std::size_t at) {
  if (at + 4 < list.size()) {
    __builtin_prefetch(list[at + 4].instance);
    __builtin_prefetch(&list[at + 4].instance->x);
  }
  if (at + 2 < list.size()) {
    const RValue* row = list[at + 2].instance->row;
    for (std::ptrdiff_t line = 0; line < 4; ++line) __builtin_prefetch(row + line * 4);
  }
}

// Everybody who was there when the pass began.
void run_pass(EventKey key, bool only_visible = false) {
  const auto entry = object_types().lists().find(key);
  if (entry == object_types().lists().end()) return;
  EventList& list = entry->second;
  const std::size_t count = list.size();
  const auto before_handler = key.kind == EventKind::kDraw ? loop().hooks.before_handler : nullptr;
  for (std::size_t i = 0; i < count && i < list.size(); ++i) {
    const Participant each = list[i];
    fetch_ahead(list, i);
    if (!each.instance->is_alive || (only_visible && each.instance->visible < 0.5)) continue;
    if (before_handler != nullptr) before_handler(*each.instance, key);
    run_handler(*each.instance, each.instance, *each.event);
  }
}

void remember_positions() {
  for (CInstance* instance : world().all()) {
    instance->xprevious = instance->x;
    instance->yprevious = instance->y;
  }
}

void run_alarms() {
  const std::vector<CInstance*>& all = world().all();
  const std::size_t count = all.size();
  for (std::size_t i = 0; i < count; ++i) {
    CInstance& instance = *all[i];
    for (int alarm = 0; alarm < kAlarms && instance.is_alive; ++alarm) {
      double& left = instance.alarm.data()[alarm];
      if (left < 0) continue;
      left -= 1;
      if (left > 0) continue;
      left = -1;
      run_event(instance, &instance, {EventKind::kAlarm, alarm});
    }
  }
}

void run_key_events() {
  for (const auto& [key, list] : object_types().lists()) {
    if (list.empty()) continue;
    if (key.kind == EventKind::kKeyboard && key_test(key.number, &Switch::down)) run_pass(key);
    if (key.kind == EventKind::kKeyPress && key_test(key.number, &Switch::pressed)) run_pass(key);
    if (key.kind == EventKind::kKeyRelease && key_test(key.number, &Switch::released)) run_pass(key);
  }
}

bool mouse_event_is_on(std::int32_t number) {
  const ButtonSwitches& buttons = input_state().buttons;
  const std::int32_t which = number >= kMouseAnywhere ? number - kMouseAnywhere : number;
  if (which >= kMouseReleased && which < kMouseReleased + 3) return buttons.data()[which - kMouseReleased + 1].released;
  if (which >= kMousePressed && which < kMousePressed + 3) return buttons.data()[which - kMousePressed + 1].pressed;
  return which >= 0 && which < 3 && buttons.data()[which + 1].down;
}

void run_mouse_events() {
  const Point pointer = pointer_in_room();
  for (const auto& [key, list] : object_types().lists()) {
    if (key.kind != EventKind::kMouse || list.empty() || !mouse_event_is_on(key.number)) continue;
    const std::size_t count = list.size();
    for (std::size_t i = 0; i < count; ++i) {
      CInstance& instance = *list[i].instance;
      const bool is_meant = key.number >= kMouseAnywhere || shapes_overlap(shape_of(instance), point_shape(pointer.x, pointer.y));
      if (instance.is_alive && is_meant) run_event(instance, &instance, key);
    }
  }
}

void move_all() {
  for (CInstance* instance : world().all()) {
    if (instance->is_alive) move_instance(*instance);
  }
}

void animate(CInstance& instance) {
  if (instance.image_speed == 0) return;
  const SpriteInfo* sprite = find_sprite(saturate_int32(instance.sprite_index));
  if (sprite == nullptr || sprite->frames <= 1) return;
  const double seconds = static_cast<double>(game_clock().frame_microseconds) / 1e6;
  const double speed = sprite->frames_per_second > 0 ? sprite->frames_per_second * seconds : 1;
  const double frames = sprite->frames, next = instance.image_index + instance.image_speed * speed;
  instance.image_index = std::isfinite(next) ? next : 0;  // what is no number of a picture starts anew
  if (instance.image_index >= 0 && instance.image_index < frames) return;
  // However many turns lie in between, the animation has ended once.
  const double rest = std::fmod(next, frames), index = rest < 0 ? rest + frames : rest;
  instance.image_index = index < frames ? index : 0;
  run_event(instance, &instance, {EventKind::kOther, kOtherAnimationEnd});
}

void animate_all() {
  const std::vector<CInstance*>& all = world().all();
  const std::size_t count = all.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (all[i]->is_alive) animate(*all[i]);
  }
}

void draw_one(CInstance& instance) {
  const EventKey key{EventKind::kDraw, kDrawNormal};
  const DrawHooks& draw_hooks = loop().hooks;
  if (draw_hooks.before_handler != nullptr) draw_hooks.before_handler(instance, key);
  if (const BoundEvent* event = instance.type->find_event(key)) {
    run_handler(instance, &instance, *event);
  } else if (draw_hooks.draw_instance != nullptr) {
    draw_hooks.draw_instance(instance);
  }
}

// Backgrounds and instances by depth, the furthest first; a background lies behind the instances of its own depth.
void draw_world() {
  DrawList& list = loop().draw_list;
  const DrawHooks& draw_hooks = loop().hooks;
  list.gather();
  std::size_t background = 0;
  const auto draw_backgrounds_above = [&](double depth) {
    for (; background < list.backgrounds.size() && list.backgrounds[background].depth >= depth; ++background) {
      if (draw_hooks.draw_background != nullptr) draw_hooks.draw_background(list.backgrounds[background]);
    }
  };
  for (CInstance* instance : list.instances) {
    draw_backgrounds_above(instance->depth);
    if (instance->is_alive && instance->visible > 0.5) draw_one(*instance);
  }
  draw_backgrounds_above(-std::numeric_limits<double>::infinity());
}

// What arrived from outside is told before anything else happens in the frame, in the order in which it came.
void run_async_events() {
  const std::size_t count = applied_input().size();
  for (std::size_t i = 0; i < count && i < applied_input().size(); ++i) {
    if (applied_input()[i].type != InputEvent::Type::kAsync) continue;
    const std::int32_t subtype = applied_input()[i].value;
    const AsyncResultScope result(applied_input()[i]);
    if (result.is_there()) run_pass({EventKind::kAsync, subtype});
  }
}

template <class Work>
void timed(Stage stage, Work work) {
  const StageTimer timer(stage);
  work();
}

// Everything of a frame before its drawing.
void do_a_step(std::int64_t microseconds) {
  begin_input_frame();
  advance_gamepads(microseconds);
  game_clock().frame_microseconds = microseconds;
  game_clock().total_microseconds += microseconds;
  ++game_clock().frame;
  timed(Stage::kHandleInstanceMovement, remember_positions);
  timed(Stage::kHandleOther, run_async_events);
  timed(Stage::kHandleStep, [] { run_pass({EventKind::kStep, kStepBegin}); });
  timed(Stage::kHandleAlarm, [&] {
    run_alarms();
    run_named_alarms();
    timers().run(microseconds);
  });
  timed(Stage::kHandleMouse, [] {
    run_key_events();
    run_mouse_events();
    run_wheel_pointer_and_window_events();
  });
  timed(Stage::kHandleStep, [] { run_pass({EventKind::kStep, kStepNormal}); });
  timed(Stage::kHandleInstanceMovement, move_all);
  timed(Stage::kHandleCollision, run_collision_events);
  timed(Stage::kHandleOther, [] { run_outside_events(); });
  timed(Stage::kHandleStep, [] { run_pass({EventKind::kStep, kStepEnd}); });
  timed(Stage::kHandleOther, [] {
    animate_all();
    world().carry_out_requests();
  });
}

}  // namespace

void set_draw_hooks(const DrawHooks& hooks) { loop().hooks = hooks; }

void draw_frame() {
  const StageTimer timer(Stage::kDrawRoom);
  const DrawHooks& draw_hooks = loop().hooks;
  if (draw_hooks.begin_world != nullptr) draw_hooks.begin_world();
  {
    const StageTimer in_room(Stage::kDrawTheRoom);
    run_pass({EventKind::kDraw, kDrawBegin}, true);
    draw_world();
    run_pass({EventKind::kDraw, kDrawEnd}, true);
  }
  if (draw_hooks.begin_gui != nullptr) draw_hooks.begin_gui();
  run_pass({EventKind::kDraw, kDrawGuiBegin}, true);
  run_pass({EventKind::kDraw, kDrawGui}, true);
  run_pass({EventKind::kDraw, kDrawGuiEnd}, true);
  if (draw_hooks.end_frame != nullptr) draw_hooks.end_frame();
}

namespace {

// After the drawing, so that a new run has seen as little as a first one: neither a step nor a picture.
void restart_if_wanted() {
  if (!world().restart_wanted || world().ended) return;
  world().restart_wanted = false;
  world().restart_game();
}

}  // namespace

void run_frame(std::int64_t microseconds) {
  ARENA_ASSERT(session().is_at_rest());
  if (world().ended) return;
  begin_stage_times();
  double collection = 0;
  {
    const StageTimer whole(Stage::kMainloopProcess);
    timed(Stage::kDoAStep, [&] { do_a_step(microseconds); });
    draw_frame();
    timed(Stage::kHandleOther, restart_if_wanted);
    timed(Stage::kUpdateActiveLists, [] { world().settle_lists(); });
    const double before = whole.microseconds();
    collect_at_safe_point();
    renew_memory_reserve();
    collection = whole.microseconds() - before;
  }
  end_stage_times(collection);
}

}  // namespace arena
