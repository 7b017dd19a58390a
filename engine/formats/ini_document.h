#pragma once
// Settings as a text that people read and change: keys with values in sections. What is not changed stays as it stands, to the byte:
// comments, blanks, the order, ends of lines, and lines that mean nothing here.
//
//   ; a comment, as is # at the beginning of a line
//   [video]
//   width = 1280 ; a blank and a semicolon begin a comment, too
//   path = "  C:\games  "      quotes keep blanks at the ends; what is in them is meant as it stands
//   note = \"two\nlines"       what cannot stand on a line: \n \r \t \" \\ \x1F
//
// Sections that come again go on. Of keys that come again the last one counts. Names are told apart by their case.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace arena::formats {

class IniDocument {
 public:
  IniDocument() = default;
  explicit IniDocument(std::string_view text);

  std::string text() const;
  std::optional<std::string> get(std::string_view section, std::string_view key) const;
  // The names must have no flaw.
  void set(std::string_view section, std::string_view key, std::string_view value);
  bool has_section(std::string_view section) const;
  // "" are the keys before the first section.
  std::vector<std::string> sections() const;
  std::vector<std::string> keys(std::string_view section) const;
  void remove_key(std::string_view section, std::string_view key);
  void remove_section(std::string_view section);

  // Why there can be no such name; "" when there can.
  static std::string_view flaw_of_section(std::string_view name);
  static std::string_view flaw_of_key(std::string_view name);

 private:
  struct Line {
    enum class Kind : unsigned char { kOther, kSection, kKey } kind = Kind::kOther;
    std::string text;                            // without its end
    std::string end;                             // "\n", "\r\n"; "" of a last one
    std::string name;                            // of a section or key
    std::string value;                           // as it is meant
    std::size_t value_begin = 0, value_end = 0;  // where it stands in the text
  };
  static Line read_line(std::string_view text);
  static void read_key(Line& line, std::size_t equals);
  // Calls use(place) for each line of the section's blocks, the heads left out.
  template <class Use>
  void each_line_of(std::string_view section, Use use) const;
  std::size_t find(std::string_view section, std::string_view key) const;
  void insert(std::size_t at, const std::string& text);

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<Line> lines_;
  std::string line_end_ = "\n";  // of new lines
  std::string mark_;             // of UTF-8, at the beginning
};

}  // namespace arena::formats
