#include "runtime/arrays_structs/holder.h"

namespace arena {
namespace {
Holder* first = nullptr;
Holder* last = nullptr;
}  // namespace

Holder::Holder(Keeps keeps) : keeps_(keeps), previous_(last) {
  if (last != nullptr) {
    last->next_ = this;
  } else {
    first = this;
  }
  last = this;
}

Holder::~Holder() {
  if (previous_ != nullptr) {
    previous_->next_ = next_;
  } else {
    first = next_;
  }
  if (next_ != nullptr) {
    next_->previous_ = previous_;
  } else {
    last = previous_;
  }
}

void Holder::visit_all(ValueVisitor& visitor) {
  for (Holder* holder = first; holder != nullptr; holder = holder->next_) holder->visit_values(visitor);
}

void Holder::visit_game_state(ValueVisitor& visitor) {
  for (Holder* holder = first; holder != nullptr; holder = holder->next_) {
    if (holder->keeps_ == Keeps::kGameState) holder->visit_values(visitor);
  }
}

}  // namespace arena
