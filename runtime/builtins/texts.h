#pragma once
// Texts. Positions count characters (not bytes) from 1; a position out of range is moved to the nearest end.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(chr, Text(Natural), "code", "The character of a code point.");
BUILTIN(ord, Whole(Text), "text", "The code point of the first character; 0 of none.");
BUILTIN(string_byte_length, Whole(Text), "text", "How many bytes the text takes.");
BUILTIN(string_char_at, Text(Text, Whole), "text, position", "The character at a position.");
BUILTIN(string_concat, Text(Rest<Any>), "values", "The texts of all values, one after the other.");
BUILTIN(string_copy, Text(Text, Whole, Whole), "text, from, count", "So many characters from a position on.");
BUILTIN(string_count, Whole(Text, Text), "part, text", "How often the part stands in the text.");
BUILTIN(string_delete, Text(Text, Whole, Whole), "text, from, count", "The text without so many characters from a position on.");
BUILTIN(string_digits, Text(Text), "text", "The digits of the text alone.");
BUILTIN(string_ends_with, Flag(Text, Text), "text, part", "Whether the text ends with the part.");
BUILTIN(string_format, Text(Number, Whole, Whole), "number, width, decimals",
        "The number with so many decimals, and blanks before it up to a width.");
BUILTIN(string_insert, Text(Text, Text, Whole), "part, text, position", "The text with the part put in.");
BUILTIN(string_join, Text(Text, Rest<Any>), "separator, values", "The texts of all values, parted by a separator.");
BUILTIN(string_length, Whole(Text), "text", "How many characters the text has.");
BUILTIN(string_letters, Text(Text), "text", "The letters a to z of the text alone, of either case.");
BUILTIN(string_lower, Text(Text), "text", "The text with the letters A to Z small.");
BUILTIN_NAMED(string_of, "string", Text(Any, Rest<Any>), "value, values", "The value as text, {0}, {1}... in it replaced by the others.");
BUILTIN(string_pos, Whole(Text, Text), "part, text", "Where the part first stands in the text; 0 when it does not.");
BUILTIN(string_repeat, Text(Text, Whole), "text, count", "The text so many times.");
BUILTIN(string_replace, Text(Text, Text, Text), "text, part, by", "The text with the first place of the part replaced.");
BUILTIN(string_replace_all, Text(Text, Text, Text), "text, part, by", "The text with every place of the part replaced.");
BUILTIN(string_split, Array(Text, Text), "text, separator", "The pieces between the separators.");
BUILTIN(string_starts_with, Flag(Text, Text), "text, part", "Whether the text starts with the part.");
BUILTIN(string_trim, Text(Text), "text", "The text without blanks and line ends around it.");
BUILTIN(string_upper, Text(Text), "text", "The text with the letters a to z large.");

}  // namespace arena::script
