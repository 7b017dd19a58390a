// All figures in one run, as one table. Absolute times are of this machine and this moment: judge the ratios.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "bench/elementary.h"
#include "bench/fight.h"
#include "bench/lua_crowd.h"
#include "bench/micro_scripts.h"
#include "bench/plain_crowd.h"
#include "bench/seeking.h"
#include "bench/services.h"
#include "engine/host/game.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/arrays_structs/containers.h"
#include "runtime/instances_loop/frame_loop.h"
#include "runtime/instances_loop/stage_times.h"
#include "runtime/memory/block_pool.h"
#include "runtime/program/names.h"
#include "runtime/reports/frame.h"
#include "runtime/variables_calls/resolve.h"

namespace {

using namespace arena;
using Clock = std::chrono::steady_clock;

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

std::string output_of(const std::string& command) {
  std::string text;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return text;
  char buffer[4096];
  while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, pipe)) text.append(buffer, got);
  pclose(pipe);
  return text;
}

bool has_lua() { return std::system("command -v luajit >/dev/null 2>&1") == 0; }

// Milliseconds of the plain crowd of 10,000 on the machine that required times are for.
constexpr double kPlainOnReference = 2.6;

// The places that every version of the crowd starts from: one small generator, the same in Lua.
std::vector<bench::PlainEnemy> places(int count) {
  double seed = 7;
  const auto unit = [&] {
    seed = static_cast<double>(static_cast<long long>(seed) * 16807 % 2147483647);
    return seed / 2147483647;
  };
  std::vector<bench::PlainEnemy> enemies(static_cast<std::size_t>(count));
  for (bench::PlainEnemy& enemy : enemies) {
    enemy.x = unit() * 4000;
    enemy.y = unit() * 4000;
  }
  return enemies;
}

struct Crowd {
  double logic, frame, plain, lua, longest_pause, usual_pause, memory_growth;
  double snapshot, restore;  // milliseconds
};

double milliseconds_of(const std::function<void()>& work) {
  const Clock::time_point before = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - before).count();
}

// Real enemies around a standing player whose health is out of reach; the plain structs step in the same loop, frame by frame.
Crowd run_crowd(host::Game& game, int count, int frames) {
  world().enter_room(2);
  const std::int32_t layer = world().find_layer("layMobs")->id;
  for (const char* object : {"oInit", "oSteadyDeltaTime", "oPlayer", "oControl"}) {
    world().create(2000, 2000, layer, 0, object_types().find(object), nullptr, nullptr);
  }
  CInstance* player = resolve_instance(object_types().find("oPlayer"));
  write_variable(player, game::hp.slot, RValue(1e15));
  const std::vector<bench::PlainEnemy> start = places(count);
  for (const bench::PlainEnemy& enemy : start) world().create(enemy.x, enemy.y, layer, 0, object_types().find("oEnemy"), nullptr, nullptr);
  bench::PlainCrowd plain(start);
  bench::LuaCrowd lua(count);

  std::vector<double> logic, frame, plain_times, lua_times, pauses, snapshots, restores;
  Snapshot snapshot;
  std::size_t memory = 0;
  for (int i = 0; i < frames + 60; ++i) {
    player->x = player->y = 2000;
    write_variable(player, variable_id("invulnerable"), RValue::of_bool(true));
    write_variable(player, variable_id("invulnerable_timer"), RValue(10.0));
    game.run_frame(16667);
    const StageTimes& times = last_stage_times();
    const double plain_time = milliseconds_of([&] { plain.step(2000, 2000, 1.0 / 60); });
    if (i % 10 == 5) {
      snapshots.push_back(milliseconds_of([&] { game.take_snapshot(snapshot); }));
      restores.push_back(milliseconds_of([&] { game.restore(snapshot); }));
    }
    // Lua in bursts, so that it runs under the same load but does not push the others out of the caches at every frame.
    for (int burst = 0; i % 10 == 9 && burst < 3; ++burst) lua_times.push_back(lua.step());
    if (i == 60) memory = allocated_bytes();
    if (i < 60) continue;  // settled: caches, shapes, generations
    logic.push_back(times[Stage::kHandleStep] / 1000);
    frame.push_back(times[Stage::kMainloopProcess] / 1000);
    plain_times.push_back(plain_time);
    pauses.push_back(times.collection / 1000);
  }
  const double growth = static_cast<double>(allocated_bytes()) / static_cast<double>(memory);
  return {median(logic),  median(frame), median(plain_times), median(lua_times), *std::max_element(pauses.begin(), pauses.end()),
          median(pauses), growth,        median(snapshots),   median(restores)};
}

void print_crowd(const char* name, const Crowd& crowd) {
  std::printf("%-10s %10.3f %10.3f %10.3f %10.3f %12.2f %12.2f %12.3f %12.3f %10.3f %10.3f %10.3f\n", name, crowd.logic, crowd.frame,
              crowd.plain, crowd.lua, crowd.logic / crowd.plain, crowd.lua > 0 ? crowd.logic / crowd.lua : 0, crowd.usual_pause,
              crowd.longest_pause, crowd.memory_growth, crowd.snapshot, crowd.restore);
}

std::map<std::string, double> lua_micro(const char* flags) {
  std::map<std::string, double> times;
  if (!has_lua()) return times;
  std::istringstream lines(output_of(std::string("luajit ") + flags + " " ARENA_SOURCE "/bench/micro.lua"));
  std::string name;
  for (double time; lines >> name >> time;) times[name] = time;
  return times;
}

double nanoseconds(int n, const std::function<void(int)>& run) {
  double best = 1e9;
  for (int round = 0; round < 3; ++round) {
    const Clock::time_point start = Clock::now();
    run(n);
    best = std::min(best, std::chrono::duration<double, std::nano>(Clock::now() - start).count() / n);
    collect_everything();
  }
  return best;
}

void run_micro() {
  const std::map<std::string, double> interpreted = lua_micro("-joff"), compiled = lua_micro("");
  const FrameScope frame("bench", global_object(), nullptr);
  game::MicroBench micro;
  const int n = 1000000;
  const std::vector<std::pair<const char*, std::function<void(int)>>> rows = {
      {"variable_read", [&](int k) { micro.variable_read(k); }},
      {"variable_write", [&](int k) { micro.variable_write(k); }},
      {"variable_add", [&](int k) { micro.variable_add(k); }},
      {"global_read", [&](int k) { micro.global_read(k); }},
      {"script_call_3", [&](int k) { micro.script_call(k); }},
      {"method_call", [&](int k) { micro.method_call(k); }},
      {"array_read", [&](int k) { micro.array_read(k); }},
      {"array_write", [&](int k) { micro.array_write(k); }},
      {"array_push", [&](int k) { micro.array_push_values(k); }},
      {"struct_of_4", [&](int k) { micro.struct_of_four(k / 10); }},
      {"string_concat", [&](int k) { micro.string_concat(k); }},
      {"number_to_string", [&](int k) { micro.number_to_string(k); }},
      {"variable_by_name", [&](int k) { micro.variable_by_name(k); }}};
  std::printf("\n%-20s %10s %14s %14s %16s\n", "operation", "ns", "luajit -joff", "luajit", "of interpreted");
  for (const auto& [name, run] : rows) {
    const bool tenth = std::string(name) == "struct_of_4";
    const double time = nanoseconds(n, run) * (tenth ? 10 : 1);
    const double lua = interpreted.count(name) > 0 ? interpreted.at(name) : 0, jit = compiled.count(name) > 0 ? compiled.at(name) : 0;
    std::printf("%-20s %10.1f %14.1f %14.1f %16.2f\n", name, time, lua, jit, lua > 0 ? time / lua : 0);
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::string problem;
  host::GameOptions options;
  options.data = data::open_data_file(ARENA_DATA_FILE, problem);
  options.room = "rTest";
  options.has_seed = true;
  if (options.data != nullptr) {
    const host::Started started = host::Game::start(std::move(options));
    problem = started.problem;
    if (const auto& game = started.game; game != nullptr) {
      const int frames = argc > 1 ? std::atoi(argv[1]) : 240;
      std::printf("%s%-10s %10s %10s %10s %10s %12s %12s %12s %12s %10s %10s %10s\n", look_up_names().report().c_str(), "crowd", "logic ms",
                  "frame ms", "plain ms", "luajit ms", "logic/plain", "logic/lua", "pause", "pause max", "memory", "snapshot", "restore");
      print_crowd("1,000", run_crowd(*game, 1000, frames));
      const Crowd large = run_crowd(*game, 10000, frames);
      print_crowd("10,000", large);
      bench::run_fights(*game, frames, large.plain / kPlainOnReference);
      world().enter_room(2);
      run_micro();
      bench::run_services();
      bench::run_seeking(ARENA_DATA_FILE);
      bench::run_elementary();
      return 0;
    }
  }
  std::fprintf(stderr, "bench: %s\n", problem.c_str());
  return 1;
}
