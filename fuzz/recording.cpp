// Any bytes are a recording, up to somewhere, or a sentence.
#include "engine/recording/recording.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  arena::recording::Recording read;
  std::string problem;
  const bool is_one = arena::recording::read_recording({reinterpret_cast<const char*>(data), size}, read, problem);
  require(is_one == problem.empty());
  return 0;
}

// The reader shares its file with who writes checkpoints; those need the whole engine, and a reader never asks for one.
namespace arena::host {
std::uint64_t hash_of(const std::vector<StateFigure>&) { std::abort(); }
}  // namespace arena::host
