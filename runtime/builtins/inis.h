#pragma once
// Settings: texts and numbers by section and key, in a file that people can read and change. Comments and the order of things stay.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(ini_close, void(Ini), "ini", "Ends it; what was not saved is lost.");
BUILTIN(ini_create, IniNumber(), "", "Makes an empty one.");
BUILTIN(ini_get_number, Number(Ini, Text, Text, Or<Number, 0>), "ini, section, key, otherwise",
        "The number of a key; the last argument where there is none.");
BUILTIN(ini_get_text, Any(Ini, Text, Text, Optional<Any>), "ini, section, key, otherwise",
        "The text of a key; the last argument, or an empty text, where there is none.");
BUILTIN(ini_key_delete, void(Ini, Text, Text), "ini, section, key", "Takes a key out.");
BUILTIN(ini_key_exists, Flag(Ini, Text, Text), "ini, section, key", "Whether there is such a key.");
BUILTIN(ini_key_names, Array(Ini, Text), "ini, section", "The keys of a section, in their order.");
BUILTIN(ini_open, IniNumber(SaveName), "name", "Reads a file; an empty one when there is none.");
BUILTIN(ini_parse, IniNumber(Text), "text", "Reads a text.");
BUILTIN(ini_save, Flag(Ini, SaveName), "ini, name", "Saves all of it as a file; false when nothing can be written.");
BUILTIN(ini_section_delete, void(Ini, Text), "ini, section", "Takes a section out, with its keys and comments.");
BUILTIN(ini_section_exists, Flag(Ini, Text), "ini, section", "Whether there is such a section.");
BUILTIN(ini_section_names, Array(Ini), "ini", "The sections, in their order.");
BUILTIN(ini_set_number, void(Ini, Text, Text, Number), "ini, section, key, number", "Writes a number so that it reads back exactly.");
BUILTIN(ini_set_text, void(Ini, Text, Text, Text), "ini, section, key, text", "Writes a text.");
BUILTIN(ini_text, Text(Ini), "ini", "All of it as a text.");

}  // namespace arena::script
