#pragma once
// The licence flag of the program's build.
#include "runtime/builtins/builtin.h"

namespace arena::script {

BUILTIN(licence_get_edition, Text(), "", "The edition that the program was built as.");
BUILTIN(licence_get_features, Array(), "", "The features that the program was built with.");
BUILTIN(licence_has_feature, Flag(Text), "feature", "Whether the program was built with a feature.");

}  // namespace arena::script
