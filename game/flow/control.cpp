// The arena's controller: camera, interface, music, decals, the grid of enemies, and the way out.
#include "game/decals/stickers.h"
#include "game/flow/hud.h"
#include "game/support/camera.h"
#include "game/support/spatial_hash.h"
#include "toolkit/support/resolution.h"

namespace game {
extern const Script<void()> initDebug;
extern const Script<void()> updateDebug;
namespace {
const Variable play{"play"};
constexpr int kMostDecals = 50000;
}  // namespace
}  // namespace game

// Hooks for whoever debugs the game: empty on purpose.
SCRIPT(initDebug) {}
SCRIPT(updateDebug) {}

METHOD(void, oControl, updateWeaponUI) { rebuild_weapon_panel(); }

EVENT(oControl, Create_0) {
  initDebug();
  getTarnCamera()[init](oPlayer);
  window_set_cursor(kNoCursor);
  build_hud();
  global[decals] = Stickers.make(kMostDecals);
  global[music_player][play]();
  grid_clear();
  self[updateWeaponUI] = bind(self, oControl_updateWeaponUI);
}

EVENT(oControl, Step_1) {
  grid_clear();
  for (Instance enemy : with(oEnemy)) grid_insert(enemy[id]);
}

EVENT(oControl, Step_0) {
  getTarnResolutionManager()[update]();
  getTarnCamera()[update]();
  global[game_ui][update]();
  global[music_player][update]();
  updateDebug();
}

EVENT(oControl, Draw_0) { global[decals][DrawCamera](); }
EVENT(oControl, Draw_73) { getTarnCamera()[drawDebug](); }  // over everything in the room, when it is switched on
EVENT(oControl, Draw_64) { global[game_ui][render](); }
EVENT(oControl, KeyPress_27) { game_end(); }
EVENT(oControl, CleanUp_0) { global[decals][Destroy](); }
