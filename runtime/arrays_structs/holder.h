#pragma once
// What keeps values beyond a frame and is no heap object: lists, grids, maps, the statics of scripts, the console's last value. One
// visit function of a holder serves the collector, the state hash and the snapshot.
#include <cstdint>

#include "runtime/arrays_structs/object.h"

namespace arena {

class Holder {
 public:
  // What a tool keeps (the console's last value) lives like the rest but is no part of the game: neither hashed nor in a snapshot.
  enum class Keeps : std::uint8_t { kGameState, kToolState };
  explicit Holder(Keeps keeps = Keeps::kGameState);
  virtual ~Holder();
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  virtual void visit_values(ValueVisitor& visitor) = 0;

  // Every living holder, in order of creation. Those of the runtime itself are made before the first game, so that a process's second
  // game meets the same order.
  static void visit_all(ValueVisitor& visitor);
  static void visit_game_state(ValueVisitor& visitor);

 private:
  Keeps keeps_;
  Holder* previous_;
  Holder* next_ = nullptr;
};

}  // namespace arena
