#pragma once
// Which machine the current session reaches: for the built-in functions of this folder.
#include <string>
#include <vector>

#include "engine/machine/machine.h"

namespace arena::machine {

struct MachineInUse {
  const Machine* machine = nullptr;  // not owned; null: the silent form
  std::vector<std::string> arguments;
};
MachineInUse& machine_in_use();
const Machine& in_use();

}  // namespace arena::machine
