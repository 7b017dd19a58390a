#pragma once
// Runs the console's statements with the runtime's own operators.
#include <string>

#include "engine/console/ast.h"
#include "runtime/arrays_structs/object.h"

namespace arena::console {

// The value of the last statement. `self` null: the global scope. Throws WBKSLException or ParseError.
RValue evaluate(const std::string& source, WBObjectBase* self, WBObjectBase* other);

}  // namespace arena::console
