#pragma once
// Tables as text: a row a line, values apart by a separator; values with separators, quotes or ends of lines stand in quotes, and a quote
// in them twice.
#include <string>
#include <string_view>
#include <vector>

namespace arena::formats {

struct Table {
  std::vector<std::vector<std::string>> rows;
};

// Lines end as on any system; a mark of UTF-8 at the beginning is passed over; an empty line is a row of one empty text, but for the last.
// False with a sentence and the place in `problem` for a quote that never ends, or for text behind one.
bool parse_csv(std::string_view text, char separator, Table& into, std::string& problem);
// One value of a line.
void put_csv(std::string& out, std::string_view value, char separator, bool is_alone);

}  // namespace arena::formats
