#include "engine/formats/ini_document.h"

#include <algorithm>

namespace arena::formats {
namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

bool is_blank(char each) { return each == ' ' || each == '\t'; }
bool is_control(char each) { return static_cast<unsigned char>(each) < ' ' || each == 127; }
bool has_control(std::string_view text) { return std::any_of(text.begin(), text.end(), is_control); }
bool has_blank_ends(std::string_view text) { return !text.empty() && (is_blank(text.front()) || is_blank(text.back())); }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

bool is_rest_of_line(std::string_view text) {
  const std::string_view rest = trimmed(text);
  return rest.empty() || rest.front() == ';' || rest.front() == '#';
}

int hex_digit(char each) {
  return each >= '0' && each <= '9'   ? each - '0'
         : each >= 'a' && each <= 'f' ? each - 'a' + 10
         : each >= 'A' && each <= 'F' ? each - 'A' + 10
                                      : -1;
}

// Where a comment begins behind a plain value.
std::size_t comment_in(std::string_view text) {
  if (text.starts_with(';')) return 0;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] == ';' && is_blank(text[at - 1])) return at;
  }
  return text.size();
}

// Reads \"...". How many characters that took; 0 when it is not one.
std::size_t read_escaped(std::string_view text, std::string& into) {
  into.clear();
  for (std::size_t at = 2; at < text.size(); ++at) {
    if (text[at] == '"') return at + 1;
    if (text[at] != '\\') {
      into += text[at];
      continue;
    }
    if (++at >= text.size()) return 0;
    switch (text[at]) {
      case 'n': into += '\n'; break;
      case 'r': into += '\r'; break;
      case 't': into += '\t'; break;
      case '"':
      case '\\': into += text[at]; break;
      case 'x': {
        if (at + 2 >= text.size() || hex_digit(text[at + 1]) < 0 || hex_digit(text[at + 2]) < 0) return 0;
        into += static_cast<char>(hex_digit(text[at + 1]) * 16 + hex_digit(text[at + 2]));
        at += 2;
        break;
      }
      default: return 0;
    }
  }
  return 0;
}

std::string escaped(std::string_view value) {
  std::string text = "\\\"";
  for (const char each : value) {
    switch (each) {
      case '\n': text += "\\n"; break;
      case '\r': text += "\\r"; break;
      case '\t': text += "\\t"; break;
      case '"': text += "\\\""; break;
      case '\\': text += "\\\\"; break;
      default:
        if (is_control(each)) {
          text += "\\x";
          text += "0123456789ABCDEF"[static_cast<unsigned char>(each) >> 4];
          text += "0123456789ABCDEF"[each & 15];
        } else {
          text += each;
        }
    }
  }
  return text + '"';
}

// In front of what follows on its line.
std::string written(std::string_view value, std::string_view rest_of_line = "") {
  const bool has_quote = value.find('"') != std::string_view::npos;
  const bool needs_quotes = has_blank_ends(value) || comment_in(value) < value.size() || trimmed(rest_of_line).starts_with('#');
  if (has_control(value) || value.starts_with('"') || value.starts_with("\\\"") || (needs_quotes && has_quote)) return escaped(value);
  return needs_quotes ? '"' + std::string(value) + '"' : std::string(value);
}

}  // namespace

IniDocument::IniDocument(std::string_view text) {
  if (text.starts_with(kMark)) {
    mark_ = kMark;
    text.remove_prefix(kMark.size());
  }
  while (!text.empty()) {
    const std::size_t newline = std::min(text.find('\n'), text.size() - 1), end = text[newline] == '\n' ? newline : text.size();
    const bool has_return = end < text.size() && end > 0 && text[end - 1] == '\r';
    const std::size_t length = has_return ? end - 1 : end;
    Line line = read_line(text.substr(0, length));
    line.end = text.substr(length, newline + 1 - length);
    if (lines_.empty() && !line.end.empty()) line_end_ = line.end;
    lines_.push_back(std::move(line));
    text.remove_prefix(newline + 1);
  }
}

IniDocument::Line IniDocument::read_line(std::string_view text) {
  Line line;
  line.text = text;
  const std::string_view content = trimmed(text);
  if (content.empty() || content.front() == ';' || content.front() == '#') return line;
  if (content.front() == '[') {
    const std::size_t close = content.find(']');
    if (close == std::string_view::npos) return line;
    line.kind = Line::Kind::kSection;
    line.name = trimmed(content.substr(1, close - 1));
    return line;
  }
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos || trimmed(text.substr(0, equals)).empty()) return line;
  line.kind = Line::Kind::kKey;
  line.name = trimmed(text.substr(0, equals));
  read_key(line, equals);
  return line;
}

void IniDocument::read_key(Line& line, std::size_t equals) {
  const std::string_view text = line.text;
  std::size_t begin = equals + 1;
  while (begin < text.size() && is_blank(text[begin])) ++begin;
  const std::string_view rest = text.substr(begin);
  line.value_begin = begin;
  if (rest.starts_with("\\\"")) {
    const std::size_t taken = read_escaped(rest, line.value);
    line.value_end = begin + taken;
    if (taken > 0 && is_rest_of_line(rest.substr(taken))) return;
  }
  if (rest.starts_with('"')) {
    const std::size_t close = rest.find('"', 1);
    if (close != std::string_view::npos && is_rest_of_line(rest.substr(close + 1))) {
      line.value = rest.substr(1, close - 1);
      line.value_end = begin + close + 1;
      return;
    }
  }
  const std::string_view plain = trimmed(rest.substr(0, comment_in(rest)));
  line.value = plain;
  line.value_end = begin + plain.size();
}

std::string IniDocument::text() const {
  std::string all = mark_;
  for (const Line& line : lines_) all.append(line.text).append(line.end);
  return all;
}

template <class Use>
void IniDocument::each_line_of(std::string_view section, Use use) const {
  bool is_inside = section.empty();
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].kind == Line::Kind::kSection) {
      is_inside = lines_[i].name == section;
    } else if (is_inside) {
      use(i);
    }
  }
}

std::size_t IniDocument::find(std::string_view section, std::string_view key) const {
  std::size_t found = kNone;
  each_line_of(section, [&](std::size_t at) {
    if (lines_[at].kind == Line::Kind::kKey && lines_[at].name == key) found = at;
  });
  return found;
}

std::optional<std::string> IniDocument::get(std::string_view section, std::string_view key) const {
  const std::size_t found = find(section, key);
  return found == kNone ? std::nullopt : std::optional(lines_[found].value);
}

void IniDocument::insert(std::size_t at, const std::string& text) {
  if (at > 0 && lines_[at - 1].end.empty()) lines_[at - 1].end = line_end_;
  Line line = read_line(text);
  line.end = line_end_;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
}

void IniDocument::set(std::string_view section, std::string_view key, std::string_view value) {
  if (const std::size_t found = find(section, key); found != kNone) {
    Line& line = lines_[found];
    const std::string_view text = line.text, after = text.substr(line.value_end);
    const char* const gap = after.empty() || is_blank(after.front()) ? "" : " ";
    Line changed = read_line(std::string(text.substr(0, line.value_begin)) + written(value, after) + gap + std::string(after));
    changed.end = line.end;
    line = std::move(changed);
    return;
  }
  // Behind the last line of the section that says something.
  std::size_t place = section.empty() ? 0 : kNone;
  bool is_inside = section.empty();
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    if (lines_[i].kind == Line::Kind::kSection) is_inside = lines_[i].name == section;
    if (is_inside && !trimmed(lines_[i].text).empty()) place = i + 1;
  }
  if (place == kNone) {
    if (!lines_.empty() && !trimmed(lines_.back().text).empty()) insert(lines_.size(), "");
    insert(lines_.size(), '[' + std::string(section) + ']');
    place = lines_.size();
  }
  insert(place, std::string(key) + " = " + written(value));
}

bool IniDocument::has_section(std::string_view section) const {
  if (section.empty()) return !keys(section).empty();
  return std::any_of(lines_.begin(), lines_.end(),
                     [&](const Line& line) { return line.kind == Line::Kind::kSection && line.name == section; });
}

std::vector<std::string> IniDocument::sections() const {
  std::vector<std::string> names;
  if (has_section("")) names.emplace_back();
  for (const Line& line : lines_) {
    if (line.kind == Line::Kind::kSection && !line.name.empty() && std::find(names.begin(), names.end(), line.name) == names.end())
      names.push_back(line.name);
  }
  return names;
}

std::vector<std::string> IniDocument::keys(std::string_view section) const {
  std::vector<std::string> names;
  each_line_of(section, [&](std::size_t at) {
    const Line& line = lines_[at];
    if (line.kind == Line::Kind::kKey && std::find(names.begin(), names.end(), line.name) == names.end()) names.push_back(line.name);
  });
  return names;
}

void IniDocument::remove_key(std::string_view section, std::string_view key) {
  for (std::size_t found = find(section, key); found != kNone; found = find(section, key))
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(found));
}

void IniDocument::remove_section(std::string_view section) {
  bool is_inside = section.empty();
  std::erase_if(lines_, [&](const Line& line) {
    if (line.kind == Line::Kind::kSection) is_inside = line.name == section;
    return is_inside;
  });
}

std::string_view IniDocument::flaw_of_section(std::string_view name) {
  if (has_control(name) || name.find(']') != std::string_view::npos) return "the name of a section has no ] and stands on one line";
  return has_blank_ends(name) ? "the name of a section has no blanks at its ends" : "";
}

std::string_view IniDocument::flaw_of_key(std::string_view name) {
  if (name.empty()) return "the name of a key cannot be empty";
  if (has_control(name) || name.find('=') != std::string_view::npos) return "the name of a key has no = and stands on one line";
  if (name.front() == '[' || name.front() == ';' || name.front() == '#') return "the name of a key does not begin with [, ; or #";
  if (name.starts_with(kMark)) return "the name of a key does not begin with a mark of UTF-8";
  return has_blank_ends(name) ? "the name of a key has no blanks at its ends" : "";
}

}  // namespace arena::formats
