#pragma once
// What arrives from outside while the game goes on: files that were read, say. It enters through the input queue, and the events Async_N
// tell of it at the beginning of a frame, in the order in which it arrived. The variable `async_result` is then a struct about it that
// nobody can change.
#include <cstdint>

#include "runtime/input/input_state.h"
#include "runtime/values/value.h"

namespace arena {

// Numbers of the events.
inline constexpr std::int32_t kAsyncDialog = 1, kAsyncFile = 2;

// Who knows what arrived, one for each kind; static storage. `make` gives the struct, or undefined when nobody waits for it.
class AsyncSource {
 public:
  using Make = RValue (*)(const InputEvent& event);
  AsyncSource(std::int32_t of_kind, Make maker);
  const std::int32_t kind;
  const Make make;
  const AsyncSource* const next;
};

// The event's result is the current one for the life of the scope.
class AsyncResultScope {
 public:
  explicit AsyncResultScope(const InputEvent& event);
  ~AsyncResultScope();
  AsyncResultScope(const AsyncResultScope&) = delete;
  AsyncResultScope& operator=(const AsyncResultScope&) = delete;
  bool is_there() const;
};

// Undefined outside of these events.
RValue current_async_result();

}  // namespace arena
