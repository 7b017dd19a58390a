#pragma once
// The machine that the game runs on: what was given to the program, the player's language, the environment, the browser.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(argument_count, Whole(), "", "How many arguments stand behind -- on the command line.");
BUILTIN(argument_get, Text(Whole), "nth", "An argument by its place from 0; an empty text when there is none.");
BUILTIN(environment_get, Text(Text), "name", "A variable of the environment; an empty text when there is none.");
BUILTIN(locale_get, Text(), "", "The player's language and country, as de-DE or en; an empty text when they are not known.");
BUILTIN(open_address, Flag(Text), "address",
        "Shows an address that begins with http:// or https:// in the player's browser; whether that went well. Never in a headless run.");

}  // namespace arena::script
