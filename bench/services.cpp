#include "bench/services.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include "bench/micro_scripts.h"
#include "engine/draw/draw_service.h"
#include "engine/draw/particles.h"
#include "engine/draw/stickers.h"
#include "runtime/memory/block_pool.h"
#include "runtime/reports/frame.h"
#include "toolkit/ui/layout/flexbox.h"

namespace bench {
namespace {

using namespace arena;
using Clock = std::chrono::steady_clock;

double median_ms(int rounds, const std::function<void()>& run) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) {
    const Clock::time_point start = Clock::now();
    run();
    times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }
  std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
  return times[static_cast<std::size_t>(rounds / 2)];
}

// `required` 0: no figure is asked for.
void print(const char* what, double ms, double required) {
  std::printf("%-44s %10.3f", what, ms);
  if (required > 0) std::printf(" %10.2f", required);
  std::printf("\n");
}

// Three levels of rows and columns with padding, gaps and shares, as a window full of controls has them.
void build_tree(layout::Tree& tree) {
  using layout::Length;
  tree.clear();
  layout::Style root;
  root.size = {Length::pixels(1280), Length::pixels(720)};
  root.wrap = layout::Wrap::kWrap;
  tree.add(layout::kNoBox, root);
  for (int column = 0; column < 9; ++column) {
    layout::Style group;
    group.direction = layout::Direction::kColumn;
    group.padding = {Length::pixels(4), Length::pixels(4), Length::pixels(4), Length::pixels(4)};
    group.gap = {Length::pixels(2), Length::pixels(2)};
    group.grow = 1;
    const std::int32_t holder = tree.add(0, group);
    for (int row = 0; row < 22; ++row) {
      layout::Style line;
      line.gap[0] = Length::pixels(3);
      line.align_items = layout::Align::kCenter;
      const std::int32_t parent = tree.add(holder, line);
      for (int cell = 0; cell < 4; ++cell) {
        layout::Style leaf;
        leaf.size[1] = Length::pixels(12 + cell);
        leaf.min_size[0] = Length::pixels(10);
        leaf.grow = cell;
        leaf.basis = Length::pixels(20);
        tree.add(parent, leaf);
      }
    }
  }
}

void run_decals() {
  draw::Draw& on = *draw::draw_service();
  draw::StickerLayer layer(50000);
  const auto sticker = [](int i) {
    return draw::Draw::Sticker{33, 0, {static_cast<double>(i * 37 % 3072), static_cast<double>(i * 91 % 3072), 1, 1, 30, 255, 1}};
  };
  for (int i = 0; i < 50000; ++i) layer.add(sticker(i));
  int next = 50000;
  const auto frame = [&] {
    on.begin_world(1280, 720);
    layer.draw(on);
    on.end_frame();
  };
  for (int i = 0; i < 5; ++i) frame();
  print("50,000 decals, a full-screen view", median_ms(200, frame), 0.2);
  std::printf("%-44s %10d %10d\n", "  draw calls", on.gpu().statistics().draw_calls, 16);
  print("1,000 decals added at the capacity",
        median_ms(60,
                  [&] {
                    for (int i = 0; i < 1000; ++i) layer.add(sticker(next++));
                  }),
        1);
  print("  added and drawn",
        median_ms(60,
                  [&] {
                    for (int i = 0; i < 1000; ++i) layer.add(sticker(next++));
                    frame();
                  }),
        1);
  layer.drop_meshes();
}

void run_particles() {
  draw::Draw& on = *draw::draw_service();
  std::vector<draw::ParticleType> types(1);
  types[0].sprite = 33;
  types[0].life = {1e6, 1e6};
  types[0].speed = {10, 100};
  types[0].drag = 0.5;
  types[0].gravity = 30;
  types[0].colors[0] = 255;
  draw::ParticleSystem system;
  system.emit(types, 0, 20000, draw::EmitShape::kRectangle, 0, 0, 1900, 1000);
  print("20,000 particles, updated and drawn",
        median_ms(200,
                  [&] {
                    system.update(types, 1.0 / 60);
                    on.begin_world(1280, 720);
                    system.draw(types, on);
                    on.end_frame();
                  }),
        1);
}

}  // namespace

void run_services() {
  const FrameScope frame("bench", global_object(), nullptr);
  std::printf("\n%-44s %10s %10s\n", "service", "ms", "required");
  layout::Tree tree;
  build_tree(tree);
  std::printf("%-44s %10d\n", "boxes of the layout tree", tree.count());
  print("  laid out from scratch", median_ms(200, [&] { tree.lay_out(1280, 720); }), 0.5);
  game::WidgetBench widgets;
  widgets.arrange();
  print("1,000 widgets, everything changed",
        median_ms(50,
                  [&] {
                    widgets.touch();
                    widgets.arrange();
                  }),
        0);
  const std::size_t before = allocated_bytes();
  print("  nothing changed", median_ms(50, [&] { widgets.arrange(); }), 0);
  std::printf("%-44s %10d %10d\n", "  bytes allocated by it", static_cast<int>(allocated_bytes() - before), 0);
  run_decals();
  run_particles();
}

}  // namespace bench
