#pragma once
// The machine as the system tells of it.
#include "engine/machine/machine.h"

namespace arena::platform {

const machine::Machine& system_machine();

}  // namespace arena::platform
