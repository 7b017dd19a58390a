#pragma once
// The script call-stack: one frame on the native stack of every compiled function that runs, linked from the innermost outwards.
// Always true: `innermost_frame()` designates the frame of the function that is running, also after an exception passed through.
#include <cstdint>

#include "runtime/checks/assert.h"
#include "runtime/session/session.h"

namespace arena {

class WBObjectBase;

struct Frame {
  Frame* previous;
  const char* function;  // full name, as in the compiled function table
  std::int32_t line;     // source line of the statement that runs; 0 before the first
};

// What a running compiled function keeps besides: for whom it runs and for whom that was asked.
struct ScriptFrame : Frame {
  WBObjectBase* self;
  WBObjectBase* other;
  std::int64_t token;  // the owner token of arrays in its locals; negative, so that it is no object's serial
};

inline ScriptFrame* innermost_frame() { return session().innermost_frame; }

// How deep calls may nest, those of compiled functions and of built-in ones together. A count and not the native stack that is left, so
// that a runaway recursion ends at the same call on every machine.
inline constexpr int kDeepestCalls = 500;
[[noreturn]] void report_too_deep();

// One call more for the life of the scope.
class CallDepthScope {
 public:
  CallDepthScope() {
    if (session().call_depth >= kDeepestCalls) [[unlikely]]
      report_too_deep();
    ++session().call_depth;
  }
  ~CallDepthScope() {
    ARENA_ASSERT(session().call_depth > 0);
    --session().call_depth;
  }
  CallDepthScope(const CallDepthScope&) = delete;
  CallDepthScope& operator=(const CallDepthScope&) = delete;
};

// Opens a frame for the life of the scope.
class FrameScope : CallDepthScope, public ScriptFrame {
 public:
  FrameScope(const char* name, WBObjectBase* for_self, WBObjectBase* for_other)
      : ScriptFrame{{session().innermost_frame, name, 0}, for_self, for_other, --session().last_frame_token} {
    session().innermost_frame = this;
  }
  ~FrameScope() {
    ARENA_ASSERT(session().innermost_frame == this);
    session().innermost_frame = static_cast<ScriptFrame*>(previous);
  }
  FrameScope(const FrameScope&) = delete;
  FrameScope& operator=(const FrameScope&) = delete;
};

}  // namespace arena
