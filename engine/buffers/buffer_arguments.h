#pragma once
// A buffer as an argument of a built-in function: one that lives, or the call ends with a report.
#include "engine/buffers/buffer.h"
#include "runtime/builtins/kinds.h"
#include "runtime/variables_calls/arguments.h"

namespace arena {

struct BufferArgument {
  buffers::Buffer* buffer;
  std::int32_t handle;
};

namespace buffers {
BufferArgument check_buffer(const CallContext& call, int at);
// Bytes from `at` on, so many or with -1 all that follow; reports when the buffer has them not.
bool range_of(const Buffer& buffer, double at, double size, std::string_view& into);
}  // namespace buffers

template <>
struct Argument<BufferArgument> {
  static constexpr bool consumes = true;
  static BufferArgument get(const CallContext& call, int at) { return buffers::check_buffer(call, at); }
};

}  // namespace arena
