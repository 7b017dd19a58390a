#include "runtime/arrays_structs/holder.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include "runtime/checks/assert.h"
#include "runtime/session/state.h"

namespace arena {
namespace {

struct Holders {
  std::vector<Holder*> all;
  void restart() {}
  static constexpr auto fields() { return std::tuple(derived("all", &Holders::all)); }
};
const StatePart<Holders> holders{PartLevel::kHeap, "holders"};

}  // namespace

Holder::Holder(Keeps keeps) : keeps_(keeps) { holders().all.push_back(this); }

// The youngest die first, mostly.
Holder::~Holder() {
  std::vector<Holder*>& all = holders().all;
  const auto place = std::find(all.rbegin(), all.rend(), this);
  ARENA_ASSERT(place != all.rend());
  all.erase(place.base() - 1);
}

void* Holder::operator new(std::size_t bytes) { return allocate_block(bytes); }
void Holder::operator delete(void* holder, std::size_t bytes) { free_block(holder, bytes); }

void Holder::visit_all(ValueVisitor& visitor) {
  for (Holder* const holder : holders().all) holder->visit_values(visitor);
}

void Holder::let_go_of_tool_values() {
  for (Holder* const holder : holders().all) {
    if (holder->keeps_ == Keeps::kToolState) holder->let_go();
  }
}

}  // namespace arena
