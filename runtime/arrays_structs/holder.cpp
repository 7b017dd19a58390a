#include "runtime/arrays_structs/holder.h"

#include "runtime/session/session.h"

namespace arena {
namespace {

struct Holders {
  Holder* first = nullptr;
  Holder* last = nullptr;
};
const Part<Holders> holders{PartLevel::kHeap, "holders"};

}  // namespace

Holder::Holder(Keeps keeps) : keeps_(keeps), previous_(holders().last) {
  (previous_ != nullptr ? previous_->next_ : holders().first) = this;
  holders().last = this;
}

Holder::~Holder() {
  (previous_ != nullptr ? previous_->next_ : holders().first) = next_;
  (next_ != nullptr ? next_->previous_ : holders().last) = previous_;
}

void Holder::visit_all(ValueVisitor& visitor) {
  for (Holder* holder = holders().first; holder != nullptr; holder = holder->next_) holder->visit_values(visitor);
}

void Holder::visit_game_state(ValueVisitor& visitor) {
  for (Holder* holder = holders().first; holder != nullptr; holder = holder->next_) {
    if (holder->keeps_ == Keeps::kGameState) holder->visit_values(visitor);
  }
}

}  // namespace arena
