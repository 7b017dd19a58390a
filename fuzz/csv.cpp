// Any text is a table or a sentence; a table that is written is the same table.
#include "engine/formats/csv.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace arena::formats;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  Table table, again;
  std::string problem, written;
  if (!parse_csv(text, ',', table, problem)) {
    require(problem.starts_with("line "));
    return 0;
  }
  for (const auto& row : table.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) written += ',';
      put_csv(written, row[i], ',', row.size() == 1);
    }
    written += "\r\n";
  }
  require(parse_csv(written, ',', again, problem));
  require(again.rows == table.rows);
  return 0;
}
