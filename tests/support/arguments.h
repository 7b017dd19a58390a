#pragma once
// Arguments for calls of built-in functions, by the kinds that their rows name. They read `global.list` and the like, which
// make_argument_holders() makes.
#include <map>
#include <string>
#include <vector>

#include "runtime/program/builtin_row.h"

namespace arena::test {

struct ArgumentSamples {
  std::vector<const char*> fitting;
  const char* wrong;  // refused by the check of the argument, or null when the function takes anything
};

inline constexpr const char* kMakeArgumentHolders =
    "global.kept = [1, [2], {k: 3}]; global.grid = ds_grid_create(3, 3); global.list = ds_list_create(); global.map = ds_map_create(); "
    "global.text_file = text_file_create(\"kept.txt\"); global.binary_file = binary_file_create(\"kept.bin\"); "
    "global.ini = ini_parse(\"[a]\\nb=1\"); global.buffer = buffer_create(16, 1, 1); "
    "global.stickers = stickers_create(10); global.system = part_system_create(); global.type = part_type_create()";

// By the kind's word; a new kind needs a line here.
inline const std::map<std::string_view, ArgumentSamples> kArgumentSamples = {
    {"number", {{"0", "1", "-2.5", "0.5", "90", "1e9", "NaN", "int64(7)", "true"}, "[]"}},
    {"whole number", {{"0", "1", "-1", "2", "7", "1e9"}, "\"text\""}},
    {"bool", {{"true", "false", "0.5", "1"}, "{}"}},
    {"degrees", {{"0", "90", "-45", "720.5"}, "[]"}},
    {"radians", {{"0", "1.5", "-4"}, "[]"}},
    {"colour", {{"0", "255", "16777215", "-1"}, "[]"}},
    {"object", {{"oPlayer", "oEnemy", "oParentEnemy", "-1"}, "\"text\""}},
    {"sprite", {{"0", "1", "-1", "57"}, "{}"}},
    {"font", {{"0", "-1", "9"}, "{}"}},
    {"room", {{"0", "1", "-1"}, "{}"}},
    {"sound", {{"0", "3", "-1"}, "[]"}},
    {"playing sound", {{"audio_play_sound(0, 1, false)"}, "[]"}},
    {"sound or playing sound", {{"0", "3", "audio_play_sound(0, 1, true)"}, "[]"}},
    {"key", {{"65", "37", "0", "1", "-1", "300"}, "[]"}},
    {"mouse button", {{"1", "2"}, "[]"}},
    {"gamepad", {{"0", "7", "-1", "99"}, "[]"}},
    {"gamepad button", {{"0", "21", "30", "-1", "99"}, "[]"}},
    {"gamepad axis", {{"0", "5", "-1", "99"}, "[]"}},
    {"camera", {{"0", "camera_create()", "99"}, "[]"}},
    {"script", {{"Approach", "100000", "5"}, "[]"}},
    {"list", {{"global.list"}, "\"text\""}},
    {"map", {{"global.map"}, "\"text\""}},
    {"grid", {{"global.grid"}, "\"text\""}},
    {"text file", {{"global.text_file", "text_file_create(\"other.txt\")"}, "\"text\""}},
    {"binary file", {{"global.binary_file"}, "\"text\""}},
    {"ini", {{"global.ini"}, "\"text\""}},
    {"buffer", {{"global.buffer", "buffer_from_text(\"text\")"}, "\"text\""}},
    {"file name", {{"\"text\"", "\"saves/añ.txt\"", "\"kept.txt\""}, "5"}},
    {"timer", {{"timer_create_frames(5, Approach)", "0"}, "[]"}},
    {"alarm", {{"0", "11", "\"none\"", "-1"}, nullptr}},
    {"date", {{"0", "1e9", "date_create(2024, 2, 29)", "-1e12", "NaN"}, "[]"}},
    {"stickers", {{"global.stickers", "99"}, "[]"}},
    {"particle system", {{"global.system", "99"}, "[]"}},
    {"particle type", {{"global.type", "99"}, "[]"}},
    {"text", {{"\"\"", "\"text\"", "\"añ€\"", "\"12.5\"", "\"hp\""}, "5"}},
    {"array", {{"[]", "[1, 2, 3]", "[\"b\", []]", "global.kept"}, "5"}},
    {"struct", {{"{}", "{a: 1}"}, "\"text\""}},
    {"struct or instance", {{"{}", "{a: 1}", "oPlayer.id"}, nullptr}},
    {"function", {{"method(undefined, Approach)", "Approach"}, "[]"}},
    {"pointer", {{"ptr(0)", "ptr(57)"}, "5"}},
    {"number or pointer", {{"1", "ptr(5)"}, nullptr}},  // the console itself reads int64(...) and ptr(...)
    {"any", {{"1", "undefined", "\"text\"", "[1]", "{}", "oPlayer"}, nullptr}},
    {"instance", {{"oPlayer.id", "noone"}, nullptr}},
    {"instance or object", {{"oPlayer", "oPlayer.id", "oEnemy", "noone"}, nullptr}},
    {"object, instance or array of them", {{"oPlayer", "[oPlayer, oEnemy]", "all"}, nullptr}},
    {"layer", {{"\"layMobs\"", "0", "\"none\""}, nullptr}},
    {"weak reference", {{"weak_ref_create({})", "undefined"}, nullptr}},
};

// What fits a parameter; for a number with bounds, what lies at and beyond them.
inline std::vector<std::string> fitting_arguments(const ParameterKind& kind) {
  if (!kind.is_bounded()) {
    const std::vector<const char*>& samples = kArgumentSamples.at(kind.word).fitting;
    return {samples.begin(), samples.end()};
  }
  std::vector<std::string> found;
  for (const double each : {kind.low - 1, kind.low, (kind.low + kind.high) / 2, kind.high, kind.high + 1})
    found.push_back(std::to_string(each));
  return found;
}

}  // namespace arena::test
