#pragma once
// What keeps values beyond a frame and is no heap object: lists, grids, maps, the statics of scripts, the console's last value. One
// visit function of a holder serves the collector, the state hash and the snapshot.
#include "runtime/arrays_structs/object.h"

namespace arena {

class Holder {
 public:
  Holder();
  virtual ~Holder();
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  virtual void visit_values(ValueVisitor& visitor) = 0;

  // Every living holder, in order of creation.
  static void visit_all(ValueVisitor& visitor);

 private:
  Holder* previous_;
  Holder* next_ = nullptr;
};

}  // namespace arena
