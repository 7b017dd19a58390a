// JSON and CSV as scripts call them.
#define ARENA_DEFINES_BUILTINS

#include "engine/documents/json_values.h"
#include "engine/files/file_arguments.h"
#include "engine/files/game_files.h"
#include "engine/formats/csv.h"
#include "engine/formats/exact_numbers.h"
#include "runtime/builtins/container_arguments.h"
#include "runtime/builtins/implement.h"
#include "runtime/builtins/json.h"
#include "runtime/values/text.h"

namespace arena::documents {
namespace {

void report(const std::string& what) { report_error(messages::kFormat, current_builtin_name(), what); }

RValue parsed(std::string_view text, bool as_maps) {
  RValue value;
  std::string problem;
  if (!parse_json(text, as_maps, value, problem)) report(problem);
  return value;
}
RValue json_parse(std::string_view text) { return parsed(text, false); }
RValue json_parse_map(std::string_view text) { return parsed(text, true); }
std::string json_text(const RValue& value, bool in_lines) {
  std::string text, problem;
  if (write_json(value, in_lines, text, problem)) return text;
  report(problem);
  return "";
}

// A character of ASCII that is no part of quotes and lines; 0 after a report.
char separator_of(const std::optional<std::string_view>& wanted) {
  if (!wanted) return ',';
  if (wanted->size() == 1 && static_cast<unsigned char>((*wanted)[0]) < 128 &&
      std::string_view("\"\r\n").find((*wanted)[0]) == std::string_view::npos)
    return (*wanted)[0];
  report("a separator is one character, and no quote or end of a line");
  return 0;
}

std::int32_t grid_of(std::string_view text, char separator) {
  formats::Table table;
  std::string problem;
  if (separator == 0) return -1;
  if (!formats::parse_csv(text, separator, table, problem)) return report(problem), -1;
  std::size_t width = 0;
  for (const auto& row : table.rows) width = std::max(width, row.size());
  if (!check_array_length(static_cast<std::int64_t>(width) * static_cast<std::int64_t>(table.rows.size()))) return -1;
  const std::int32_t handle = ds_grids().create(static_cast<std::int32_t>(width), static_cast<std::int32_t>(table.rows.size()));
  DsGrid& grid = *ds_grids().find(handle);
  const RValue nothing = make_string("");
  for (std::int32_t row = 0; row < grid.height; ++row) {
    const std::vector<std::string>& values = table.rows[static_cast<std::size_t>(row)];
    for (std::int32_t column = 0; column < grid.width; ++column) {
      const std::size_t at = static_cast<std::size_t>(column);
      grid.set(column, row, at < values.size() ? make_string(values[at]) : nothing);
    }
  }
  return handle;
}
std::string text_of_grid(const DsGrid& grid, char separator) {
  std::string text;
  for (std::int32_t row = 0; row < grid.height && separator != 0; ++row) {
    for (std::int32_t column = 0; column < grid.width; ++column) {
      const RValue& value = grid.at(column, row);
      if (column > 0) text += separator;
      formats::put_csv(text, value.kind() == kNumber ? formats::exact_text(value.real) : to_text(value), separator, grid.width == 1);
      if (!check_text_length(text.size())) return "";
    }
    text += "\r\n";
  }
  return text;
}

std::int32_t csv_parse(std::string_view text, std::optional<std::string_view> separator) { return grid_of(text, separator_of(separator)); }
std::int32_t csv_load(FileName name, std::optional<std::string_view> separator) {
  const char between = separator_of(separator);
  const std::optional<std::string> text = files::read_file(name.name);
  return text ? grid_of(*text, between) : -1;
}
std::string csv_text(GridArgument a, std::optional<std::string_view> separator) { return text_of_grid(*a.grid, separator_of(separator)); }
bool csv_save(GridArgument a, FileName name, std::optional<std::string_view> separator) {
  const char between = separator_of(separator);
  return between != 0 && files::save_file(name.name, text_of_grid(*a.grid, between));
}

constexpr Implementation kRows[] = {
    implement<script::json_parse, json_parse>, implement<script::json_parse_map, json_parse_map>,
    implement<script::json_text, json_text>,   implement<script::csv_parse, csv_parse>,
    implement<script::csv_load, csv_load>,     implement<script::csv_text, csv_text>,
    implement<script::csv_save, csv_save>,
};
const BuiltinTable table("JSON and CSV",
                         "Numbers keep every bit, keys their order. What cannot be read is reported with its line and column.", kRows);

}  // namespace
}  // namespace arena::documents
