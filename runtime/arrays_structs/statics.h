#pragma once
// Static variables of scripts and constructors.
#include "runtime/arrays_structs/object.h"
#include "runtime/program/functions.h"

namespace arena {

// The struct that holds the script's static variables, shared by all its closures; made on first need, one a session.
PropertyObject* statics_of(CompiledFunction& function);

}  // namespace arena
