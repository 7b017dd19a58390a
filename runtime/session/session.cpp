#include "runtime/session/session.h"

#include <algorithm>
#include <cstring>

#include "runtime/checks/assert.h"
#include "runtime/session/state_visitor.h"

namespace arena {
namespace {

PartKind* first_kind = nullptr;

// In order of making; the order of the chain is the linker's.
const std::vector<PartKind*>& kinds() {
  static const std::vector<PartKind*> ordered = [] {
    std::vector<PartKind*> all;
    for (PartKind* kind = first_kind; kind != nullptr; kind = kind->next) all.push_back(kind);
    std::sort(all.begin(), all.end(), [](const PartKind* a, const PartKind* b) {
      return a->level != b->level ? a->level < b->level : std::strcmp(a->name, b->name) < 0;
    });
    for (std::size_t i = 0; i < all.size(); ++i) all[i]->place = i;
    return all;
  }();
  return ordered;
}

}  // namespace

PartKind::PartKind(PartLevel of, const char* called, Make how) : level(of), name(called), make(how), next(first_kind) { first_kind = this; }

Session::Session() {
  detail::current_session = this;
  parts_.reserve(kinds().size());
  for (const PartKind* kind : kinds()) parts_.push_back(kind->make());
}

Session::~Session() {
  Session* const other = detail::current_session != this ? detail::current_session : nullptr;
  detail::current_session = this;
  ARENA_ASSERT(is_at_rest());
  while (!parts_.empty()) parts_.pop_back();
  delete[] containers.entries;
  detail::current_session = other;
}

void Session::visit(StateVisitor& visitor) {
  for (std::size_t i = 0; i < parts_.size(); ++i) {
    visitor.group(kinds()[i]->name);
    parts_[i]->visit(visitor);
  }
}

void Session::restart_parts() {
  for (const std::unique_ptr<SessionPart>& part : parts_) part->restart();
}

}  // namespace arena
