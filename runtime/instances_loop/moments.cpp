#include "runtime/instances_loop/moments.h"

#include <utility>

#include "runtime/session/session.h"

namespace arena {
namespace {

struct Moments {
  std::function<void(std::string_view)> listener;
};
const Part<Moments> part{PartLevel::kWorld, "moments"};

}  // namespace

void mark_moment(std::string_view text) {
  if (part().listener) part().listener(text);
}

void hear_moments(std::function<void(std::string_view)> listener) { part().listener = std::move(listener); }

}  // namespace arena
