// Texts, in UTF-8.
#define ARENA_DEFINES_BUILTINS

#include "runtime/builtins/texts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include "runtime/builtins/implement.h"
#include "runtime/values/elementary.h"
#include "runtime/values/number_text.h"
#include "runtime/values/text.h"

namespace arena {
namespace {

bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::int32_t characters(std::string_view text) {
  return static_cast<std::int32_t>(std::count_if(text.begin(), text.end(), [](char byte) { return !continues(byte); }));
}

// The byte at which character `position` (from 1) starts; the end when there are fewer.
std::size_t byte_at(std::string_view text, std::int32_t position) {
  std::size_t at = 0;
  for (std::int32_t passed = 1; passed < position && at < text.size(); ++passed) {
    ++at;
    while (at < text.size() && continues(text[at])) ++at;
  }
  return at;
}

std::string_view piece(std::string_view text, std::int32_t from, std::int32_t count) {
  if (count <= 0) return {};
  const std::size_t start = byte_at(text, std::max(from, 1));
  return text.substr(start, byte_at(text.substr(start), count < INT32_MAX ? count + 1 : count));
}

std::string replaced(std::string_view text, std::string_view part, std::string_view by, bool all) {
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = 0; !part.empty() && (at = text.find(part, from)) != std::string_view::npos;) {
    result.append(text.substr(from, at - from)).append(by);
    from = at + part.size();
    if (!all) break;
  }
  return result.append(text.substr(from));
}

template <class Change>
std::string mapped(std::string_view text, Change change) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), change);
  return result;
}

// "{0}" and so on are replaced by the arguments.
std::string string_of(const RValue& value, Rest values) {
  std::string text = to_text(value);
  for (std::size_t i = 0; i < values.size(); ++i) text = replaced(text, "{" + std::to_string(i) + "}", to_text(values[i]), true);
  return text;
}
std::string string_concat(Rest values) {
  std::string text;
  for (const RValue& value : values) text += to_text(value);
  return text;
}
std::int32_t string_length(std::string_view text) { return characters(text); }
std::int32_t string_byte_length(std::string_view text) { return static_cast<std::int32_t>(text.size()); }
std::int32_t string_pos(std::string_view part, std::string_view text) {
  const std::size_t at = text.find(part);
  return at == std::string_view::npos ? 0 : characters(text.substr(0, at)) + 1;
}
std::string_view string_copy(std::string_view text, std::int32_t from, std::int32_t count) { return piece(text, from, count); }
std::string_view string_char_at(std::string_view text, std::int32_t position) { return piece(text, position, 1); }
std::string string_delete(std::string_view text, std::int32_t from, std::int32_t count) {
  const std::string_view gone = piece(text, from, count);
  if (gone.empty()) return std::string(text);
  const std::size_t start = static_cast<std::size_t>(gone.data() - text.data());
  return std::string(text.substr(0, start)).append(text.substr(start + gone.size()));
}
std::string string_insert(std::string_view part, std::string_view text, std::int32_t position) {
  return std::string(text).insert(byte_at(text, position), part);
}
std::string string_replace(std::string_view text, std::string_view part, std::string_view by) { return replaced(text, part, by, false); }
std::string string_replace_all(std::string_view text, std::string_view part, std::string_view by) { return replaced(text, part, by, true); }
std::int32_t string_count(std::string_view part, std::string_view text) {
  std::int32_t count = 0;
  for (std::size_t at = 0; !part.empty() && (at = text.find(part, at)) != std::string_view::npos; at += part.size()) ++count;
  return count;
}
std::string string_upper(std::string_view text) {
  return mapped(text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
}
std::string string_lower(std::string_view text) {
  return mapped(text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
}
std::string string_repeat(std::string_view text, std::int32_t count) {
  std::string result;
  if (!check_text_length(text.size() * static_cast<std::size_t>(std::max(count, 0)))) return result;
  for (std::int32_t i = 0; i < count && !text.empty(); ++i) result += text;
  return result;
}
std::string string_digits(std::string_view text) {
  std::string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), [](char c) { return c >= '0' && c <= '9'; });
  return result;
}
std::string string_letters(std::string_view text) {
  std::string result;
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), [](char c) { return (c | 32) >= 'a' && (c | 32) <= 'z'; });
  return result;
}
std::string string_trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1));
}
bool string_starts_with(std::string_view text, std::string_view part) { return text.starts_with(part); }
bool string_ends_with(std::string_view text, std::string_view part) { return text.ends_with(part); }
RValue string_split(std::string_view text, std::string_view separator) {
  RValue parts = make_array();
  std::size_t from = 0;
  for (std::size_t at; !separator.empty() && (at = text.find(separator, from)) != std::string_view::npos; from = at + separator.size()) {
    array_append(*parts.array, make_string(text.substr(from, at - from)));
  }
  array_append(*parts.array, make_string(text.substr(from)));
  return parts;
}
std::string string_join(std::string_view separator, Rest values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) text.append(i > 0 ? separator : std::string_view()).append(to_text(values[i]));
  return text;
}
std::string string_format(double number, std::int32_t width, std::int32_t decimals) {
  const double scale = elementary::pow(10.0, std::clamp(decimals, 0, 15));
  const bool negative = number < 0;
  const std::string digits = real_to_text(std::floor(std::fabs(number) * scale + 0.5));
  std::string text = digits;
  if (decimals > 0) {
    const std::size_t places = static_cast<std::size_t>(std::min(decimals, 15));
    if (text.size() <= places) text.insert(0, places + 1 - text.size(), '0');
    text.insert(text.size() - places, ".");
  }
  if (negative) text.insert(0, "-");
  const std::size_t wanted = static_cast<std::size_t>(std::max(width, 0)) + (decimals > 0 ? static_cast<std::size_t>(decimals) + 1 : 0);
  return text.size() < wanted ? std::string(wanted - text.size(), ' ') + text : text;
}
std::string chr(std::uint32_t code) {
  std::string text;
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 63))};
  } else if (code < 0x10000) {
    text += {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 63)), static_cast<char>(0x80 | (code & 63))};
  } else {
    text += {static_cast<char>(0xF0 | (code >> 18 & 7)), static_cast<char>(0x80 | (code >> 12 & 63)),
             static_cast<char>(0x80 | (code >> 6 & 63)), static_cast<char>(0x80 | (code & 63))};
  }
  return text;
}
std::int32_t ord(std::string_view text) {
  if (text.empty()) return 0;
  const unsigned char lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::int32_t code = length == 1 ? lead : lead & (0x7F >> length);
  for (std::size_t i = 1; i < length && i < text.size(); ++i) code = code << 6 | (static_cast<unsigned char>(text[i]) & 63);
  return code;
}

constexpr Implementation kRows[] = {
    implement<script::string_of, string_of>,
    implement<script::string_concat, string_concat>,
    implement<script::string_length, string_length>,
    implement<script::string_byte_length, string_byte_length>,
    implement<script::string_pos, string_pos>,
    implement<script::string_copy, string_copy>,
    implement<script::string_char_at, string_char_at>,
    implement<script::string_delete, string_delete>,
    implement<script::string_insert, string_insert>,
    implement<script::string_replace, string_replace>,
    implement<script::string_replace_all, string_replace_all>,
    implement<script::string_count, string_count>,
    implement<script::string_upper, string_upper>,
    implement<script::string_lower, string_lower>,
    implement<script::string_repeat, string_repeat>,
    implement<script::string_digits, string_digits>,
    implement<script::string_letters, string_letters>,
    implement<script::string_trim, string_trim>,
    implement<script::string_starts_with, string_starts_with>,
    implement<script::string_ends_with, string_ends_with>,
    implement<script::string_split, string_split>,
    implement<script::string_join, string_join>,
    implement<script::string_format, string_format>,
    implement<script::chr, chr>,
    implement<script::ord, ord>,
};
const BuiltinTable table("Texts", "Positions count characters, not bytes, from 1; a position out of range is moved to the nearest end.",
                         kRows);

}  // namespace
}  // namespace arena
