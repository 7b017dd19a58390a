#pragma once
// The drawing calls that game code made in the last frame, kept while one of these lives and until the next one begins. They are kept raw:
// JSON is made when somebody asks.
#include "engine/console/request.h"

namespace arena::console {

class FrameDrawCalls {
 public:
  // Nobody can ask about a frame that another one follows at once: unless it `is_asked_about` its calls are kept only from where the game
  // ends, for then no other follows.
  explicit FrameDrawCalls(bool is_asked_about);
  ~FrameDrawCalls();
  FrameDrawCalls(const FrameDrawCalls&) = delete;
  FrameDrawCalls& operator=(const FrameDrawCalls&) = delete;
};

json draw_calls_json();

}  // namespace arena::console
