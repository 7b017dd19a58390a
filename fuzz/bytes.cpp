// Base 64 and compressed data: anything is read or refused, and what was written comes back.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/formats/base64.h"
#include "engine/formats/compression.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace arena::formats;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  constexpr std::size_t kMost = 1 << 20;
  std::string problem;
  if (const auto read = from_base64(bytes, problem)) require(from_base64(base64(*read), problem) == read);
  require(from_base64(base64(bytes), problem) == bytes);
  if (const auto read = decompressed(bytes, kMost, problem)) require(read->size() <= kMost);
  require(decompressed(compressed(bytes), size, problem) == bytes);
  return 0;
}
