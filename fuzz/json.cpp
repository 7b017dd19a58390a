// Any text is a value or a sentence with its place; a value that is written is read as the same text.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/documents/json_values.h"
#include "fuzz/require.h"
#include "runtime/arrays_structs/collector.h"
#include "runtime/program/names.h"
#include "runtime/session/session.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace arena;
  look_up_names();
  Session session;  // what is read lives in it
  RValue value, again;
  std::string problem, text, second;
  for (const bool as_maps : {false, true}) {
    if (!documents::parse_json({reinterpret_cast<const char*>(data), size}, as_maps, value, problem)) {
      require(!problem.empty());
      continue;
    }
    require(documents::write_json(value, as_maps, text, problem));
    require(documents::parse_json(text, as_maps, again, problem));
    require(documents::write_json(again, as_maps, second, problem));
    require(text == second);
  }
  value = again = RValue();
  return 0;
}
