#include "runtime/session/snapshot.h"

#include "runtime/checks/assert.h"
#include "runtime/memory/held_bytes.h"

namespace arena {

void Snapshot::take(const Session& of, const Snapshot* earlier) {
  ARENA_ASSERT(of.is_at_rest() && earlier != this);
  ARENA_ASSERT(earlier == nullptr || earlier->parts_.size() == of.part_count());
  values_ = static_cast<const SessionValues&>(of);
  of.memory.save(image_, earlier != nullptr ? &earlier->image_ : nullptr);
  parts_.resize(of.part_count());
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    parts_[i] = of.part_at(i).save(std::move(parts_[i]), earlier != nullptr ? earlier->parts_[i].get() : nullptr);
  }
}

void Snapshot::restore(Session& into) const {
  ARENA_ASSERT(into.is_at_rest() && parts_.size() == into.part_count());
  static_cast<SessionValues&>(into) = values_;
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    if (parts_[i] != nullptr) into.part_at(i).load(*parts_[i]);
  }
  into.memory.load(image_);
  for (std::size_t i = 0; i < parts_.size(); ++i) into.part_at(i).after_load();
}

void Snapshot::count_held(HeldBytes& into) const {
  image_.count_held(into);
  for (const std::unique_ptr<SavedPart>& part : parts_) {
    if (part != nullptr) part->count_held(into);
  }
}

std::size_t Snapshot::bytes() const {
  HeldBytes held(HeldBytes::Of::kOwn);
  count_held(held);
  return held.total();
}

std::size_t Snapshot::bytes_of(std::span<const Snapshot* const> all) {
  HeldBytes held(HeldBytes::Of::kTogether);
  for (const Snapshot* const each : all) each->count_held(held);
  return held.total();
}

}  // namespace arena
