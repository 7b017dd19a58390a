#include "runtime/session/snapshot.h"

#include "runtime/checks/assert.h"

namespace arena {

void Snapshot::take(const Session& of) {
  ARENA_ASSERT(of.is_at_rest());
  values_ = static_cast<const SessionValues&>(of);
  of.memory.save(image_);
  parts_.resize(of.part_count());
  for (std::size_t i = 0; i < parts_.size(); ++i) parts_[i] = of.part_at(i).save(std::move(parts_[i]));
}

void Snapshot::restore(Session& into) const {
  ARENA_ASSERT(into.is_at_rest() && parts_.size() == into.part_count());
  static_cast<SessionValues&>(into) = values_;
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    if (parts_[i] != nullptr) into.part_at(i).load(*parts_[i]);
  }
  into.memory.load(image_);
}

}  // namespace arena
