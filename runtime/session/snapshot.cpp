#include "runtime/session/snapshot.h"

namespace arena {

void Snapshot::take(const Session& of) {
  values_ = of;
  of.memory.save(image_);
  parts_.resize(of.part_count());
  for (std::size_t i = 0; i < parts_.size(); ++i) parts_[i] = of.part_at(i).save(std::move(parts_[i]));
}

void Snapshot::restore(Session& into) const {
  static_cast<SessionValues&>(into) = values_;
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    if (parts_[i] != nullptr) into.part_at(i).load(*parts_[i]);
  }
  into.memory.load(image_);
}

}  // namespace arena
