#pragma once
// Plays the arena by pressing keys and moving the pointer like a person.
#include "apps/game_description.h"
#include "runtime/input/input_state.h"

namespace arena {
class CInstance;
}

namespace arena::autoplayer {

// It keeps away from enemies and its own grenades, shoots at the nearest enemy, collects what
// makes its gun better, chooses rewards, and begins anew after death.
class ArenaPlayer final : public apps::Autoplayer {
 public:
  void play() override;

 private:
  struct Point {
    double x = 0, y = 0;
  };
  void hold(int key, bool down);
  void hold_fire(bool down);
  void tap(int key, bool wanted);
  // The pointer moves like a hand: most of the way in a few frames.
  void move_pointer(PointerSpace space, double x, double y);
  void choose_reward(const CInstance* gun);
  void walk(const CInstance& player, const CInstance* goal);
  double danger_at(Point place, const CInstance* goal) const;
  void shoot(const CInstance& player, const CInstance* gun);

  bool held_[kKeys] = {};
  bool fires_ = false;
  PointerSpace space_ = PointerSpace::kWindow;
  Point pointer_;
  int direction_ = 0;  // of the walk: 0 stands still, 1 to 8 around the compass
  int waited_ = 0;     // frames in a room or on a screen that waits for a key
};

}  // namespace arena::autoplayer
