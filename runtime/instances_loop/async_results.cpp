#include "runtime/instances_loop/async_results.h"

#include "runtime/arrays_structs/struct.h"
#include "runtime/session/session.h"

namespace arena {
namespace {

const AsyncSource* first = nullptr;

// Only while an event runs: nothing of it is left between two frames.
const Part<RValue> result{PartLevel::kWorld, "asynchronous result"};

}  // namespace

AsyncSource::AsyncSource(std::int32_t of_kind, Make maker) : kind(of_kind), make(maker), next(first) { first = this; }

AsyncResultScope::AsyncResultScope(const InputEvent& event) {
  for (const AsyncSource* source = first; source != nullptr; source = source->next) {
    if (source->kind == event.value) result() = source->make(event);
  }
  if (PropertyObject* const made = property_object(result()); made != nullptr) freeze(*made);
}
AsyncResultScope::~AsyncResultScope() { result() = RValue(); }
bool AsyncResultScope::is_there() const { return result().is_object(); }

RValue current_async_result() { return result(); }

}  // namespace arena
