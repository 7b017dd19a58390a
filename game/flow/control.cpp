// The arena's controller: camera, the grid of enemies, and the way out.
#include "game/support/camera.h"
#include "game/support/spatial_hash.h"

namespace arena::game {
extern const Script<Value()> initDebug;
extern const Script<Value()> updateDebug;
namespace {
const Builtin window_set_cursor{"window_set_cursor"}, game_end{"game_end"};
constexpr int kNoCursor = -1;
}  // namespace
}  // namespace arena::game

// Hooks for whoever debugs the game: empty on purpose.
SCRIPT(initDebug) { return undefined; }
SCRIPT(updateDebug) { return undefined; }

EVENT(oControl, Create_0) {
  initDebug();
  getTarnCamera()[init](oPlayer);
  window_set_cursor(kNoCursor);
  grid_clear();
}

EVENT(oControl, Step_1) {
  grid_clear();
  for (Instance enemy : with(oEnemy)) grid_insert(enemy[id]);
}

EVENT(oControl, Step_0) {
  getTarnCamera()[update]();
  updateDebug();
}

EVENT(oControl, KeyPress_27) { game_end(); }
