#pragma once
// Values as text and back: JSON, and CSV for grids.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(csv_load, GridNumber(SaveName, Optional<Text>), "name, separator",
        "A new grid of texts from a file, as csv_parse; -1 when there is none.");
BUILTIN(csv_parse, GridNumber(Text, Optional<Text>), "text, separator",
        "A new grid of texts, a row for each line; values are apart by commas, or by another character. Short lines end in empty texts.");
BUILTIN(csv_save, Flag(GridHandle, SaveName, Optional<Text>), "grid, name, separator",
        "Saves a grid as a file, as csv_text; false when nothing can be written.");
BUILTIN(csv_text, Text(GridHandle, Optional<Text>), "grid, separator", "The grid's values as lines of text, numbers exactly.");

BUILTIN(json_parse, Any(Text), "text",
        "The value that a JSON text stands for: structs and arrays; whole numbers are int64, those with a point or an exponent numbers.");
BUILTIN(json_parse_map, Any(Text), "text",
        "As json_parse, with maps for structs and lists for arrays, as references that the ds functions take.");
BUILTIN(json_text, Text(Any, Or<Flag, false>), "value, in_lines",
        "The value as JSON, on one line or indented. References to maps and lists are written with what they hold.");

}  // namespace arena::script
