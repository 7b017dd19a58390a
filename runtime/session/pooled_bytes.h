#pragma once
// Bytes among the session's own blocks, which the hash of a state sees as one text: files that are open, buffers.
#include <string_view>
#include <tuple>

#include "runtime/session/pooled.h"
#include "runtime/session/state.h"

namespace arena {

struct PooledBytes {
  PooledText bytes;

  std::string_view view() const { return bytes; }
  void visit_content(StateVisitor& visitor) { visitor.text(view()); }
  static constexpr auto fields() { return std::tuple(derived("bytes", &PooledBytes::bytes)); }
};

}  // namespace arena
