// The arena with faults in it: a program of the tests alone. The player's own data names a key for each fault (crash_test.cpp adds them);
// pressed in the middle of a fight, it is an input like any other, so that a recording holds it.
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "apps/game_description.h"
#include "arena/assets.h"
#include "runtime/input/input_state.h"
#include "runtime/instances_loop/object_type.h"
#include "runtime/script.h"

namespace game {
namespace {

constexpr int kFight = 3;  // enemies

const Variable never_set{"never_set"};

bool is_fighting() { return instance_number(oEnemy) >= kFight; }

// What no compiler may reason away.
volatile int* volatile nowhere = nullptr;
volatile int depth = 0;

[[gnu::noinline]] __attribute__((no_sanitize("address", "undefined"))) void write_nowhere() { *nowhere = 1; }
[[gnu::noinline]] int descend() {
  volatile char row[1024];
  row[static_cast<unsigned>(depth) % 1024] = 1;
  depth = depth + 1;
  return depth < 0 ? 0 : descend() + row[0];
}
[[gnu::noinline]] void fail() { throw std::runtime_error("no way on"); }

}  // namespace
}  // namespace game

EVENT(oPlayer, KeyPress_49) {
  if (is_fighting()) self[x] = self[never_set];
}
EVENT(oPlayer, KeyPress_50) {
  if (is_fighting()) write_nowhere();
}
EVENT(oPlayer, KeyPress_51) {
  if (is_fighting()) std::abort();
}
EVENT(oPlayer, KeyPress_52) {
  if (is_fighting()) fail();
}
EVENT(oPlayer, KeyPress_53) {
  if (is_fighting()) depth = descend();
}
EVENT(oPlayer, KeyPress_54) {
  if (is_fighting()) std::raise(SIGFPE);
}
EVENT(oPlayer, KeyPress_55) {
  if (is_fighting()) __builtin_trap();
}

namespace arena::apps {
namespace {

// Presses the key that ARENA_FAULT names, once a fight goes on.
class FaultyPlayer final : public Autoplayer {
 public:
  void play() override {
    player_->play();
    const char* const key = std::getenv("ARENA_FAULT");
    if (key == nullptr || ++frames_ < 450 || object_types().at(object_types().find("oEnemy")).live_count < game::kFight) return;
    push_key(std::atoi(key), true);
    frames_ = INT32_MIN;
  }

 private:
  std::unique_ptr<Autoplayer> player_ = make_autoplayer();
  int frames_ = 0;
};

std::unique_ptr<Autoplayer> make_faulty_player() { return std::make_unique<FaultyPlayer>(); }

}  // namespace

const GameDescription& game_description() {
  static const GameDescription description{"arena_faults", "Arena with faults", "1.0", make_faulty_player};
  return description;
}

}  // namespace arena::apps
