#include "engine/formats/csv.h"

namespace arena::formats {
namespace {

class Reader {
 public:
  Reader(std::string_view text, char separator, Table& into) : text_(text), separator_(separator), to_(into) {
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
    line_begin_ = at_;
  }

  bool run(std::string& problem) {
    while (at_ < text_.size()) {
      to_.rows.emplace_back();
      do {
        if (!value(to_.rows.back().emplace_back(), problem)) return false;
      } while (takes(separator_));
      end_line();
    }
    return true;
  }

 private:
  bool is_at_end_of_line() const { return at_ >= text_.size() || text_[at_] == '\n' || text_[at_] == '\r'; }
  bool takes(char wanted) {
    if (at_ >= text_.size() || text_[at_] != wanted) return false;
    ++at_;
    return true;
  }
  void end_line() {
    takes('\r');
    takes('\n');
    ++line_;
    line_begin_ = at_;
  }
  std::string place(std::size_t line, std::size_t column) const {
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
  }
  bool value(std::string& into, std::string& problem) {
    if (!takes('"')) {
      while (!is_at_end_of_line() && text_[at_] != separator_) into += text_[at_++];
      return true;
    }
    const std::size_t line = line_, column = at_ - line_begin_;
    for (;;) {
      if (at_ >= text_.size()) return problem = place(line, column) + "the quote never ends", false;
      const char each = text_[at_++];
      if (each == '"' && !takes('"')) break;
      into += each;
      if (each == '\n' || (each == '\r' && (at_ >= text_.size() || text_[at_] != '\n'))) {
        ++line_;
        line_begin_ = at_;
      }
    }
    if (is_at_end_of_line() || text_[at_] == separator_) return true;
    return problem = place(line_, at_ - line_begin_ + 1) + "text behind the end of a quote", false;
  }

  std::string_view text_;
  char separator_;
  Table& to_;
  std::size_t at_ = 0, line_begin_ = 0, line_ = 1;
};

}  // namespace

bool parse_csv(std::string_view text, char separator, Table& into, std::string& problem) {
  into.rows.clear();
  return Reader(text, separator, into).run(problem);
}

void put_csv(std::string& out, std::string_view value, char separator, bool is_alone) {
  const bool is_plain = value.find_first_of("\"\r\n") == std::string_view::npos && value.find(separator) == std::string_view::npos &&
                        !value.starts_with("\xEF\xBB\xBF") && !(value.empty() && is_alone);
  if (is_plain) {
    out += value;
    return;
  }
  out += '"';
  for (const char each : value) {
    if (each == '"') out += '"';
    out += each;
  }
  out += '"';
}

}  // namespace arena::formats
